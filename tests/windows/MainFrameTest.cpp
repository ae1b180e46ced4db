#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "flash/FlashProgrammer.h"
#include "tests/windows/MainWindow.h"
#include "widgets/Product.h"

#include <wx/uiaction.h>

TEST_F(MainWindowTest, StartsUntitledAndEmpty) {
    EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
    EXPECT_EQ(GetCaption(), " (no data loaded)");
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 0u);
    EXPECT_EQ(frame_->GetStatusBar(), nullptr);
    EXPECT_TRUE(help_.book.EndsWith("/velflash")) << help_.book;
}

TEST_F(MainWindowTest, EmptyWindowLooksRight) {
    TakeScreenshot(*frame_, "main-empty");
}

TEST_F(MainWindowTest, TitleMarksAModifiedSetup) {
    frame_->MarkSetupModified();
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
}

TEST_F(MainWindowTest, DataFromTheFlashHasItsOwnCaption) {
    ReadFromFlash(0x100, {1, 2, 3});
    EXPECT_EQ(GetCaption(), " (data read from flash), 3 Bytes");
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 1u);
}

// A file's name may be shortened, but not what the program itself says.
TEST_F(MainWindowTest, CaptionHasRoomForItsOwnTexts) {
    ReadFromFlash(0, std::vector<uint8_t>(16 << 20, 0xFF));
    const wxStaticText& caption = *FindByClass<wxStaticText>(*frame_);
    EXPECT_EQ(caption.GetLabel(), " (data read from flash), 16777216 Bytes");
    EXPECT_LE(caption.GetTextExtent(caption.GetLabel()).x, 220);
    EXPECT_EQ(caption.GetSize().x, 220);
    EXPECT_EQ(caption.GetSize().y, caption.GetTextExtent(caption.GetLabel()).y + 2);
    TakeScreenshot(*frame_, "main-read");
}

TEST_F(MainWindowTest, ViewIsEmptyWhileTheFlashIsRead) {
    ReadFromFlash(0, std::vector<uint8_t>(1000, 0xFF));
    OmDataImage& image = frame_->BeginFlashData();
    EXPECT_TRUE(image.IsEmpty());
    image.SetBytes(0, std::vector<uint8_t>(100, 0xFF));
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 0u);
    EXPECT_EQ(GetCaption(), " (no data loaded)");
    frame_->ShowFlashData();
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 7u);
}

TEST_F(MainWindowTest, HexViewTakesTheFocusOnActivation) {
    wxActivateEvent event(wxEVT_ACTIVATE, true);
    frame_->ProcessWindowEvent(event);
    EXPECT_TRUE(event.GetSkipped());
    EXPECT_TRUE(WaitFor([this] { return frame_->GetHexView().HasFocus(); }));
}

TEST_F(MainWindowTest, HelpShowsTheWelcomeTopic) {
    ChooseMenu(*frame_, wxID_HELP);
    EXPECT_EQ(help_.topics, std::vector<wxString>{"welcome.htm"});
}

TEST_F(MainWindowTest, AboutTellsTheProductAndItsVersion) {
    dialogs_.Expect("About Velmora Flash Programmer", [](wxDialog& shown) {
        EXPECT_NE(FindByLabel(shown, "Velmora Flash Programmer"), nullptr);
        EXPECT_NE(FindByLabel(shown, "Version 1.3.1, build 1525, Aug 13 2010"), nullptr);
        PressButton(shown, wxID_OK);
    });
    ChooseMenu(*frame_, wxID_ABOUT);
}

// A browser of the test's own comes first on the path.
TEST_F(MainWindowTest, WebsiteOpensInTheBrowser) {
    const std::string asked = folder_.Path("asked");
    const std::string browser =
        folder_.Write("xdg-open", "#!/bin/sh\nprintf %s \"$1\" >'" + asked + "'\n");
    std::filesystem::permissions(browser, std::filesystem::perms::owner_all);
    const std::string path = std::getenv("PATH");
    setenv("PATH", (folder_.path.string() + ":" + path).c_str(), 1);
    ChooseMenu(*frame_, kIdWebsite);
    EXPECT_TRUE(WaitFor([&] {
        return std::filesystem::exists(asked) &&
               ReadWholeFile(asked) == wxString(kWebsiteUrl).ToStdString();
    }));
    setenv("PATH", path.c_str(), 1);
}

TEST_F(MainWindowTest, HelpTopicsGoNowhereAfterTheWindow) {
    ShowHelpTopic("bsdl.htm");
    CloseWindow();
    ShowHelpTopic("bsdl.htm");
    EXPECT_EQ(help_.topics, std::vector<wxString>{"bsdl.htm"});
}

