#include "flash/IntelCommands.h"

#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

std::string Closing() {
    return std::string(kIntelClearStatusLog) + kIntelReadArrayLog + kIdleLog;
}

} // namespace

TEST(IntelErase, EraseWritesSetUpAndConfirmThenPulsesOeForEachPoll) {
    FlashBench bench;
    RecordingProgress progress;
    bench.cable.answers = {0x0000, 0x0080};
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, 0x20000), OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string("\n") + kIntelClearStatusLog + R"(write
  10000 ZZZZ 0 1 1
  10000 2020 0 1 0
  10000 2020 0 1 1
  10000 D0D0 0 1 0
  10000 D0D0 0 1 1
  10000 ZZZZ 0 1 1
write and read
  10000 ZZZZ 0 0 1
  10000 ZZZZ 0 1 1 r
write and read
  10000 ZZZZ 0 0 1
  10000 ZZZZ 0 1 1 r
)" + Closing());
    EXPECT_EQ(progress.reports, (std::vector<ProgressReport>{{-1, L""}}));
}

TEST(IntelErase, LockAndUnlockDifferInTheConfirmation) {
    const struct {
        bool lock;
        const char* confirm;
    } cases[] = {{true, "0101"}, {false, "D0D0"}};

    for (const auto& row : cases) {
        FlashBench bench;
        RecordingProgress progress;
        bench.cable.answers = {0x0080};
        // An offset inside a block is passed on as it is: the flash decides.
        EXPECT_EQ(IntelSetBlockLock(bench.bus, progress, row.lock, 0x20402), OmFlashResult::Done);
        const std::string confirm = row.confirm;
        EXPECT_EQ(bench.TakeLog(), "\n" + std::string(kIntelClearStatusLog) + R"(write
  10201 ZZZZ 0 1 1
  10201 6060 0 1 0
  10201 6060 0 1 1
  10201 )" + confirm + R"( 0 1 0
  10201 )" + confirm + R"( 0 1 1
  10201 ZZZZ 0 1 1
write and read
  10201 ZZZZ 0 0 1
  10201 ZZZZ 0 1 1 r
)" + Closing());
    }
}

TEST(IntelErase, EndsAsTheStatusRegistersSay) {
    using Result = OmFlashResult;
    using Command = Result (*)(OmBoundaryScanBus&, OmProgressCallback&, uint32_t);
    const BenchShape two{.chips = 2};

    const struct {
        const char* what;
        Command command;
        BenchShape shape;
        std::deque<uint32_t> answers;
        Result result;
        size_t polls;
    } cases[] = {
        {"erased", IntelEraseBlock, {}, {0x0080}, Result::Done, 1},
        {"SR5", IntelEraseBlock, {}, {0x00A0}, Result::FlashError, 1},
        {"SR5 while busy", IntelEraseBlock, {}, {0x0020, 0x0080}, Result::Done, 2},
        {"SR4 and SR5", IntelEraseBlock, {}, {0x00B0}, Result::Done, 1},
        {"SR4 alone", IntelEraseBlock, {}, {0x0090}, Result::Done, 1},
        {"SR1", IntelEraseBlock, {}, {0x0082}, Result::BlockLocked, 1},
        {"SR5 and SR1", IntelEraseBlock, {}, {0x00A2}, Result::BlockLocked, 1},
        {"SR5, then SR1", IntelEraseBlock, two, {0x008200A0}, Result::BlockLocked, 1},
        {"SR1, then SR5", IntelEraseBlock, two, {0x00A00082}, Result::FlashError, 1},
        {"one ready", IntelEraseBlock, two, {0x00000080, 0x00800080}, Result::Done, 2},
        {"errors of a busy chip", IntelEraseBlock, two, {0x00220080, 0x00800080}, Result::Done, 2},
        {"locked", IntelLockBlock, {}, {0x0080}, Result::Done, 1},
        {"lock, SR4", IntelLockBlock, {}, {0x0090}, Result::FlashError, 1},
        {"lock, SR5 and SR1", IntelLockBlock, {}, {0x00A2}, Result::Done, 1},
        {"unlocked", IntelUnlockBlock, {}, {0x0000, 0x0080}, Result::Done, 2},
        {"unlock, SR5", IntelUnlockBlock, {}, {0x00A0}, Result::FlashError, 1},
        {"unlock, SR4 and SR1", IntelUnlockBlock, {}, {0x0092}, Result::Done, 1},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        FlashBench bench(row.shape);
        RecordingProgress progress;
        bench.cable.answers = row.answers;
        EXPECT_EQ(row.command(bench.bus, progress, 0), row.result);
        EXPECT_EQ(progress.reports.size(), row.polls - 1);
    }
}

TEST(IntelErase, StopsAtTheUsersWishAndClosesProperly) {
    FlashBench bench;
    RecordingProgress progress;
    progress.stopAtReport = 1;
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, 0), OmFlashResult::Stopped);
    EXPECT_EQ(progress.reports.size(), 1u);
    EXPECT_TRUE(bench.TakeLog().ends_with(Closing()));
}

TEST(IntelErase, GivesUpAfterAMinuteForAnEraseAndHalfAMinuteForALock) {
    FlashBench bench;
    RecordingProgress progress;
    bench.cable.stepMicroseconds = 1000000; // each look at the clock
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, 0), OmFlashResult::TimeOut);
    EXPECT_EQ(progress.reports.size(), 60u);
    EXPECT_TRUE(bench.TakeLog().ends_with(Closing()));
    progress.reports.clear();
    EXPECT_EQ(IntelLockBlock(bench.bus, progress, 0), OmFlashResult::TimeOut);
    EXPECT_EQ(progress.reports.size(), 30u);
    progress.reports.clear();
    EXPECT_EQ(IntelUnlockBlock(bench.bus, progress, 0), OmFlashResult::TimeOut);
    EXPECT_EQ(progress.reports.size(), 30u);
}
