#include "dialogs/BlankCheckDlg.h"

#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/wx.h>

namespace {

constexpr char kData[] =
    "Blank c&heck only the addresses required to program current data view contents";
constexpr char kIgnore[] = "&Ignore the data view contents address and instead use this as the "
                           "data starting address:";
constexpr char kPiece[] = "S&pecify a piece of memory to blank check";
constexpr char kFrom[] = "&From address:";
constexpr char kSize[] = "&Size in bytes:";
constexpr char kBadAddress[] =
    "Invalid starting address. Address must be an unsigned hex 8-bit offset.";

void ExpectPieceEnabled(wxDialog& dialog, bool enabled) {
    EXPECT_EQ(BoxBehind(dialog, kFrom).IsThisEnabled(), enabled);
    EXPECT_EQ(BoxBehind(dialog, kSize).IsThisEnabled(), enabled);
    EXPECT_EQ(IsEnabled(dialog, kFrom), enabled);
    EXPECT_EQ(IsEnabled(dialog, kSize), enabled);
    EXPECT_EQ(IsEnabled(dialog, "(decimal)"), enabled);
    EXPECT_EQ(IsEnabled(dialog, kIgnore), !enabled);
    EXPECT_EQ(IsEnabled(dialog, "(hex 8-bit offset)"), !enabled); // that of the new start
}

// Fills the dialog, presses OK, and cancels after the one box that is expected.
void ExpectRefused(const std::function<void(wxDialog&)>& fill, const wxString& text,
                   const char* focused) {
    RecordingUserInterface boxes;
    boxes.Expect(text.ToStdWstring(), kWarningBox);
    OmBlankCheckDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Blank Check", [&](wxDialog& shown) {
        fill(shown);
        PressButton(shown, wxID_OK);
        EXPECT_TRUE(shown.IsModal());
        EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, focused));
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

void FillPiece(wxDialog& dialog, const wxString& from, const wxString& size) {
    ClickRadio(dialog, kPiece);
    Type(dialog, kFrom, from);
    Type(dialog, kSize, size);
}

void FillNewStart(wxDialog& dialog, const wxString& start) {
    ClickCheck(dialog, kIgnore);
    Type(dialog, kIgnore, start);
}

} // namespace

TEST(BlankCheckDlg, ChecksWhereTheDataGoesUnlessTold) {
    const RecordingUserInterface boxes;
    OmBlankCheckDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        EXPECT_TRUE(Radio(shown, kData).GetValue());
        EXPECT_FALSE(BoxBehind(shown, kIgnore).IsThisEnabled());
        ExpectPieceEnabled(shown, false);
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "blank_check");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_FALSE(dialog.pieceOfMemory);
    EXPECT_FALSE(dialog.ignoreAddress);
}

TEST(BlankCheckDlg, WithoutDataOnlyAPieceCanBeChecked) {
    OmBlankCheckDlg dialog(nullptr);
    dialog.noData = true;
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        EXPECT_FALSE(Radio(shown, kData).IsThisEnabled());
        EXPECT_TRUE(Radio(shown, kPiece).GetValue());
        ExpectPieceEnabled(shown, true);
        TakeScreenshot(shown, "blank_check_no_data");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(BlankCheckDlg, TakesAPieceOfMemory) {
    const RecordingUserInterface boxes;
    OmBlankCheckDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        FillPiece(shown, "7FFFFFFF", "512");
        ExpectPieceEnabled(shown, true);
        EXPECT_FALSE(BoxBehind(shown, kIgnore).IsThisEnabled());
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_TRUE(dialog.pieceOfMemory);
    EXPECT_EQ(dialog.from, 0x7FFFFFFFu);
    EXPECT_EQ(dialog.size, 512u);
}

TEST(BlankCheckDlg, LinkChoosesTheEntireFlash) {
    OmBlankCheckDlg dialog(nullptr);
    dialog.entireSize = 4194304;
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        ClickLink(shown, "Blank check the entire flash");
        EXPECT_TRUE(Radio(shown, kPiece).GetValue());
        ExpectPieceEnabled(shown, true);
        EXPECT_EQ(TextBehind(shown, kFrom), "0");
        EXPECT_EQ(TextBehind(shown, kSize), "4194304");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_TRUE(dialog.pieceOfMemory);
    EXPECT_EQ(dialog.from, 0u);
    EXPECT_EQ(dialog.size, 4194304u);
}

TEST(BlankCheckDlg, TakesNewStartOfTheData) {
    const RecordingUserInterface boxes;
    OmBlankCheckDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        FillNewStart(shown, "3FFFFFFF");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
    EXPECT_FALSE(dialog.pieceOfMemory);
    EXPECT_TRUE(dialog.ignoreAddress);
    EXPECT_EQ(dialog.newStart, 0x3FFFFFFFu);
}

TEST(BlankCheckDlg, NewStartBoxFollowsCheckAndRadio) {
    OmBlankCheckDlg dialog(nullptr);
    dialog.ignoreAddress = true;
    dialog.newStart = 0x1F;
    ModalSteps user;
    user.Expect("Blank Check", [](wxDialog& shown) {
        wxTextCtrl& box = BoxBehind(shown, kIgnore);
        EXPECT_EQ(box.GetValue(), "1F");
        EXPECT_TRUE(box.IsThisEnabled());
        ClickRadio(shown, kPiece);
        EXPECT_FALSE(box.IsThisEnabled());
        ClickRadio(shown, kData);
        EXPECT_TRUE(box.IsThisEnabled());
        ClickCheck(shown, kIgnore);
        EXPECT_FALSE(box.IsThisEnabled());
        EXPECT_TRUE(IsEnabled(shown, "(hex 8-bit offset)")); // goes with the radio button
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(BlankCheckDlg, RefusesBadPiece) {
    for (const char* from : {"", "80000000", "10xyz"})
        ExpectRefused([&](wxDialog& shown) { FillPiece(shown, from, "1"); }, kBadAddress, kFrom);
    for (const char* size : {"", "0", "x"})
        ExpectRefused([&](wxDialog& shown) { FillPiece(shown, "0", size); },
                      "Invalid size. Size must be a decimal number of bytes to check for blank.",
                      kSize);
}

TEST(BlankCheckDlg, RefusesBadNewStart) {
    ExpectRefused([](wxDialog& shown) { FillNewStart(shown, ""); },
                  "If you choose to ignore the data view contents address, please enter a new "
                  "starting address. The address must be an unsigned hex 8-bit offset.",
                  kIgnore);
    for (const char* start : {"40000000", "xyz"})
        ExpectRefused([&](wxDialog& shown) { FillNewStart(shown, start); }, kBadAddress, kIgnore);
}
