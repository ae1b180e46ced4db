// File names that a user may well choose, and names that cannot be: each is taken as it stands,
// shown as it stands, and never seen by a shell.
#include "app/CommandIds.h"
#include "flash/FlashProgrammer.h"
#include "tests/windows/MainWindow.h"

#include <wx/filename.h>

namespace {

const char* const kNames[] = {
    "a b.srec",
    "quote\"and'quote.srec",
    "a;b.srec",
    "$(touch shell-was-here).srec",
    "`touch shell-was-here`.srec",
    "x;touch shell-was-here;.srec",
    "a|b&c>d<e*?.srec",
    "back\\slash.srec",
    "per%cent%s%n.srec",
    "line\nfeed.srec",
    "-rf.srec",
    "\xC3\xA4\xC3\xB6\xC3\xBC \xE6\xBC\xA2\xE5\xAD\x97.srec",
    "&ampersand&&.srec",
};

class AbsurdNamesTest : public MainWindowTest {
  protected:
    AbsurdNamesTest() : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_.path);
    }

    ~AbsurdNamesTest() override {
        EXPECT_FALSE(std::filesystem::exists("shell-was-here")) << "a name has reached a shell";
        std::filesystem::current_path(before_);
    }

    // 4,000 characters in folders that are not there.
    static std::string LongPath() {
        std::string path;
        while (path.size() < 4000)
            path += "/long-folder-name";
        return path.substr(0, 4000);
    }

  private:
    std::filesystem::path before_;
};

} // namespace

TEST_F(AbsurdNamesTest, DataIsSavedAndLoadedUnderAnyName) {
    for (const char* name : kNames) {
        SCOPED_TRACE(name);
        const std::string path = folder_.Path(name);
        ReadFromFlash(0, {1, 2, 3});
        files_.ExpectSave("Save Data File", kSaveDataFilter, wxString::FromUTF8(path));
        ChooseMenu(*frame_, kIdSaveDataAs);
        EXPECT_TRUE(std::filesystem::exists(path));
        files_.ExpectOpen("Load Data File", kOpenDataFilter, wxString::FromUTF8(path));
        ChooseMenu(*frame_, kIdLoadData);
        EXPECT_EQ(frame_->GetDataImage().GetByteCount(), 3u);
        EXPECT_EQ(FindByClass<wxStaticText>(*frame_)->GetLabelText(),
                  wxString::FromUTF8(" " + std::string(name) + ", 3 Bytes"));
    }
}

TEST_F(AbsurdNamesTest, SetupIsSavedAndLoadedUnderAnyName) {
    OmFlashProgrammer::GetInstance().SetDesignSetup(MakeSmallestSetup());
    for (const char* name : kNames) {
        SCOPED_TRACE(name);
        const std::string path = folder_.Path(name);
        files_.ExpectSave("Save Setup File", kSaveSetupFilter, wxString::FromUTF8(path));
        ChooseMenu(*frame_, wxID_SAVEAS);
        EXPECT_TRUE(std::filesystem::exists(path));
        files_.ExpectOpen("Load Setup File", kOpenSetupFilter, wxString::FromUTF8(path));
        ChooseMenu(*frame_, wxID_OPEN);
        EXPECT_EQ(frame_->GetTitle(), wxString::FromUTF8(std::filesystem::path(name).stem()) +
                                          " - Velmora Flash Programmer");
    }
}

TEST_F(AbsurdNamesTest, RecentFilesComeBackUnderTheirNames) {
    const char* const name = "a;b\"c'd$e &f \xC3\xA4.srec";
    const std::string path = folder_.Path(name);
    ReadFromFlash(0, {1, 2, 3});
    files_.ExpectSave("Save Data File", kSaveDataFilter, wxString::FromUTF8(path));
    ChooseMenu(*frame_, kIdSaveDataAs);
    CloseWindow();
    OpenWindow();
    ChooseMenu(*frame_, kIdFirstRecentData);
    EXPECT_EQ(frame_->GetDataPath(), wxString::FromUTF8(path));
    EXPECT_EQ(frame_->GetDataImage().GetByteCount(), 3u);
}

TEST_F(AbsurdNamesTest, PathOfFourThousandCharactersIsNamedInTheMessage) {
    const std::string path = LongPath();
    const std::wstring shown(path.begin(), path.end());
    ReadFromFlash(0, {1});
    user_.Expect(L"Failed to save '" + shown + L"'.", kErrorBox);
    files_.ExpectSave("Save Data File", kSaveDataFilter, path);
    ChooseMenu(*frame_, kIdSaveDataAs);
    user_.Expect(L"Failed to load data file '" + shown + L"'.\nError opening file.", kErrorBox);
    EXPECT_FALSE(frame_->LoadDataFile(path));
    user_.Expect(L"Failed to save setup file '" + shown + L"'.", kErrorBox);
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
    ChooseMenu(*frame_, wxID_SAVEAS);
    user_.Expect(L"Failed to load setup file '" + shown + L"'.", kErrorBox);
    EXPECT_FALSE(frame_->LoadSetupFile(path));
    EXPECT_EQ(frame_->GetTitle(), "Untitled - Velmora Flash Programmer");
    EXPECT_EQ(GetCaption(), " (data read from flash), 1 Bytes");
}
