#include "widgets/ErrorMessageDlg.h"

#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/statbmp.h>
#include <wx/uiaction.h>
#include <wx/wx.h>

TEST(ErrorMessageDlg, ShowsPictureMessageAndDetails) {
    OmErrorMessageDlg dialog(nullptr, "Error");
    dialog.message = "An error occurred while parsing the BSDL file.";
    dialog.details = "chip.bsd, line 12: syntax error\nchip.bsd, line 14: syntax error";
    ModalSteps user;
    user.Expect("Error", [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "An error occurred while parsing the BSDL file."), nullptr);
        EXPECT_NE(FindByLabel(shown, "Details:"), nullptr);
        const auto& box = *FindByClass<wxTextCtrl>(shown);
        EXPECT_EQ(box.GetValue(),
                  "chip.bsd, line 12: syntax error\nchip.bsd, line 14: syntax error");
        EXPECT_FALSE(box.IsEditable());
        EXPECT_TRUE(box.IsMultiLine());
        EXPECT_EQ(box.GetBackgroundColour(), shown.GetBackgroundColour());
        EXPECT_EQ(FindByClass<wxStaticBitmap>(shown)->GetBitmap().GetLogicalSize(), wxSize(32, 32));
        TakeScreenshot(shown, "error-message");
        PressButton(shown, "&Close");
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ErrorMessageDlg, EnterInTheDetailsClosesIt) {
    OmErrorMessageDlg dialog(nullptr, "Error");
    ModalSteps user;
    user.Expect("Error", [](wxDialog& shown) {
        auto& box = *FindByClass<wxTextCtrl>(shown);
        wxCommandEvent enter(wxEVT_TEXT_ENTER, box.GetId());
        box.GetEventHandler()->ProcessEvent(enter);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ErrorMessageDlg, RealEnterInTheDetailsClosesIt) {
    OmErrorMessageDlg dialog(nullptr, "Error");
    dialog.details = "chip.bsd, line 12: syntax error";
    ModalSteps user;
    user.Expect("Error", [](wxDialog& shown) {
        PointAt(shown);
        FindByClass<wxTextCtrl>(shown)->SetFocus();
        SettleEvents();
        wxUIActionSimulator().Char(WXK_RETURN);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(ErrorMessageDlg, HoldsAPlaceholderUntilItIsShown) {
    OmErrorMessageDlg dialog(nullptr, "Error");
    EXPECT_NE(FindByLabel(dialog, "<message>"), nullptr);
}
