#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "data/DataFiles.h"
#include "platform/Text.h"
#include "tests/windows/MainWindow.h"

namespace {

constexpr wchar_t kQuestion[] = L"Do you want to save current data view contents?";

// Two bytes, 11h and 22h, at 1000h.
constexpr char kSRecord[] = "S10510001122B7\nS9030000FC\n";
constexpr char kIntelHex[] = ":021000001122BB\n:00000001FF\n";

class DataFileTest : public MainWindowTest {
  protected:
    void Load(const wxString& path) {
        files_.ExpectOpen("Load Data File", kOpenDataFilter, path);
        ChooseMenu(*frame_, kIdLoadData);
    }

    void Save(const wxString& path, int filterIndex) {
        files_.ExpectSave("Save Data File", kSaveDataFilter, path, filterIndex);
        ChooseMenu(*frame_, kIdSaveDataAs);
    }

    uint32_t GetAddress() const { return frame_->GetDataImage().GetChunks().front().address; }
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(DataFileTest, LoadShowsTheDataAndItsName) {
    const wxString path = folder_.Write("firm.ware.srec", kSRecord);
    Load(path);
    EXPECT_EQ(frame_->GetDataPath(), path);
    EXPECT_EQ(GetCaption(), " firm.ware.srec, 2 Bytes");
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 1u);
    EXPECT_EQ(GetAddress(), 0x1000u);
    EXPECT_EQ(user_.busyCount, 2);
}

TEST_F(DataFileTest, FormatIsFoundByContentNotByName) {
    const struct {
        const char* name;
        const char* content;
        uint32_t address;
        uint64_t bytes;
    } cases[] = {
        {"srec.bin", kSRecord, 0x1000, 2},
        {"hex.srec", kIntelHex, 0x1000, 2},
        {"raw.hex", "just text", 0, 9},
        {"broken-at-once.srec", "S1051000112200\n", 0, 15},
    };

    for (const auto& test : cases) {
        Load(folder_.Write(test.name, test.content));
        EXPECT_EQ(GetAddress(), test.address) << test.name;
        EXPECT_EQ(frame_->GetDataImage().GetByteCount(), test.bytes) << test.name;
    }
}

TEST_F(DataFileTest, FileThatBreaksBehindAGoodRecordIsNotReadAsRaw) {
    Load(folder_.Write("good.srec", kSRecord));
    const wxString bad = folder_.Write("bad.srec", std::string("S10510001122B7\nS1051002112200\n"));
    files_.ExpectOpen("Load Data File", kOpenDataFilter, bad);
    std::string error;
    OmDataImage scratch;
    ASSERT_FALSE(ReadDataFile(bad.ToStdString(), scratch, error));
    ASSERT_FALSE(error.empty());
    user_.Expect(L"Failed to load data file '" + bad.ToStdWstring() + L"'.\n" + FromLocal(error),
                 kErrorBox);
    ChooseMenu(*frame_, kIdLoadData);
    EXPECT_EQ(GetCaption(), " good.srec, 2 Bytes");
    EXPECT_EQ(frame_->GetHexView().GetLineCount(), 1u);
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{});
}

TEST_F(DataFileTest, LoadedDataIsNeverAskedAbout) {
    Load(folder_.Write("a.srec", kSRecord));
    EXPECT_TRUE(frame_->PromptSaveData());
    Load(folder_.Write("b.srec", kSRecord));
    EXPECT_TRUE(frame_->Close());
    SettleEvents();
    frame_ = nullptr;
}

TEST_F(DataFileTest, FlashDataIsAskedAboutUntilItIsSaved) {
    ReadFromFlash(0x1000, {0x11, 0x22});
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Cancel);
    ChooseMenu(*frame_, kIdLoadData);
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    EXPECT_TRUE(frame_->PromptSaveData());
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Data File", kSaveDataFilter, "");
    EXPECT_FALSE(frame_->PromptSaveData()); // the file dialog was cancelled
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Data File", kSaveDataFilter, folder_.Path("a.srec"));
    EXPECT_TRUE(frame_->PromptSaveData());
    EXPECT_TRUE(frame_->PromptSaveData());
    EXPECT_EQ(GetCaption(), " a.srec, 2 Bytes");
}

TEST_F(DataFileTest, ChosenFilterSetsTheFormat) {
    ReadFromFlash(0x1000, {0x11, 0x22});

    const struct {
        int filter;
        const char* name;
        char first;
        size_t size;
    } cases[] = {{0, "a.hex", 'S', 0}, {1, "a.bin", ':', 0}, {2, "a.srec", 0x11, 2}};

    for (const auto& test : cases) {
        const std::string path = folder_.Path(test.name);
        Save(path, test.filter);
        const std::string content = ReadWholeFile(path);
        ASSERT_FALSE(content.empty());
        EXPECT_EQ(content.front(), test.first) << test.name;
        if (test.size > 0) {
            EXPECT_EQ(content.size(), test.size);
        }
        EXPECT_EQ(frame_->GetDataPath(), path);
    }
}

