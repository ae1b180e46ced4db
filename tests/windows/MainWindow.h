// The real main window with a user who answers from lists, on a settings store of its own.
#pragma once

#include "app/MainFrame.h"
#include "setup/DesignSetup.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/RecordingFileChooser.h"
#include "tests/windows/support/UserActions.h"
#include "widgets/Help.h"

#include <gtest/gtest.h>
#include <vector>
#include <wx/config.h>
#include <wx/wx.h>

class wxAuiToolBar;

inline constexpr char kOpenSetupFilter[] =
    "Setup Files (*.velflash)|*.velflash|All Files (*.*)|*.*";
inline constexpr char kSaveSetupFilter[] = "Setup Files (*.velflash)|*.velflash";
inline constexpr char kOpenDataFilter[] =
    "*.srec *.mot *.S19 *.hex *.bin *.raw *.dat|*.srec;*.mot;*.S19;*.hex;*.bin;*.raw;*.dat|"
    "All Files (*.*)|*.*";
inline constexpr char kSaveDataFilter[] =
    "S-record (*.srec;*.mot;*.S19)|*.srec;*.mot;*.S19|Intel HEX (*.hex)|*.hex|"
    "Raw binary (*.bin;*.raw;*.dat)|*.bin;*.raw;*.dat";

// One device: a file without a chain is refused.
OmDesignSetup MakeSmallestSetup();

class RecordingHelpViewer : public OmHelpViewer {
  public:
    void Initialize(const wxString& path) override { book = path; }

    void DisplaySection(const wxString& topic) override { topics.push_back(topic); }

    wxString book;
    std::vector<wxString> topics;
};

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest();
    ~MainWindowTest() override;

    // Opens the window at (20, 30) with 800 by 600 pixels.
    void OpenWindow();
    // Destroys it as the end of a run does.
    void CloseWindow();

    // As after a Read command.
    void ReadFromFlash(uint32_t address, const std::vector<uint8_t>& bytes);

    // File names, without their folders, of a recent-file submenu, newest first.
    std::vector<std::string> GetRecentFiles(int submenuId) const;
    wxString GetCaption() const;
    wxAuiToolBar& GetToolBar(unsigned index) const;

    TemporaryFolder folder_;
    wxConfigBase* previousStore_ = nullptr;
    RecordingUserInterface user_;
    RecordingFileChooser files_;
    ModalSteps dialogs_;
    RecordingHelpViewer help_;
    OmMainFrame* frame_ = nullptr;
};
