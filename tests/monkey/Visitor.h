// A monkey in front of whatever the program shows: answers boxes and file dialogs, works through
// dialogs, and disturbs the flash work. While a dialog or flash work is up, it also tries to get
// further commands through to the main window, which must not happen.
#pragma once

#include "platform/UserInterface.h"
#include "tests/monkey/Dice.h"
#include "tests/monkey/Inputs.h"
#include "widgets/FileChooser.h"

#include <functional>
#include <set>
#include <wx/modalhook.h>

class OmMainFrame;
class OmProgressDlg;

class Visitor : public OmUserInterface, public OmFileChooser, public wxModalDialogHook {
  public:
    // `boxes` shows message boxes for real. All references must outlive this.
    Visitor(Dice& dice, Journal& journal, InputFiles& files, OmUserInterface& boxes);
    ~Visitor() override;
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    // The window that must be out of reach while a dialog is up; null for none.
    void SetFrame(OmMainFrame* frame) { frame_ = frame; }

    // A dialog that is shown without a command of the main window; commands would get through.
    void ShowAlone(wxDialog& dialog);

    // To be called at each report of progress.
    void WatchProgress();

    // Breaks the connection.
    std::function<void()> breakBoard;

    bool IsBusy() const { return busy_ != 0; }

    // OmUserInterface
    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override;
    void BeginBusyCursor() override;
    void EndBusyCursor() override;

    // OmFileChooser
    wxString ChooseToOpen(wxWindow* parent, const wxString& title, const wxString& filter) override;
    wxString ChooseToSave(wxWindow* parent, const wxString& title, const wxString& filter,
                          int& filterIndex) override;
    wxString ChooseFolder(wxWindow* parent, const wxString& title) override;

  protected:
    int Enter(wxDialog* dialog) override;
    void Exit(wxDialog* dialog) override;

  private:
    void WorkOn(wxDialog& dialog);
    bool WorkOnce(wxDialog& dialog);
    void Disturb(OmProgressDlg& dialog);
    void ReachForFrame();
    void ExpectOutOfReach(const std::string& what);
    wxString Note(const std::string& what, const std::string& path);

    Dice& dice_;
    Journal& journal_;
    InputFiles& files_;
    OmUserInterface& boxes_;
    OmUserInterface* previousUser_;
    OmFileChooser* previousChooser_;
    OmMainFrame* frame_ = nullptr;
    std::set<const wxDialog*> entered_;
    int busy_ = 0;
    int alone_ = 0;            // dialogs without a command
    unsigned looks_ = 0;       // at the present progress dialog
    bool mustNotCome_ = false; // a command that was sent at a wrong time is being handled
};
