// The Connection dialog over stand-ins of drivers and libraries, and its user.
#pragma once

#include "jtag/StaticPinsSchemes.h"
#include "jtag/ui/CableSettingsDlg.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/wx.h>

using Names = std::vector<std::string>;

inline constexpr char kConnection[] = "Connec&tion:";
inline constexpr char kDevice[] = "Device:";
inline constexpr char kFrequency[] = "TCK freq:";
inline constexpr char kPins[] = "Static pins:";
inline constexpr char kAdaptive[] = "Adaptive Clocking";

// What the error page says.
inline std::string Error(wxWindow& dialog) {
    return BoxBehind(dialog, kConnection).GetValue().ToStdString();
}

inline std::string Chosen(wxWindow& dialog, const char* label) {
    return ChoiceBehind(dialog, label).GetStringSelection().ToStdString();
}

class CableSettingsDlgTest : public testing::Test {
  protected:
    CableSettingsDlgTest()
        : previousStore_(wxConfigBase::Set(new wxFileConfig(
              "test", "test", folder_.Path("settings"), wxString(), wxCONFIG_USE_LOCAL_FILE))) {
        GetStaticPinsSchemes() = LoadStaticPinsSchemes();
    }

    ~CableSettingsDlgTest() override { delete wxConfigBase::Set(previousStore_); }

    // Shows settings_ and takes them back as the dialog leaves them.
    int Show(const ModalSteps::Step& step) {
        OmCableSettingsDlg dialog(nullptr);
        dialog.settings = settings_;
        user_.Expect("JTAG Connection", step);
        const int button = dialog.ShowModal();
        settings_ = dialog.settings;
        adaptiveWarningAnswered_ = dialog.adaptiveWarningAnswered;
        return button;
    }

    // Shows the dialog, takes `step`, presses OK and cancels after the box with `text`; an empty
    // text stands for no box.
    void ExpectRefused(const wxString& text, const ModalSteps::Step& step) {
        SCOPED_TRACE(text.ToStdString());
        if (!text.empty())
            boxes_.Expect(text.ToStdWstring(), kWarningBox);
        Show([&](wxDialog& shown) {
            step(shown);
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsModal());
            PressButton(shown, wxID_CANCEL);
        });
    }

    static void PressOk(wxDialog& shown) { PressButton(shown, wxID_OK); }

    TemporaryFolder folder_;
    RecordingUserInterface boxes_;
    ModalSteps user_;
    FakePortDriver ports_;
    OmConnectionSettings settings_;
    bool adaptiveWarningAnswered_ = false;

  private:
    wxConfigBase* previousStore_;
};