TEST_F(DataFileTest, FailedSaveKeepsThePath) {
    ReadFromFlash(0x1000, {0x11, 0x22});
    const std::string path = folder_.Path("no such folder/a.srec");
    for (const int filter : {0, 1, 2}) {
        user_.Expect(L"Failed to save '" + FromLocal(path) + L"'.", kErrorBox);
        Save(path, filter);
        EXPECT_EQ(frame_->GetDataPath(), "");
    }
}

TEST_F(DataFileTest, SavedFileBecomesRecentEvenUnderItsOwnName) {
    const std::string path = folder_.Write("a.srec", kSRecord);
    Load(path);
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{});
    Save(path, 0);
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{"a.srec"});
}

TEST_F(DataFileTest, AFileBecomesRecentWhenItIsReplaced) {
    Load(folder_.Write("a.srec", kSRecord));
    Load(folder_.Write("b.srec", kSRecord));
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{"a.srec"});
    ReadFromFlash(0, {1});
    EXPECT_EQ(GetRecentFiles(kIdRecentData), (Names{"b.srec", "a.srec"}));
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::No);
    ChooseMenu(*frame_, kIdFirstRecentData + 1);
    EXPECT_EQ(GetCaption(), " a.srec, 2 Bytes");
}

TEST_F(DataFileTest, RecentFileThatHasGoneChangesNothing) {
    const wxString first = folder_.Write("a.srec", kSRecord);
    Load(first);
    Load(folder_.Write("b.srec", kSRecord));
    wxRemoveFile(first);
    OmDataImage scratch;
    std::string error;
    ASSERT_FALSE(ReadDataFile(first.ToStdString(), scratch, error));
    user_.Expect(L"Failed to load data file '" + first.ToStdWstring() + L"'.\n" + FromLocal(error),
                 kErrorBox);
    ChooseMenu(*frame_, kIdFirstRecentData);
    EXPECT_EQ(GetCaption(), " b.srec, 2 Bytes");
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{"a.srec"});
}

TEST_F(DataFileTest, CancelledDialogsChangeNothing) {
    const wxString path = folder_.Write("a.srec", kSRecord);
    Load(path);
    Load("");
    Save("", 1);
    EXPECT_EQ(frame_->GetDataPath(), path);
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{});
}

TEST_F(DataFileTest, RecentCommandsAskAboutUnsavedData) {
    Load(folder_.Write("a.srec", kSRecord));
    ReadFromFlash(0, {1});
    user_.Expect(kQuestion, kSaveQuestionBox, OmAnswer::Cancel);
    ChooseMenu(*frame_, kIdFirstRecentData);
    EXPECT_EQ(GetCaption(), " (data read from flash), 1 Bytes");
}

TEST_F(DataFileTest, RecentListHoldsNineFiles) {
    for (char name = 'a'; name <= 'k'; ++name)
        Load(folder_.Write(std::string(1, name), kSRecord));
    EXPECT_EQ(GetRecentFiles(kIdRecentData), (Names{"j", "i", "h", "g", "f", "e", "d", "c", "b"}));
    ChooseMenu(*frame_, kIdLastRecentData);
    EXPECT_EQ(GetCaption(), " b, 2 Bytes");
}

TEST_F(DataFileTest, CurrentFileBecomesRecentAtTheEndOfTheRun) {
    Load(folder_.Write("a.srec", kSRecord));
    CloseWindow();
    OpenWindow();
    EXPECT_EQ(GetRecentFiles(kIdRecentData), Names{"a.srec"});
    EXPECT_EQ(GetRecentFiles(kIdRecentSetups), Names{});
}

TEST_F(DataFileTest, LongNameIsShortenedOnTheScreenOnly) {
    const std::string name(std::string(80, 'x').append(".srec"));
    Load(folder_.Write(name, kSRecord));
    EXPECT_EQ(GetCaption(), " " + name + ", 2 Bytes");
    EXPECT_EQ(FindByClass<wxStaticText>(*frame_)->GetSize().x, 220);
}

TEST_F(DataFileTest, AmpersandInANameStays) {
    Load(folder_.Write("a&b.srec", kSRecord));
    EXPECT_EQ(FindByClass<wxStaticText>(*frame_)->GetLabelText(), " a&b.srec, 2 Bytes");
}

TEST_F(DataFileTest, LoadedWindowLooksRight) {
    std::string content;
    for (int index = 0; index < 4096; ++index)
        content += static_cast<char>(index * 7 + index / 256);
    Load(folder_.Write("firmware.bin", content));
    TakeScreenshot(*frame_, "main-loaded");
}
