#include "flash/BulkProgramming.h"

#include "flash/AmdCommands.h"
#include "flash/IntelCommands.h"
#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// An AMD flash for word programming: it takes the word after each A0h, and answers with it when
// `busyScans` scans have ended after the write, until then with its complement.
class WordFlash {
  public:
    WordFlash(BenchCable& cable, int busyScans) {
        cable.onWrite = [this](uint32_t address, uint32_t data) { Write(address, data); };
        cable.flash = [this, &cable, busyScans](const BenchPins&) {
            return cable.scansSinceWrite >= busyScans ? last_ : ~last_;
        };
    }

    std::map<uint32_t, uint32_t> contents;

  private:
    void Write(uint32_t address, uint32_t data) {
        if (programs_)
            contents[address] = last_ = data;
        programs_ = !programs_ && data == 0xA0A0;
    }

    bool programs_ = false;
    uint32_t last_ = 0;
};

// Scans between the end of a word's write and the capture of its status, with no wait.
constexpr int kScansAhead = 2;

class BulkProgramming : public testing::Test {
  protected:
    BulkProgramming() { bench.cable.keepLog = false; }

    OmFlashResult Program(const OmDataImage& image) {
        return AmdProgramWords(bench.bus, progress, image, false, wait, count);
    }

    std::vector<int> Percents() const {
        std::vector<int> percents;
        for (const ProgressReport& report : progress.reports)
            percents.push_back(report.percent);
        return percents;
    }

    // Sizes of all runs but the closing ones: flush, reset, idle.
    std::vector<size_t> ProgramRuns() const {
        std::vector<size_t> runs = bench.cable.runSizes;
        runs.resize(runs.size() - 3);
        return runs;
    }

    FlashBench bench;
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 99;
};

} // namespace

TEST_F(BulkProgramming, EmptyImageSendsNothing) {
    EXPECT_EQ(Program(OmDataImage()), OmFlashResult::Done);
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, OmDataImage(), 16, wait, count),
              OmFlashResult::Done);
    EXPECT_EQ(IntelProgramWordsBlind(bench.bus, progress, OmDataImage(), 0, count),
              OmFlashResult::Done);
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(bench.cable.runSizes.empty());
    EXPECT_TRUE(progress.reports.empty());
}

TEST_F(BulkProgramming, WaitIsSearchedWhileWordsAreProgrammed) {
    const WordFlash flash(bench.cable, kScansAhead + 5);
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2, 3, 4, 5, 6})), OmFlashResult::Done);
    // 12 scans and waits of 0, 1, 4, 16 for the first word, then 9, 6, 5, 5, 5
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{12, 13, 16, 28, 21, 18, 17, 17, 17}));
    EXPECT_EQ(wait, 5);
    EXPECT_EQ(flash.contents,
              (std::map<uint32_t, uint32_t>{{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}}));
}

TEST_F(BulkProgramming, WaitFoundBeforeIsTheFirstOneTried) {
    const WordFlash flash(bench.cable, kScansAhead + 5);
    wait = 5;
    Program(ImageOfWords(0, {1, 2}));
    // A new search bisects downward: 5 suffices, 1 does not.
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{17, 13, 17}));
}

TEST_F(BulkProgramming, WaitAboveTheMaximumIsCut) {
    bench.cable.frequency = 23000; // 5 ms are 2 scans of 56 bits, and one more
    const WordFlash flash(bench.cable, kScansAhead);
    wait = 5000;
    Program(ImageOfWords(0, {1}));
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{15}));
}

TEST_F(BulkProgramming, ItemThatFailsAtTheLongestWaitIsDroppedWithoutAWord) {
    bench.cable.frequency = 23000; // a maximum of 3
    const WordFlash flash(bench.cable, kScansAhead + 4);
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2})), OmFlashResult::Done);
    // A reset follows each drop: a chip that gave up takes nothing else.
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{12, 13, 15, 3, 15, 3}));
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(wait, 3);
}

TEST_F(BulkProgramming, OnlyItemsThatFailedAreSentAgain) {
    bench.cable.status = 36;
    bench.cable.answers = {0x1111, 0x0000, 0x3333, 0x2222};
    EXPECT_EQ(Program(ImageOfWords(0, {0x1111, 0x2222, 0x3333})), OmFlashResult::Done);
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{36, 13}));
    EXPECT_EQ(count, 3u) << "retries do not count again";
    EXPECT_EQ(Percents(), (std::vector<int>{100, 100}));
}

