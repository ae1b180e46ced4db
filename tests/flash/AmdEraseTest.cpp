#include "flash/AmdCommands.h"

#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

constexpr char kEraseSetUp[] = R"(
write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 8080 0 1 0
  55555 8080 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
)";

} // namespace

TEST(AmdErase, SectorErasePollsAtTheSectorWithOeHeldLow) {
    FlashBench bench;
    RecordingProgress progress;
    bench.cable.answers = {0x0008, 0xFFFF};
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 0x20000), OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string(kEraseSetUp) + R"(  10000 5555 0 1 1
  10000 3030 0 1 0
  10000 3030 0 1 1
  10000 ZZZZ 0 1 1
  10000 ZZZZ 0 0 1
write and read
  10000 ZZZZ 0 0 1 r
write and read
  10000 ZZZZ 0 0 1 r
)" + kAmdResetLog + kIdleLog);
    EXPECT_EQ(progress.reports, (std::vector<ProgressReport>{{-1, L""}}));
}

TEST(AmdErase, ChipErasePollsAtAddress0) {
    FlashBench bench;
    RecordingProgress progress;
    bench.cable.answers = {0x0008, 0x0048, 0xFFFF};
    EXPECT_EQ(AmdEraseChip(bench.bus, progress), OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string(kEraseSetUp) + R"(  55555 5555 0 1 1
  55555 1010 0 1 0
  00000 1010 0 1 1
  00000 ZZZZ 0 1 1
  00000 ZZZZ 0 0 1
write and read
  00000 ZZZZ 0 0 1 r
write and read
  00000 ZZZZ 0 0 1 r
write and read
  00000 ZZZZ 0 0 1 r
)" + kAmdResetLog + kIdleLog);
}

TEST(AmdErase, PollsEndAsTheChipsSay) {
    const struct {
        const char* what;
        BenchShape shape;
        std::deque<uint32_t> answers;
        OmFlashResult result;
        size_t polls;
    } cases[] = {
        {"done at once", {}, {0x0080}, OmFlashResult::Done, 1},
        {"DQ5 twice", {}, {0x0020, 0x0020}, OmFlashResult::FlashError, 2},
        {"DQ5 once, then DQ7", {}, {0x0020, 0x0080}, OmFlashResult::Done, 2},
        {"DQ5, busy, DQ5", {}, {0x0020, 0x0000, 0x0020}, OmFlashResult::FlashError, 3},
        {"DQ7 and DQ5", {}, {0x00A0}, OmFlashResult::Done, 1},
        {"DQ7 in the upper byte does not count", {}, {0x8000, 0x0080}, OmFlashResult::Done, 2},
        {"two chips, one first",
         {.chips = 2},
         {0x00080080, 0x00480080, 0xFFFFFFFF},
         OmFlashResult::Done,
         3},
        {"two chips of 8 bits, one first",
         {.chips = 2, .wordSize = 1},
         {0xFF08, 0xFFFF},
         OmFlashResult::Done,
         2},
        {"two chips, one fails, the other is waited for",
         {.chips = 2},
         {0x00000020, 0x00000020, 0x00000020, 0x00800020},
         OmFlashResult::FlashError,
         4},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        FlashBench bench(row.shape);
        RecordingProgress progress;
        bench.cable.answers = row.answers;
        EXPECT_EQ(AmdEraseSector(bench.bus, progress, 0), row.result);
        EXPECT_EQ(progress.reports.size(), row.polls - 1);
    }
}

TEST(AmdErase, StopsAtTheUsersWishAndResetsTheFlash) {
    FlashBench bench;
    RecordingProgress progress;
    progress.stopAtReport = 2;
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 0), OmFlashResult::Stopped);
    EXPECT_EQ(progress.reports.size(), 2u);
    EXPECT_TRUE(bench.TakeLog().ends_with(std::string(kAmdResetLog) + kIdleLog));
}

TEST(AmdErase, GivesUpAfterOneMinuteForASectorAndTwoForTheChip) {
    FlashBench bench;
    RecordingProgress progress;
    bench.cable.stepMicroseconds = 1000000; // each look at the clock
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 0), OmFlashResult::TimeOut);
    EXPECT_EQ(progress.reports.size(), 60u);
    EXPECT_TRUE(bench.TakeLog().ends_with(std::string(kAmdResetLog) + kIdleLog));
    progress.reports.clear();
    EXPECT_EQ(AmdEraseChip(bench.bus, progress), OmFlashResult::TimeOut);
    EXPECT_EQ(progress.reports.size(), 120u);
}
