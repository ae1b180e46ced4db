#include "app/CommandIds.h"
#include "flash/FlashProgrammer.h"
#include "tests/windows/MainWindow.h"

namespace {

constexpr wchar_t kQuestion[] = L"Do you want to save current setup?";

class SetupFileTest : public MainWindowTest {
  protected:
    SetupFileTest() { OmFlashProgrammer::GetInstance().SetDesignSetup(MakeSmallestSetup()); }

    // A setup file that the program itself wrote; the window is as new afterwards.
    wxString MakeSetupFile(const std::string& name) {
        const wxString path = folder_.Path(name);
        SaveAs(path);
        CloseWindow();
        wxConfigBase::Get()->DeleteAll();
        OpenWindow();
        return path;
    }

    void SaveAs(const wxString& path) {
        files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
        ChooseMenu(*frame_, wxID_SAVEAS);
    }

    void Load(const wxString& path) {
        files_.ExpectOpen("Load Setup File", kOpenSetupFilter, path);
        ChooseMenu(*frame_, wxID_OPEN);
    }

    void ExpectFailure(const wchar_t* what, const wxString& path) {
        user_.Expect((wxString("Failed to ") + what + " setup file '" + path + "'.").ToStdWstring(),
                     kErrorBox);
    }
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(SetupFileTest, LoadTakesThePathAndTheTitle) {
    const wxString path = MakeSetupFile("board.v2.velflash");
    Load(path);
    EXPECT_EQ(frame_->GetSetupPath(), path);
    EXPECT_EQ(frame_->GetTitle(), "board.v2 - Velmora Flash Programmer");
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{});
}

TEST_F(SetupFileTest, CancelledFileDialogChangesNothing) {
    frame_->MarkSetupModified();
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    Load("");
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
}

TEST_F(SetupFileTest, FailedLoadKeepsPathAndFlag) {
    const wxString good = MakeSetupFile("good.velflash");
    Load(good);
    frame_->MarkSetupModified();
    const wxString bad = folder_.Write("bad.velflash", "no setup at all");
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    ExpectFailure(L"load", bad);
    Load(bad);
    EXPECT_EQ(frame_->GetTitle(), "good* - Velmora Flash Programmer");
    EXPECT_EQ(frame_->GetSetupPath(), good);
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{});
}

TEST_F(SetupFileTest, MissingFileIsAFailedLoad) {
    const wxString path = folder_.Path("missing.velflash");
    ExpectFailure(L"load", path);
    EXPECT_FALSE(frame_->LoadSetupFile(path));
}

TEST_F(SetupFileTest, LoadClearsTheModifiedFlag) {
    const wxString path = MakeSetupFile("a.velflash");
    frame_->MarkSetupModified();
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    Load(path);
    EXPECT_FALSE(frame_->IsSetupModified());
    EXPECT_EQ(frame_->GetTitle(), "a - Velmora Flash Programmer");
}

TEST_F(SetupFileTest, SaveWithoutAPathAsksForOne) {
    const wxString path = folder_.Path("new.velflash");
    frame_->MarkSetupModified();
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
    ChooseMenu(*frame_, wxID_SAVE);
    EXPECT_TRUE(wxFileExists(path));
    EXPECT_EQ(frame_->GetTitle(), "new - Velmora Flash Programmer");
}

TEST_F(SetupFileTest, SaveWithAPathDoesNotAsk) {
    const wxString path = folder_.Path("a.velflash");
    SaveAs(path);
    frame_->MarkSetupModified();
    wxRemoveFile(path);
    ChooseMenu(*frame_, wxID_SAVE);
    EXPECT_TRUE(wxFileExists(path));
    EXPECT_FALSE(frame_->IsSetupModified());
}

TEST_F(SetupFileTest, FailedSaveKeepsPathAndFlag) {
    const wxString path = folder_.Path("no such folder/a.velflash");
    frame_->MarkSetupModified();
    ExpectFailure(L"save", path);
    SaveAs(path);
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
    EXPECT_EQ(frame_->GetSetupPath(), "");
}

TEST_F(SetupFileTest, NonAsciiNameIsSavedAndLoaded) {
    const wxString path = wxString(folder_.path.string()) + L"/Pr\u00FCfling.velflash";
    SaveAs(path);
    EXPECT_TRUE(wxFileExists(path));
    Load(path);
    EXPECT_EQ(frame_->GetTitle(), wxString(L"Pr\u00FCfling - Velmora Flash Programmer"));
}