TEST_F(MainWindowTest, ExitClosesAWindowWithNothingToSave) {
    const wxWeakRef<OmMainFrame> frame(frame_);
    ChooseMenu(*frame_, wxID_EXIT);
    SettleEvents();
    ASSERT_FALSE(frame);
    frame_ = nullptr;
}

TEST_F(MainWindowTest, CancelAtTheSetupPromptKeepsTheWindowAndSkipsTheDataPrompt) {
    frame_->MarkSetupModified();
    ReadFromFlash(0, {1});
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::Cancel);
    EXPECT_FALSE(frame_->Close());
    ChooseMenu(*frame_, wxID_HELP); // the window is alive and takes commands
    EXPECT_EQ(help_.topics.size(), 1u);
}

TEST_F(MainWindowTest, CancelAtTheDataPromptKeepsTheWindowEvenOnExit) {
    frame_->MarkSetupModified();
    ReadFromFlash(0, {1});
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::No);
    user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                 OmAnswer::Cancel);
    const wxWeakRef<OmMainFrame> frame(frame_);
    ChooseMenu(*frame_, wxID_EXIT);
    SettleEvents();
    EXPECT_TRUE(frame);
}

TEST_F(MainWindowTest, ClosesWhenBothPromptsAgree) {
    frame_->MarkSetupModified();
    ReadFromFlash(0, {1});
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::No);
    user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                 OmAnswer::No);
    const wxWeakRef<OmMainFrame> frame(frame_);
    EXPECT_TRUE(frame_->Close());
    SettleEvents();
    ASSERT_FALSE(frame);
    frame_ = nullptr;
}

// A box that comes up during a command lets queued events through.
class SecondCommandTest : public MainWindowTest, public OmUserInterface {
  protected:
    SecondCommandTest() : recorder_(SetUserInterface(this)) {}

    ~SecondCommandTest() override { SetUserInterface(recorder_); }

    OmAnswer ShowMessage(const std::wstring&, const std::wstring&, OmMessageStyle) override {
        ++boxes_;
        ChooseMenu(*frame_, wxID_OPEN);
        closed_ = frame_->Close();
        return OmAnswer::Cancel;
    }

    void BeginBusyCursor() override {}

    void EndBusyCursor() override {}

    OmUserInterface* recorder_;
    int boxes_ = 0;
    bool closed_ = true;
};

TEST_F(SecondCommandTest, NoSecondCommandStartsWhileOneRuns) {
    frame_->MarkSetupModified();
    ChooseMenu(*frame_, wxID_OPEN);
    EXPECT_EQ(boxes_, 1);
    EXPECT_FALSE(closed_);
}

TEST_F(SecondCommandTest, CloseWhileClosingAsksOnce) {
    frame_->MarkSetupModified();
    EXPECT_FALSE(frame_->Close());
    EXPECT_EQ(boxes_, 1);
}

// As for the files named on the command line.
TEST_F(SecondCommandTest, NoCommandStartsOverTheBoxOfAFailedLoad) {
    EXPECT_FALSE(frame_->LoadSetupFile("missing.velflash"));
    EXPECT_FALSE(closed_);
    closed_ = true;
    EXPECT_FALSE(frame_->LoadDataFile("missing.srec"));
    EXPECT_FALSE(closed_);
    EXPECT_EQ(boxes_, 2);
}

TEST_F(MainWindowTest, GeometryIsStoredAtTheEnd) {
    frame_->SetSize(30, 40, 800, 600);
    EXPECT_TRUE(WaitFor([this] { return frame_->GetRect() == wxRect(30, 40, 800, 600); }));
    CloseWindow();
    const wxConfigBase& store = *wxConfigBase::Get();
    EXPECT_EQ(store.ReadLong("/x", 0), 30);
    EXPECT_EQ(store.ReadLong("/y", 0), 40);
    EXPECT_EQ(store.ReadLong("/w", 0), 800);
    EXPECT_EQ(store.ReadLong("/h", 0), 600);
    EXPECT_FALSE(store.ReadBool("/Maximized", true));
}

TEST_F(MainWindowTest, ConnectionSettingsAreStoredAtTheEnd) {
    OmConnectionSettings& settings = OmFlashProgrammer::GetInstance().settings;
    settings.lptFrequency = 12345;
    CloseWindow();
    settings.ResetToDefaults();
    EXPECT_EQ(wxConfigBase::Get()->ReadLong("/ConnLptFreq", 0), 12345);
}

TEST_F(MainWindowTest, StorePathIsLeftAsItWas) {
    CloseWindow();
    wxConfigBase::Get()->SetPath("/Elsewhere");
    OpenWindow();
    EXPECT_EQ(wxConfigBase::Get()->GetPath(), "/Elsewhere");
    CloseWindow();
    EXPECT_EQ(wxConfigBase::Get()->GetPath(), "/Elsewhere");
}