TEST_F(BulkProgramming, BatchIsFittedAnewWhenTheWaitHasChanged) {
    bench.cable.status = 24; // ten transfers: 20 words of 12 scans, 18 of 13 (waste 0.025 of ten)
    const WordFlash flash(bench.cable, kScansAhead + 1);
    OmDataImage image;
    for (uint32_t i = 0; i < 100; ++i)
        image.SetByte(i * 2, static_cast<uint8_t>(i));
    Program(image);
    // 20 words fail at 0 and pass at 1; then as many words of 13 scans as fit best. Words of 13
    // scans in transfers of 24: k = 6 takes 11 (143 of 144 scans), the fullest of k = 1 to 10.
    EXPECT_EQ(bench.cable.runSizes[0], 240u);
    EXPECT_EQ(bench.cable.runSizes[1], 260u);
    EXPECT_EQ(bench.cable.runSizes[2], 143u);
}

TEST_F(BulkProgramming, ProgressCountsWordsDrawn) {
    bench.cable.answers = {1, 2, 3};
    Program(ImageOfWords(0x40, {1, 2, 3}));
    EXPECT_EQ(Percents(), (std::vector<int>{33, 66, 100}));
}

TEST_F(BulkProgramming, ProgressStaysWithinTheScaleForScatteredBytes) {
    bench.cable.answers = {1, 1, 1};
    OmDataImage image; // three words, of one byte each: counted as two
    for (const uint32_t address : {0, 4, 8})
        image.SetByte(address, 1);
    Program(image);
    EXPECT_EQ(Percents(), (std::vector<int>{50, 100, 100}));
}

TEST_F(BulkProgramming, UserStopsAfterABatchAndTheFlashIsLeftProperly) {
    bench.cable.answers = {1, 2, 3};
    progress.stopAtReport = 2;
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2, 3})), OmFlashResult::Stopped);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bench.cable.runSizes, (std::vector<size_t>{12, 12, 1, 3, 1}));
    EXPECT_EQ(bench.cable.sleptMilliseconds, 60u);
}

TEST_F(BulkProgramming, UserStopsInTheMiddleOfASearch) {
    progress.stopAtReport = 2;
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2, 3})), OmFlashResult::Stopped);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{12, 13}));
}

TEST_F(BulkProgramming, MissingBytesOfAWordAreProgrammedAsZero) {
    const WordFlash flash(bench.cable, 0);
    OmDataImage image;
    image.SetByte(1, 0x11); // the first word's upper byte
    image.SetByte(4, 0x22); // the third word's lower byte
    Program(image);
    EXPECT_EQ(flash.contents, (std::map<uint32_t, uint32_t>{{0, 0x1100}, {2, 0x0022}}));
}

TEST_F(BulkProgramming, BlocksGoOutAlignedToTheWriteBuffer) {
    bench.cable.status = 100;
    bench.cable.answers = {31, 33};
    const OmDataImage image = ImageOfWords(30, {30, 31, 32, 33});
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 32, wait, count), OmFlashResult::Done);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(bench.cable.runSizes.front(), 36u); // two blocks of 14 + 2 * 2
}

TEST_F(BulkProgramming, BlindBatchesFillTheirTransfersAndReadNothing) {
    bench.cable.blind = 9; // one word of 8 scans and the closing one: 1 item of 10 fills it
    OmDataImage image;
    for (uint32_t i = 0; i < 22; ++i)
        image.SetByte(i * 2, 1);
    EXPECT_EQ(AmdProgramWordsBlind(bench.bus, progress, image, false, 0, count),
              OmFlashResult::Done);
    EXPECT_EQ(count, 22u);
    // Full transfers for 1 word (9 of 9) and 10 words (81 of 81): the longer batch.
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{81, 81, 17}));
    EXPECT_EQ(bench.cable.captureCount, 3u) << "flush, reset and idle alone";
}

TEST_F(BulkProgramming, BlindProgrammingStopsAfterABatch) {
    progress.stopAtReport = 2;
    EXPECT_EQ(IntelProgramWordsBlind(bench.bus, progress, ImageOfWords(0, {1, 2, 3}), 0, count),
              OmFlashResult::Stopped);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(Percents(), (std::vector<int>{33, 66}));
}

TEST_F(BulkProgramming, WriteBufferOfOneWordOrNoneStillPrograms) {
    bench.cable.answers = {1, 2};
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, ImageOfWords(0, {1, 2}), 1, wait, count),
              OmFlashResult::Done);
    EXPECT_EQ(count, 2u);
}
