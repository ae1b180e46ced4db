#include "dialogs/ReadDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

namespace {

constexpr wchar_t kBadAddress[] =
    L"Invalid starting address. Address must be an unsigned hex 8-bit offset.";
constexpr wchar_t kBadSize[] = L"Invalid size. Size must be a decimal number of bytes to read.";

void Fill(wxDialog& dialog, const wxString& from, const wxString& size) {
    Type(dialog, "&From address:", from);
    Type(dialog, "&Size in bytes:", size);
}

// Types, presses Read, and cancels after the one box that is expected.
void ExpectRefused(const wxString& from, const wxString& size, const wchar_t* text,
                   const wxString& focused) {
    SCOPED_TRACE(from.ToStdString() + " / " + size.ToStdString());
    RecordingUserInterface boxes;
    boxes.Expect(text, kWarningBox);
    OmReadDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Read", [&](wxDialog& shown) {
        Fill(shown, from, size);
        PressButton(shown, wxID_OK);
        EXPECT_TRUE(shown.IsModal());
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, focused));
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

void ExpectAccepted(const wxString& from, const wxString& size, uint32_t start, uint32_t bytes) {
    SCOPED_TRACE(from.ToStdString() + " / " + size.ToStdString());
    const RecordingUserInterface boxes;
    OmReadDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Read", [&](wxDialog& shown) {
        Fill(shown, from, size);
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_EQ(dialog.start, start);
    EXPECT_EQ(dialog.size, bytes);
}

} // namespace

TEST(ReadDlg, StartsEmptyWithTheFocusInTheFirstBox) {
    OmReadDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Read", [](wxDialog& shown) {
        EXPECT_EQ(TextBehind(shown, "&From address:"), "");
        EXPECT_EQ(TextBehind(shown, "&Size in bytes:"), "");
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, "&From address:"));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "read");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ReadDlg, TakesHexAddressAndDecimalSize) {
    ExpectAccepted("1000", "256", 0x1000, 256);
    ExpectAccepted(" 0 ", " 1 ", 0, 1);
    ExpectAccepted("7FFFFFFF", "4294967295", 0x7FFFFFFF, 4294967295u);
}

TEST(ReadDlg, LinkFillsInTheEntireFlash) {
    OmReadDlg dialog(nullptr);
    dialog.entireSize = 4 * 1024 * 1024;
    ModalSteps user;
    user.Expect("Read", [](wxDialog& shown) {
        ClickLink(shown, "Read the entire flash contents");
        EXPECT_EQ(TextBehind(shown, "&From address:"), "0");
        EXPECT_EQ(TextBehind(shown, "&Size in bytes:"), "4194304");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_EQ(dialog.start, 0u);
    EXPECT_EQ(dialog.size, 4194304u);
}

TEST(ReadDlg, RefusesBadAddress) {
    for (const char* from : {"", "80000000", "10xyz", "-1"})
        ExpectRefused(from, "16", kBadAddress, "&From address:");
}

TEST(ReadDlg, RefusesBadSize) {
    for (const char* size : {"", "0", "-5", "4294967296", "1F"})
        ExpectRefused("0", size, kBadSize, "&Size in bytes:");
}

TEST(ReadDlg, CanBeFilledInFromTheKeyboard) {
    const RecordingUserInterface boxes;
    OmReadDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Read", [](wxDialog& shown) {
        wxUIActionSimulator keyboard;
        PointAt(shown);
        keyboard.Text("1f");
        keyboard.Char(WXK_TAB);
        keyboard.Text("32");
        EXPECT_TRUE(WaitFor([&] { return TextBehind(shown, "&Size in bytes:") == "32"; }));
        EXPECT_EQ(TextBehind(shown, "&From address:"), "1f");
        keyboard.Char(WXK_RETURN);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_EQ(dialog.start, 0x1Fu);
    EXPECT_EQ(dialog.size, 32u);
}

TEST(ReadDlg, MnemonicsLeadToTheirBoxes) {
    OmReadDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Read", [](wxDialog& shown) {
        wxUIActionSimulator keyboard;
        PointAt(shown);
        keyboard.Char('S', wxMOD_ALT);
        EXPECT_TRUE(
            WaitFor([&] { return wxWindow::FindFocus() == &BoxBehind(shown, "&Size in bytes:"); }));
        keyboard.Char('F', wxMOD_ALT);
        EXPECT_TRUE(
            WaitFor([&] { return wxWindow::FindFocus() == &BoxBehind(shown, "&From address:"); }));
        keyboard.Char('C', wxMOD_ALT);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ReadDlg, EscapeCancels) {
    OmReadDlg dialog(nullptr);
    EXPECT_EQ(dialog.GetEscapeId(), wxID_ANY); // the button with the standard id
    ModalSteps user;
    user.Expect("Read", [](wxDialog& shown) {
        wxKeyEvent escape(wxEVT_CHAR_HOOK);
        escape.m_keyCode = WXK_ESCAPE;
        escape.SetEventObject(&shown);
        shown.GetEventHandler()->ProcessEvent(escape);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}
