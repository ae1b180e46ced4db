#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

// A flash whose word at address a is A000h + a.
class ReadWords : public testing::Test {
  protected:
    ReadWords() {
        bench.cable.flash = [](const BenchPins& pins) {
            const bool reads = !pins.ce && !pins.oe && pins.we && !pins.driven;
            return reads ? 0xA000 + pins.address : 0xBAD0;
        };
    }

    std::vector<int> Percents() const {
        std::vector<int> percents;
        for (const ProgressReport& report : progress.reports)
            percents.push_back(report.percent);
        return percents;
    }

    FlashBench bench;
    RecordingProgress progress;
    OmDataImage image;
    uint32_t done = 99;
};

} // namespace

TEST_F(ReadWords, PipelinedReadTakesOneScanMoreThanWords) {
    bench.cable.reading = 3;
    EXPECT_EQ(bench.bus.ReadWords(&progress, 0x10, 3, image, &done), OmFlashResult::Done);
    EXPECT_EQ(done, 3u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  00010 ZZZZ 0 0 1
  00011 ZZZZ 0 0 1 r
  00012 ZZZZ 0 0 1 r
  00012 ZZZZ 0 0 1 r
)") + kIdleLog);
    EXPECT_EQ(image, ImageOfWords(0x10, {0xA010, 0xA011, 0xA012}));
    EXPECT_EQ(Percents(), (std::vector<int>{100}));
}

TEST_F(ReadWords, PipelinedReadReportsOnceABatch) {
    bench.cable.reading = 1; // ten transfers of one scan
    EXPECT_EQ(bench.bus.ReadWords(&progress, 0, 25, image, &done), OmFlashResult::Done);
    EXPECT_EQ(bench.cable.runSizes, (std::vector<size_t>{11, 11, 6, 1}));
    EXPECT_EQ(Percents(), (std::vector<int>{40, 80, 100}));
    EXPECT_EQ(image.GetByteCount(), 50u);
    EXPECT_EQ(image.GetChunkCount(), 1u);
}

TEST_F(ReadWords, SteppedReadRunsScanByScan) {
    EXPECT_EQ(bench.bus.ReadWords(&progress, 0x10, 2, image, &done), OmFlashResult::Done);
    EXPECT_EQ(done, 2u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  00010 ZZZZ 0 0 1
write and read
  00011 ZZZZ 0 0 1 r
write and read
  00011 ZZZZ 0 0 1 r
)") + kIdleLog);
    EXPECT_EQ(image, ImageOfWords(0x10, {0xA010, 0xA011}));
    EXPECT_EQ(Percents(), (std::vector<int>{0, 50, 100}));
}

TEST_F(ReadWords, StoppedReadKeepsWhatWasReadAndLeavesTheBusIdle) {
    bench.cable.reading = 1;
    progress.stopAtReport = 2;
    EXPECT_EQ(bench.bus.ReadWords(&progress, 0, 25, image, &done), OmFlashResult::Stopped);
    EXPECT_EQ(done, 20u);
    EXPECT_EQ(image.GetByteCount(), 40u);
    EXPECT_TRUE(bench.TakeLog().ends_with(kIdleLog));
}

TEST_F(ReadWords, StoppedSteppedReadKeepsWhatWasRead) {
    progress.stopAtReport = 3;
    EXPECT_EQ(bench.bus.ReadWords(&progress, 0, 25, image, &done), OmFlashResult::Stopped);
    EXPECT_EQ(done, 2u);
    EXPECT_EQ(image, ImageOfWords(0, {0xA000, 0xA001}));
}

TEST_F(ReadWords, ReadIsCutAtTheReachOfTheAddressPins) {
    const struct {
        uint32_t start;
        uint32_t count;
        uint32_t done;
    } cases[] = {{0xFFFFE, 5, 2},
                 {0xFFFFF, 1, 1},
                 {0xFFFFF, 0xFFFFFFFF, 1},
                 {0x100000, 1, 0},
                 {0xFFFFFFFF, 0xFFFFFFFF, 0},
                 {0, 0, 0}};

    for (const auto& row : cases) {
        OmDataImage read;
        EXPECT_EQ(bench.bus.ReadWords(nullptr, row.start, row.count, read, &done),
                  OmFlashResult::Done);
        EXPECT_EQ(done, row.done);
        EXPECT_EQ(read.GetByteCount(), row.done * 2);
    }
}

TEST_F(ReadWords, NothingToReadSendsNothing) {
    bench.bus.ReadWords(&progress, 0x100000, 1, image, nullptr);
    EXPECT_TRUE(bench.cable.runSizes.empty());
    EXPECT_TRUE(progress.reports.empty());
}

TEST(ReadWordsOfWideBuses, BytesComeLowFirstFromAllChips) {
    FlashBench bench({.chips = 2});
    bench.cable.flash = [](const BenchPins&) { return 0x44332211u; };
    OmDataImage image;
    bench.bus.ReadWords(nullptr, 0x100, 1, image, nullptr);
    OmDataImage expected;
    const uint8_t bytes[] = {0x11, 0x22, 0x33, 0x44};
    expected.SetBytes(0x400, bytes);
    EXPECT_EQ(image, expected);
}
