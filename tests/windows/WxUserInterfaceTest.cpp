#include "widgets/WxUserInterface.h"

#include "tests/windows/support/ModalSteps.h"
#include "tests/windows/support/UserActions.h"

#include <gtest/gtest.h>
#include <wx/statbmp.h>
#include <wx/wx.h>

namespace {

struct Case {
    const char* what;
    OmMessageStyle style;
    long toolkitStyle;
    int pressed;
    OmAnswer answer;
};

const Case kCases[] = {
    {"information", kInformationBox, wxOK | wxICON_INFORMATION, wxID_OK, OmAnswer::Ok},
    {"warning", kWarningBox, wxOK | wxICON_EXCLAMATION, wxID_OK, OmAnswer::Ok},
    {"error", kErrorBox, wxOK | wxICON_ERROR, wxID_OK, OmAnswer::Ok},
    {"error closed", kErrorBox, wxOK | wxICON_ERROR, wxID_CANCEL, OmAnswer::Ok},
    {"question yes", kQuestionBox, wxYES_NO | wxICON_QUESTION, wxID_YES, OmAnswer::Yes},
    {"question no", kQuestionBox, wxYES_NO | wxICON_QUESTION, wxID_NO, OmAnswer::No},
    {"save yes", kSaveQuestionBox, wxYES_NO | wxCANCEL | wxICON_QUESTION, wxID_YES, OmAnswer::Yes},
    {"save no", kSaveQuestionBox, wxYES_NO | wxCANCEL | wxICON_QUESTION, wxID_NO, OmAnswer::No},
    {"save cancel", kSaveQuestionBox, wxYES_NO | wxCANCEL | wxICON_QUESTION, wxID_CANCEL,
     OmAnswer::Cancel},
    {"warning question", kWarningQuestionBox, wxYES_NO | wxICON_EXCLAMATION, wxID_YES,
     OmAnswer::Yes},
    {"loss", kLossQuestionBox, wxYES_NO | wxNO_DEFAULT | wxICON_EXCLAMATION, wxID_NO, OmAnswer::No},
    {"ok or cancel",
     {OmButtons::OkCancel, OmIcon::Question},
     wxOK | wxCANCEL | wxICON_QUESTION,
     wxID_CANCEL,
     OmAnswer::Cancel},
    {"plain", {}, wxOK | wxICON_NONE, wxID_OK, OmAnswer::Ok},
};

// The lines of the box that `show` brings up, once a button has been pressed in it.
template <typename Show>
std::vector<wxString> LinesOfShownBox(size_t length, Show show) {
    std::vector<wxString> lines;
    WxUserInterface userInterface;
    ModalSteps user;
    user.Expect("Velmora Flash Programmer", [&](wxDialog& box) {
        const wxSize screen = wxGetDisplaySize();
        EXPECT_LE(box.GetBestSize().x, screen.x);
        EXPECT_LE(box.GetBestSize().y, screen.y);
        ForEachDescendant(box, [&](wxWindow& window) {
            if (const auto* line = dynamic_cast<wxStaticText*>(&window))
                lines.push_back(line->GetLabelText());
        });
        TakeScreenshot(box, "box_of_" + std::to_string(length));
        PressButton(box, wxID_OK);
    });
    show(userInterface);
    return lines;
}

std::vector<wxString> LinesOfBox(const std::wstring& text) {
    return LinesOfShownBox(text.size(), [&text](WxUserInterface& userInterface) {
        userInterface.ShowMessage(text, L"Velmora Flash Programmer", kErrorBox);
    });
}

} // namespace

TEST(WxUserInterface, BoxesHaveTheirButtonsIconAndDefault) {
    WxUserInterface userInterface;
    for (const Case& test : kCases) {
        SCOPED_TRACE(test.what);
        ModalSteps user;
        user.ExpectBox("Caption", "Text", test.toolkitStyle | wxCENTRE, test.pressed);
        EXPECT_EQ(userInterface.ShowMessage(L"Text", L"Caption", test.style), test.answer);
    }
}

TEST(WxUserInterface, BoxShowsItsTextAndTakesARealPress) {
    WxUserInterface userInterface;
    ModalSteps user;
    user.Expect("Velmora Flash Programmer", [](wxDialog& box) {
        EXPECT_NE(FindByClass<wxStaticBitmap>(box), nullptr);
        TakeScreenshot(box, "question");
        PressButton(box, wxID_NO);
    });
    EXPECT_EQ(userInterface.ShowMessage(L"Do you want to save current setup?",
                                        L"Velmora Flash Programmer", kSaveQuestionBox),
              OmAnswer::No);
}

TEST(WxUserInterface, BoxShowsTheWholeOfALongSentence) {
    std::wstring sentence;
    for (int i = 0; i < 60; ++i)
        sentence += L"word ";
    sentence += L"end.";
    wxString shown;
    for (const wxString& line : LinesOfBox(sentence))
        shown += line;
    EXPECT_TRUE(shown.EndsWith("end.")) << shown;
}

TEST(WxUserInterface, BoxOfAnyTextFitsOnTheScreen) {
    std::wstring files;
    for (int i = 0; i < 5000; ++i)
        files += L"a.part1of5000.bin\n";
    const std::wstring texts[] = {
        L"Failed to load '" + std::wstring(4000, L'p') + L"'.",
        std::wstring(1 << 20, L'7'),
        files,
    };
    for (const std::wstring& text : texts)
        EXPECT_GE(LinesOfBox(text).size(), 2u) << text.size();
}

TEST(WxUserInterface, BoxKeepsAmpersands) {
    EXPECT_EQ(LinesOfBox(L"Failed to save 'a&b.bin'."),
              std::vector<wxString>{"Failed to save 'a&b.bin'."});
}

TEST(WxUserInterface, BusyCursorsNest) {
    WxUserInterface userInterface;
    userInterface.BeginBusyCursor();
    userInterface.BeginBusyCursor();
    userInterface.EndBusyCursor();
    EXPECT_TRUE(wxIsBusy());
    userInterface.EndBusyCursor();
    EXPECT_FALSE(wxIsBusy());
}

TEST(WxUserInterface, FailureShowsItsReasonBelowItsSentence) {
    const std::vector<wxString> lines = LinesOfShownBox(1, [](WxUserInterface& userInterface) {
        userInterface.ShowFailure(L"It failed.", L"The plug is out.");
    });
    EXPECT_EQ(lines, (std::vector<wxString>{"It failed.", "The plug is out."}));
}
