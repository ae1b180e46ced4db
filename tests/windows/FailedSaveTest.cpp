// A save that fails, on a full disk, in a folder that takes no files or in one that has gone: it is
// told, the window's state stays, and the old file is whole.
#include "app/CommandIds.h"
#include "flash/FlashProgrammer.h"
#include "platform/Text.h"
#include "tests/support/WithPermissions.h"
#include "tests/windows/MainWindow.h"

#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sys/resource.h>

namespace {

namespace fs = std::filesystem;

constexpr char kOldContent[] = "what was there before";
constexpr rlim_t kRoom = 64; // bytes of a file that still fit on the full disk

// No file can grow beyond a few bytes.
class FullDisk {
  public:
    FullDisk() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{kRoom, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }

    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    void (*handler_)(int);
    rlimit before_{};
};

class FailedSaveTest : public MainWindowTest {
  protected:
    FailedSaveTest() {
        OmFlashProgrammer::GetInstance().SetDesignSetup(MakeSmallestSetup());
        fs::permissions(folder_.path, fs::perms::all); // for nobody
        fs::create_directory(drive_);
        fs::permissions(drive_, fs::perms::all);
    }

    // Runs `save` in every way in which it can fail.
    void ForEachTrouble(const std::function<void()>& save) {
        {
            SCOPED_TRACE("full disk");
            const FullDisk full;
            save();
        }
        ExpectOldFilesOnly();
        {
            SCOPED_TRACE("read-only folder");
            const WithPermissions folder(drive_, fs::perms(0555));
            save();
        }
        ExpectOldFilesOnly();
        {
            SCOPED_TRACE("vanished drive");
            fs::rename(drive_, drive_.string() + " unplugged");
            save();
            EXPECT_FALSE(fs::exists(drive_));
            fs::rename(drive_.string() + " unplugged", drive_);
        }
        ExpectOldFilesOnly();
    }

    std::string OnDrive(const std::string& name) const { return (drive_ / name).string(); }

    void WriteOldFile(const std::string& name) { folder_.Write("drive/" + name, kOldContent); }

    // The old files are whole, and no other is left behind.
    void ExpectOldFilesOnly() {
        for (const fs::directory_entry& entry : fs::directory_iterator(drive_))
            EXPECT_EQ(ReadWholeFile(entry.path().string()), kOldContent) << entry.path();
    }

    void ExpectFailure(const std::string& beginning, const std::string& names,
                       const std::string& end = "'.") {
        user_.Expect(FromLocal(beginning + names + end), kErrorBox);
    }

    const fs::path drive_ = folder_.path / "drive";
};

} // namespace

TEST_F(FailedSaveTest, OfASetupUnderItsPath) {
    const std::string path = OnDrive("board.velflash");
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
    ChooseMenu(*frame_, wxID_SAVEAS);
    WriteOldFile("board.velflash");
    frame_->MarkSetupModified();
    ForEachTrouble([&] {
        ExpectFailure("Failed to save setup file '", path);
        ChooseMenu(*frame_, wxID_SAVE);
        EXPECT_EQ(frame_->GetTitle(), "board* - Velmora Flash Programmer");
        EXPECT_EQ(GetRecentFiles(kIdRecentSetups), std::vector<std::string>{});
    });
    ChooseMenu(*frame_, wxID_SAVE); // the trouble is over
    EXPECT_EQ(frame_->GetTitle(), "board - Velmora Flash Programmer");
    EXPECT_NE(ReadWholeFile(path), kOldContent);
}

TEST_F(FailedSaveTest, OfASetupUnderANewName) {
    WriteOldFile("other.velflash");
    const std::string path = OnDrive("other.velflash");
    frame_->MarkSetupModified();
    ForEachTrouble([&] {
        files_.ExpectSave("Save Setup File", kSaveSetupFilter, path);
        ExpectFailure("Failed to save setup file '", path);
        ChooseMenu(*frame_, wxID_SAVEAS);
        EXPECT_EQ(frame_->GetTitle(), "Untitled* - Velmora Flash Programmer");
        EXPECT_EQ(frame_->GetSetupPath(), "");
    });
}

