// The one top-level window: menus, two toolbars and the hex view. It owns the data that is shown
// and programmed, knows where the setup and the data came from, and dispatches every command. The
// setup itself belongs to OmFlashProgrammer.
#pragma once

#include "data/DataImage.h"

#include <string>
#include <wx/aui/framemanager.h>
#include <wx/filehistory.h>
#include <wx/frame.h>

class OmHelpViewer;
class OmHexViewCtrl;
class wxAuiToolBar;
class wxStaticText;

class OmMainFrame : public wxFrame {
  public:
    // `helpViewer` is not owned and must outlive the window.
    OmMainFrame(const wxString& title, const wxPoint& position, const wxSize& size,
                OmHelpViewer& helpViewer);
    ~OmMainFrame() override;

    // Load without asking about what is lost. A failure is shown and changes nothing.
    bool LoadSetupFile(const wxString& path);
    bool LoadDataFile(const wxString& path);

    // True when the command may go on and drop the setup, or the data.
    bool PromptSaveSetup();
    bool PromptSaveData();

    // The setup differs from what was last saved or loaded.
    void MarkSetupModified();

    // Data read from the flash. Between these two the view is empty and does not look at the
    // returned image, which is filled; what it then holds is shown as read from the flash.
    OmDataImage& BeginFlashData();
    void ShowFlashData();

    void UpdateTitle();
    void UpdateDataCaption();

    const OmDataImage& GetDataImage() const { return dataImage_; }

    const wxString& GetSetupPath() const { return setupPath_; }

    const wxString& GetDataPath() const { return dataPath_; }

    bool IsSetupModified() const { return setupModified_; }

    const OmHexViewCtrl& GetHexView() const { return *hexView_; }

  private:
    using Handler = void (OmMainFrame::*)(wxCommandEvent&);

    // Construction.
    void BuildMenus();
    void BindCommands();
    void BindCommand(int id, Handler handler);
    void BindEnableRules();
    void BuildToolBars();
    wxStaticText* MakeDataCaption(wxAuiToolBar* bar);
    void AddToolBarPane(wxAuiToolBar* bar, const wxString& name, int row);
    void LoadRecentFiles();

    // Destruction.
    void SaveRecentFiles();

    // Runs one command; a command that comes while another one runs is dropped.
    void RunCommand(Handler handler, wxCommandEvent& event);
    void OnCloseWindow(wxCloseEvent& event);
    void OnActivateWindow(wxActivateEvent& event);

    // Setup files.
    void OnNewSetup(wxCommandEvent& event);
    void OnLoadSetup(wxCommandEvent& event);
    void OnSaveSetup(wxCommandEvent& event);
    void OnSaveSetupAs(wxCommandEvent& event);
    void OnRecentSetup(wxCommandEvent& event);
    bool SaveSetupFile(const wxString& path);
    void SaveCurrentSetup();
    void SaveSetupUnderNewName();
    void TakeSetupPath(const wxString& path);

    // Data files.
    void OnLoadData(wxCommandEvent& event);
    void OnSaveDataAs(wxCommandEvent& event);
    void OnRecentData(wxCommandEvent& event);
    void SaveDataUnderNewName();
    void ShowLoadedData(OmDataImage image, const wxString& path);
    // The path that stops being current enters the recent files; an empty new one says that the
    // data came from the flash.
    void TakeDataPath(const wxString& path);

    // Connection and setup.
    void OnConnection(wxCommandEvent& event);
    void OnSetup(wxCommandEvent& event);
    void EditSetup();

    // Flash.
    void OnInfo(wxCommandEvent& event);
    void OnRead(wxCommandEvent& event);
    void OnErase(wxCommandEvent& event);
    void OnBlankCheck(wxCommandEvent& event);
    void OnProgram(wxCommandEvent& event);
    void OnVerify(wxCommandEvent& event);
    void OnLockSectors(wxCommandEvent& event);
    void OnUnlockSectors(wxCommandEvent& event);
    void OnJtagReset(wxCommandEvent& event);
    void OnGoToOffset(wxCommandEvent& event);

    // The rest.
    void OnExit(wxCommandEvent& event);
    void OnHelp(wxCommandEvent& event);
    void OnWebsite(wxCommandEvent& event);
    void OnAbout(wxCommandEvent& event);

    OmHexViewCtrl* hexView_ = nullptr;
    wxStaticText* dataCaption_ = nullptr;
    wxAuiManager manager_;
    OmDataImage dataImage_;
    wxFileHistory recentSetups_;
    wxFileHistory recentDataFiles_;
    wxString setupPath_;
    wxString dataPath_;
    bool setupModified_ = false;
    OmHelpViewer& helpViewer_;
    bool commandRunning_ = false;
};
