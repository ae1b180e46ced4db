// The user stops an action at each of its reports in turn: the box comes, the flash is left in read
// mode, and the next action works.
#include "tests/road/RoadFixture.h"
#include "tests/road/SilentUser.h"

#include <functional>

namespace {

struct Family {
    const char* name;
    const char* set;
    const char* bufferBytes;
};

constexpr Family kFamilies[] = {
    {"AmdWord", "amd", "0"},
    {"AmdBuffered", "amd", "32"},
    {"IntelStandard", "intel", "0"},
    {"IntelExtended", "intel", "32"},
};

constexpr uint32_t kBytes = 96;
constexpr uint32_t kSectorBytes = 4096;
constexpr uint32_t kErasedSector = 2 * kSectorBytes; // of one chip

// How long a user looks at the box; what the flash was doing is over by then.
constexpr unsigned kLookMilliseconds = 1000;

class Abort : public ::testing::TestWithParam<Family> {
  protected:
    Abort() {
        image.SetBytes(0, bytes);
        EXPECT_TRUE(road.PrepareToProgram());
    }

    static vb::BoardBuilder BoardFor(const Family& family) {
        vb::BoardBuilder builder;
        builder.Devices(1).Chips(2).Set("width", "8").Set("sectors", "4x4K");
        builder.Set("set", family.set).Set("buffer", family.bufferBytes).Set("locks", "single");
        builder.Set("word-us", "15").Set("buffer-us", "40").Set("lock-us", "30");
        return builder.Set("sector-us", "60").Set("window-us", "5").Set("chip-us", "100");
    }

    bool IsIntel() const { return road.built.flash.commandSet == vb::CommandSet::Intel; }

    // What a chip answers to a read at that moment.
    uint32_t Answer(size_t chip, uint32_t word) {
        return road.board->Flash(chip).Model().Read(word);
    }

    // Known contents that no status register shows: two sectors of them, the others erased.
    void Restore() {
        road.FillFlash(0xFF);
        for (size_t chip = 0; chip < 2; ++chip)
            std::fill_n(road.board->Flash(chip).Model().Bytes().begin(), 2 * kSectorBytes,
                        uint8_t{0x5C});
        progress.stopAtReport = SIZE_MAX;
        if (IsIntel()) {
            EXPECT_TRUE(road.programmer.UnlockSectors(progress, {0, kSectorBytes, kErasedSector}));
        }
    }

    void ExpectNextActionWorks() {
        OmDataImage read;
        EXPECT_TRUE(road.programmer.ReadFlash(progress, 3 * 2 * kSectorBytes, 4, read));
        ASSERT_EQ(read.GetChunkCount(), 1u);
        EXPECT_EQ(read.GetChunks().front().bytes, std::vector<uint8_t>(4, 0xFF));
        Restore();
        EXPECT_TRUE(road.programmer.EraseSectors(progress, {0}));
        EXPECT_TRUE(road.programmer.ProgramFlash(progress, image));
        EXPECT_TRUE(road.programmer.VerifyFlash(united, image));
        road.ExpectContent(bytes);
        EXPECT_TRUE(user.boxes.empty()) << user.boxes.front();
    }

    // Stops `action` at its first report, at its second, and so on, until it runs to its end. An
    // Intel flash that was left `busy` takes no command: the next action's opening is its first.
    void StopEverywhere(const wchar_t* text, bool busy, const std::function<bool()>& action) {
        size_t stops = 0;
        for (size_t report = 1;; ++report) {
            SCOPED_TRACE("report " + std::to_string(report));
            Restore();
            user.boxes.clear();
            progress.reports.clear();
            progress.finished = 0;
            progress.stopAtReport = report;
            const bool good = action();
            progress.stopAtReport = SIZE_MAX;
            if (good && progress.reports.size() < report)
                break;
            EXPECT_FALSE(good);
            EXPECT_EQ(user.boxes, (std::vector<ShownMessage>{{text, kProductName, kWarningBox}}));
            EXPECT_EQ(progress.finished, 1);
            user.boxes.clear();
            GetClock().SleepMilliseconds(kLookMilliseconds);
            for (size_t chip = 0; chip < 2 && !(busy && IsIntel()); ++chip)
                EXPECT_EQ(Answer(chip, 3 * kSectorBytes), 0xFFu) << "not in read mode";
            ExpectNextActionWorks();
            ++stops;
            if (HasFailure())
                return; // one failure tells enough
        }
        EXPECT_GT(stops, 2u);
    }

    SilentUser user;
    RecordingProgress progress;
    OmUnitedProgressCallback united{&progress};
    Road road{BoardFor(GetParam())};
    const std::vector<uint8_t> bytes = Firmware(kBytes, 21);
    OmDataImage image;
};

} // namespace

TEST_P(Abort, OfAnErase) {
    StopEverywhere(L"Erase operation was aborted by user.", true, [this] {
        return road.programmer.EraseSectors(progress, {0, kSectorBytes});
    });
}

TEST_P(Abort, OfAChipErase) {
    StopEverywhere(L"Erase operation was aborted by user.", true, [this] {
        // An Intel flash is erased by sectors; the locked ones are left out.
        road.programmer.sectors.groups = {{IsIntel() ? 2u : 4u, kSectorBytes}};
        return road.programmer.EraseChip(progress);
    });
}

TEST_P(Abort, OfAProgram) {
    OmDataImage elsewhere;
    elsewhere.SetBytes(2 * kErasedSector, bytes);
    StopEverywhere(L"Program operation was aborted by user.", false,
                   [&] { return road.programmer.ProgramFlash(progress, elsewhere); });
}

TEST_P(Abort, OfARead) {
    StopEverywhere(L"Flash reading was aborted by user.", false, [this] {
        OmDataImage read;
        return road.programmer.ReadFlash(progress, 0, 4 * 2 * kSectorBytes, read);
    });
}

TEST_P(Abort, OfAVerify) {
    OmDataImage expected;
    expected.SetBytes(0, std::vector<uint8_t>(2 * 2 * kSectorBytes, 0x5C));
    StopEverywhere(L"Verify operation was aborted by user.", false,
                   [&] { return road.programmer.VerifyFlash(united, expected); });
}

TEST_P(Abort, OfABlankCheck) {
    StopEverywhere(L"Blank check operation was aborted by user.", false, [this] {
        return road.programmer.BlankCheckFlash(
            united, {{4 * kSectorBytes, 2 * kSectorBytes}, {6 * kSectorBytes, 2 * kSectorBytes}});
    });
}

TEST_P(Abort, OfALock) {
    if (!IsIntel())
        return; // nothing to lock
    StopEverywhere(L"Sector lock operation was aborted by user.", true, [this] {
        return road.programmer.LockSectors(progress, {0, kSectorBytes, 2 * kSectorBytes});
    });
}

TEST_P(Abort, OfAnUnlock) {
    if (!IsIntel())
        return;
    StopEverywhere(L"Sector unlock operation was aborted by user.", true, [this] {
        return road.programmer.UnlockSectors(progress, {0, kSectorBytes, 2 * kSectorBytes});
    });
}

INSTANTIATE_TEST_SUITE_P(Families, Abort, ::testing::ValuesIn(kFamilies),
                         [](const auto& family) { return std::string(family.param.name); });
