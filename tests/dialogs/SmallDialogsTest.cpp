// The dialogs that show something or ask for one number.
#include "dialogs/AboutDlg.h"
#include "dialogs/FlashInfoDlg.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/TextViewerDlg.h"
#include "platform/Version.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/windows/support/ModalSteps.h"
#include "widgets/Product.h"

#include <gtest/gtest.h>
#include <wx/html/htmlwin.h>
#include <wx/hyperlink.h>
#include <wx/wx.h>

namespace {

constexpr char kPrompt[] = "Enter a hex offset to scroll data view to:";

} // namespace

TEST(GoToOffsetDlg, TakesHexOffset) {
    const struct {
        const char* text;
        uint32_t offset;
    } cases[] = {{"0", 0}, {" 1F0 ", 0x1F0}, {"7fffffff", 0x7FFFFFFF}};

    for (const auto& c : cases) {
        const RecordingUserInterface boxes;
        OmGoToOffsetDlg dialog(nullptr);
        ModalSteps user;
        user.Expect("Go to Offset", [&](wxDialog& shown) {
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kPrompt));
            Type(shown, kPrompt, c.text);
            PressButton(shown, "&OK");
        });
        EXPECT_EQ(dialog.ShowModal(), wxID_OK);
        EXPECT_EQ(dialog.offset, c.offset);
    }
}

TEST(GoToOffsetDlg, RefusesWhatIsNoOffset) {
    const struct {
        const char* text;
        const wchar_t* shown;
    } cases[] = {{"", L""}, {"10xyz", L"10xyz"}, {" -1 ", L"-1"}, {"80000000", L"80000000"}};

    RecordingUserInterface boxes;
    OmGoToOffsetDlg dialog(nullptr);
    ModalSteps user;
    user.Expect("Go to Offset", [&](wxDialog& shown) {
        for (const auto& c : cases) {
            boxes.Expect(std::wstring(L"Invalid data entered: '") + c.shown +
                             L"'.\n\nPlease enter a hexadecimal offset to scroll the data view to.",
                         kWarningBox);
            Type(shown, kPrompt, c.text);
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsModal());
            EXPECT_EQ(wxWindow::FindFocus(), &BoxBehind(shown, kPrompt));
        }
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "go_to_offset");
        PressButton(shown, "&Cancel");
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(FlashInfoDlg, ShowsTheReportAndCloses) {
    OmFlashInfoDlg dialog(nullptr, L"<html><body><h3>Flash</h3>Manufacturer: 01h</body></html>");
    ModalSteps user;
    user.Expect("Flash Array Information", [](wxDialog& shown) {
        auto* report = FindByClass<wxHtmlWindow>(shown);
        EXPECT_EQ(report->ToText(), "\nFlash\nManufacturer: 01h");
        EXPECT_TRUE(shown.HasFlag(wxRESIZE_BORDER));
        EXPECT_EQ(shown.FindWindow(wxID_CANCEL)->GetLabel(), "&Close");
        TakeScreenshot(shown, "flash_info");
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(TextViewerDlg, ShowsTextFromItsTop) {
    OmTextViewerDlg dialog(nullptr);
    dialog.SetTitle("Errors");
    dialog.UseFixedFont();
    dialog.SetText("first line\nsecond line");
    ModalSteps user;
    user.Expect("Errors", [](wxDialog& shown) {
        auto* box = FindByClass<wxTextCtrl>(shown);
        EXPECT_EQ(box->GetValue(), "first line\nsecond line");
        EXPECT_EQ(box->GetInsertionPoint(), 0);
        EXPECT_FALSE(box->IsEditable());
        EXPECT_EQ(box->GetFont().GetFaceName(), "Courier New");
        TakeScreenshot(shown, "text_viewer");
        PressButton(shown, "&Close");
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(TextViewerDlg, EnterInTheTextCloses) {
    OmTextViewerDlg dialog(nullptr);
    dialog.SetTitle("Text");
    ModalSteps user;
    user.Expect("Text", [](wxDialog& shown) {
        auto* box = FindByClass<wxTextCtrl>(shown);
        wxCommandEvent enter(wxEVT_TEXT_ENTER, box->GetId());
        enter.SetEventObject(box);
        box->GetEventHandler()->ProcessEvent(enter);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

TEST(AboutDlg, TellsNameVersionAndRights) {
    OmAboutDlg dialog(nullptr);
    EXPECT_EQ(dialog.GetTitle(), "About");
    dialog.SetTexts(kProductName, kVersionText, kRightsText);
    ModalSteps user;
    user.Expect("About", [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "Velmora Flash Programmer"), nullptr);
        EXPECT_NE(FindByLabel(shown, "Version 1.3.1, build 1525, Aug 13 2010"), nullptr);
        EXPECT_NE(FindByLabel(shown, kRightsText), nullptr);
        EXPECT_EQ(FindByClass<wxHyperlinkCtrl>(shown)->GetURL(), kWebsiteUrl);
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "about");
        PressButton(shown, wxID_OK);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_OK);
}
