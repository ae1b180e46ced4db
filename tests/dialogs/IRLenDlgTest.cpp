#include "dialogs/IRLenDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kLabel[] = "IR length:";
constexpr wchar_t kRefusal[] =
    L"IR length must be entered as either an integer in a range from 2 to 32 or an empty string "
    L"(in this case the software will try to auto detect the IR length when examining the JTAG "
    L"chain).";

int Show(int length, const ModalSteps::Step& step) {
    OmIRLenDlg dialog(nullptr);
    dialog.length = length;
    dialog.displayName = "Dev3";
    ModalSteps user;
    user.Expect("IR Length", [&step](wxDialog& shown) {
        EXPECT_EQ(shown.GetTitle(), "Dev3 IR Length");
        step(shown);
    });
    dialog.ShowModal();
    return dialog.length;
}

int Enter(const wxString& text) {
    return Show(9, [&text](wxDialog& shown) {
        Type(shown, kLabel, text);
        PressButton(shown, wxID_OK);
    });
}

} // namespace

TEST(IRLenDlg, IsNamedAfterItsDevice) {
    OmIRLenDlg nameless(nullptr);
    EXPECT_EQ(nameless.GetTitle(), "IR Length");
    Show(-1, [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "The Instruction Register (IR) length only has to be set "
                                     "when\nit is not recognized while examining the JTAG chain "
                                     "and the\ndevice BSDL file is not available."),
                  nullptr);
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kLabel));
        ExpectGoodLayout(shown);
        PressButton(shown, wxID_CANCEL);
    });
}

TEST(IRLenDlg, ShowsAKnownLength) {
    const struct {
        int length;
        const char* text;
    } cases[] = {{-1, ""}, {1, ""}, {2, "2"}, {32, "32"}};

    for (const auto& c : cases)
        Show(c.length, [&c](wxDialog& shown) {
            EXPECT_EQ(TextBehind(shown, kLabel), c.text);
            PressButton(shown, wxID_CANCEL);
        });
}

TEST(IRLenDlg, TakesALengthOrNothing) {
    const RecordingUserInterface boxes;
    EXPECT_EQ(Enter("2"), 2);
    EXPECT_EQ(Enter(" 32\t"), 32);
    EXPECT_EQ(Enter(""), -1);
    EXPECT_EQ(Enter("   "), -1);
}

TEST(IRLenDlg, RefusesAnythingElse) {
    for (const char* text : {"1", "0", "33", "-4", "5x", "five", "4.0", "99999999999"}) {
        RecordingUserInterface boxes;
        boxes.Expect(kRefusal, kWarningBox);
        EXPECT_EQ(Show(9,
                       [text](wxDialog& shown) {
                           Type(shown, kLabel, text);
                           PressButton(shown, wxID_OK);
                           EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kLabel));
                           PressButton(shown, wxID_CANCEL);
                       }),
                  9)
            << text;
    }
}
