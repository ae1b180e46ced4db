#include "dialogs/VerifyDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kIgnore[] = "&Ignore the data view contents address and instead read data from the "
                           "flash starting at address:";
constexpr char kUnit[] = "(enter address as a hex 8-bit offset)";

void ExpectRefused(const wxString& start, const wchar_t* text) {
    SCOPED_TRACE(start.ToStdString());
    RecordingUserInterface boxes;
    boxes.Expect(text, kWarningBox);
    OmVerifyDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Verify", [&](wxDialog& shown) {
        ClickCheck(shown, kIgnore);
        Type(shown, kIgnore, start);
        PressButton(shown, wxID_OK);
        EXPECT_TRUE(shown.IsModal());
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kIgnore));
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

} // namespace

TEST(VerifyDlg, WithoutTheCheckThereIsNoAddress) {
    const RecordingUserInterface boxes;
    OmVerifyDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Verify", [](wxDialog& shown) {
        EXPECT_EQ(TextBehind(shown, kIgnore), "");
        EXPECT_FALSE(BoxBehind(shown, kIgnore).IsEnabled());
        EXPECT_FALSE(IsEnabled(shown, kUnit));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "verify");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_FALSE(dialog.ignoreAddress);
}

TEST(VerifyDlg, TakesNewStart) {
    const RecordingUserInterface boxes;
    OmVerifyDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Verify", [](wxDialog& shown) {
        ClickCheck(shown, kIgnore);
        EXPECT_TRUE(IsEnabled(shown, kUnit));
        Type(shown, kIgnore, "10xyz");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_TRUE(dialog.ignoreAddress);
    EXPECT_EQ(dialog.newStart, 0x10u);
}

TEST(VerifyDlg, ShowsTheStartThatItWasGiven) {
    OmVerifyDlg dialog(nullptr);
    dialog.ignoreAddress = true;
    dialog.newStart = 0xABC0;
    ModalSteps user;
    user.Expect("Verify", [](wxDialog& shown) {
        EXPECT_TRUE(CheckBox(shown, kIgnore).GetValue());
        EXPECT_EQ(TextBehind(shown, kIgnore), "ABC0");
        EXPECT_TRUE(BoxBehind(shown, kIgnore).IsEnabled());
        ClickCheck(shown, kIgnore);
        EXPECT_FALSE(BoxBehind(shown, kIgnore).IsEnabled());
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(VerifyDlg, RefusesEmptyAddress) {
    ExpectRefused("", L"If you choose to ignore the data view contents address, please enter a "
                      L"starting address. The address must be an unsigned hex 8-bit offset.");
}

TEST(VerifyDlg, RefusesWhatIsNoAddress) {
    for (const char* start : {"40000000", "xyz", "-1", " "})
        ExpectRefused(start, L"Invalid starting address.\n"
                             L"Address must be an unsigned hex 8-bit offset.");
}