TEST_F(FailedSaveTest, OfDataInEachFormat) {
    ReadFromFlash(0x1000, std::vector<uint8_t>(5000, 0x11));
    WriteOldFile("data");
    const std::string path = OnDrive("data");
    for (const int filter : {0, 1, 2}) {
        SCOPED_TRACE(filter);
        ForEachTrouble([&] {
            files_.ExpectSave("Save Data File", kSaveDataFilter, path, filter);
            ExpectFailure("Failed to save '", path);
            ChooseMenu(*frame_, kIdSaveDataAs);
            EXPECT_EQ(frame_->GetDataPath(), "");
            EXPECT_EQ(GetCaption(), " (data read from flash), 5000 Bytes");
        });
    }
}

TEST_F(FailedSaveTest, OfRawDataInParts) {
    OmDataImage& image = frame_->BeginFlashData();
    image.SetBytes(0, std::vector<uint8_t>(500, 0x11));
    image.SetBytes(0x1000, std::vector<uint8_t>(500, 0x22));
    frame_->ShowFlashData();
    WriteOldFile("a.part1of2.0000.bin");
    WriteOldFile("a.part2of2.1000.bin");
    const std::string names =
        OnDrive("a.part1of2.0000.bin") + "\n" + OnDrive("a.part2of2.1000.bin");
    ForEachTrouble([&] {
        files_.ExpectSave("Save Data File", kSaveDataFilter, OnDrive("a.bin"), 2);
        user_.Expect(L"Unlike S-record and Intel HEX, raw binary file format stores only\n"
                     L"one continuous uninterrupted piece of data.\n\n"
                     L"Press OK to save each chunk of data as a separate binary file.\n\n"
                     L"Files to save:\n" +
                         FromLocal(names),
                     {OmButtons::OkCancel, OmIcon::Question});
        if (fs::exists(drive_)) {
            user_.Expect(L"These files already exist:\n" + FromLocal(names) +
                             L"\n\nDo you want to replace the existing files?",
                         kLossQuestionBox, OmAnswer::Yes);
        }
        ExpectFailure("Failed to save:\n", names, "");
        ChooseMenu(*frame_, kIdSaveDataAs);
        EXPECT_EQ(frame_->GetDataPath(), "");
    });
}

TEST_F(FailedSaveTest, OntoAFileThatMustNotBeWritten) {
    ReadFromFlash(0, {1, 2, 3});
    WriteOldFile("data");
    const WithPermissions file(OnDrive("data"), fs::perms(0444));
    for (const int filter : {0, 1, 2}) {
        files_.ExpectSave("Save Data File", kSaveDataFilter, OnDrive("data"), filter);
        ExpectFailure("Failed to save '", OnDrive("data"));
        ChooseMenu(*frame_, kIdSaveDataAs);
    }
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, OnDrive("data"));
    ExpectFailure("Failed to save setup file '", OnDrive("data"));
    ChooseMenu(*frame_, wxID_SAVEAS);
    ExpectOldFilesOnly();
}

TEST_F(FailedSaveTest, OntoADeviceThatTakesNothing) {
    ReadFromFlash(0, {1, 2, 3});
    for (const int filter : {0, 1, 2}) {
        files_.ExpectSave("Save Data File", kSaveDataFilter, "/dev/full", filter);
        ExpectFailure("Failed to save '", "/dev/full");
        ChooseMenu(*frame_, kIdSaveDataAs);
        EXPECT_EQ(frame_->GetDataPath(), "");
    }
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, "/dev/full");
    ExpectFailure("Failed to save setup file '", "/dev/full");
    ChooseMenu(*frame_, wxID_SAVEAS);
}

TEST_F(FailedSaveTest, KeepsTheWindowThatIsToBeClosed) {
    const std::string setup = OnDrive("a.velflash");
    const std::string data = OnDrive("a.srec");
    frame_->MarkSetupModified();
    ReadFromFlash(0, std::vector<uint8_t>(500, 0x11));
    const FullDisk full;
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::Yes);
    files_.ExpectSave("Save Setup File", kSaveSetupFilter, setup);
    ExpectFailure("Failed to save setup file '", setup);
    EXPECT_FALSE(frame_->Close());
    user_.Expect(L"Do you want to save current setup?", kSaveQuestionBox, OmAnswer::No);
    user_.Expect(L"Do you want to save current data view contents?", kSaveQuestionBox,
                 OmAnswer::Yes);
    files_.ExpectSave("Save Data File", kSaveDataFilter, data, 0);
    ExpectFailure("Failed to save '", data);
    EXPECT_FALSE(frame_->Close());
    EXPECT_TRUE(frame_->IsSetupModified());
    EXPECT_EQ(GetCaption(), " (data read from flash), 500 Bytes");
}