TEST_F(SetupFileTest, PromptAnswersDecideWhetherTheCommandGoesOn) {
    frame_->MarkSetupModified();
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Cancel);
    EXPECT_FALSE(frame_->PromptSaveSetup());
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    EXPECT_TRUE(frame_->PromptSaveSetup());
    EXPECT_TRUE(frame_->IsSetupModified());
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, "");
    EXPECT_FALSE(frame_->PromptSaveSetup()); // the file dialog was cancelled
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, folder_.Path("a.velflash"));
    EXPECT_TRUE(frame_->PromptSaveSetup());
    EXPECT_TRUE(frame_->PromptSaveSetup()); // nothing modified, nothing asked
}

TEST_F(SetupFileTest, PromptWithAFailedSaveStopsTheCommand) {
    frame_->MarkSetupModified();
    const wxString path = folder_.Path("no such folder/a.velflash");
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
    ExpectFailure(L"save", path);
    EXPECT_FALSE(frame_->PromptSaveSetup());
}

TEST_F(SetupFileTest, AFileBecomesRecentWhenItIsReplaced) {
    const wxString first = folder_.Path("first.velflash");
    const wxString second = folder_.Path("second.velflash");
    SaveAs(first);
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{});
    EXPECT_FALSE(IsMenuEnabled(*frame_, kIdRecentSetups));
    SaveAs(first); // under its own name
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{});
    SaveAs(second);
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{"first.velflash"});
    EXPECT_TRUE(IsMenuEnabled(*frame_, kIdRecentSetups));
    Load(first);
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), (Names{"second.velflash", "first.velflash"}));
}

TEST_F(SetupFileTest, RecentCommandLoadsItsFile) {
    const wxString first = folder_.Path("first.velflash");
    const wxString second = folder_.Path("second.velflash");
    SaveAs(first);
    SaveAs(second);
    ChooseMenu(*frame_, kIdFirstRecentSetup);
    EXPECT_EQ(frame_->GetSetupPath(), first);
    frame_->MarkSetupModified();
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Cancel);
    ChooseMenu(*frame_, kIdFirstRecentSetup);
    EXPECT_EQ(frame_->GetSetupPath(), first);
}

TEST_F(SetupFileTest, RecentFileThatHasGoneChangesNothing) {
    const wxString first = folder_.Path("first.velflash");
    const wxString second = folder_.Path("second.velflash");
    SaveAs(first);
    SaveAs(second);
    wxRemoveFile(first);
    ExpectFailure(L"load", first);
    ChooseMenu(*frame_, kIdFirstRecentSetup);
    EXPECT_EQ(frame_->GetSetupPath(), second);
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{"first.velflash"});
}

TEST_F(SetupFileTest, CancelledSaveDialogChangesNothing) {
    frame_->MarkSetupModified();
    SaveAs("");
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, "");
    ChooseMenu(*frame_, wxID_SAVE);
    EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
}

TEST_F(SetupFileTest, RecentCommandBeyondTheListIsIgnored) {
    wxCommandEvent event(wxEVT_MENU, kIdLastRecentSetup);
    frame_->GetEventHandler()->ProcessEvent(event);
    EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
}

TEST_F(SetupFileTest, CurrentFileBecomesRecentAtTheEndOfTheRun) {
    SaveAs(folder_.Path("first.velflash"));
    SaveAs(folder_.Path("second.velflash"));
    CloseWindow();
    OpenWindow();
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), (Names{"second.velflash", "first.velflash"}));
    EXPECT_EQ(wxConfigBase::Get()->Read("/RecentSetupFiles/file1"),
              folder_.Path("second.velflash"));
}

TEST_F(SetupFileTest, NewSetupClearsThePathAndMakesTheFileRecent) {
    SaveAs(folder_.Path("first.velflash"));
    dialogs_.ExpectAndPress("Setup", wxID_CANCEL);
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
    EXPECT_EQ(frame_->GetSetupPath(), "");
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{"first.velflash"});
}

TEST_F(SetupFileTest, NewSetupStopsWhenThePromptIsCancelled) {
    const wxString path = folder_.Path("first.velflash");
    SaveAs(path);
    frame_->MarkSetupModified();
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Cancel);
    ChooseMenu(*frame_, wxID_NEW);
    EXPECT_EQ(frame_->GetSetupPath(), path);
    EXPECT_TRUE(frame_->IsSetupModified());
}
