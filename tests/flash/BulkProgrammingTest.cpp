#include "flash/BulkProgramming.h"

#include "flash/AmdCommands.h"
#include "flash/IntelCommands.h"
#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// An AMD flash for word programming: it takes the word after each A0h, and answers with it when
// `busyScans` scans have ended after the write, until then with the complement of its DQ7.
class WordFlash {
  public:
    WordFlash(BenchCable& cable, int busyScans) {
        cable.onWrite = [this](uint32_t address, uint32_t data) { Write(address, data); };
        cable.flash = [this, &cable, busyScans](const BenchPins&) {
            return cable.scansSinceWrite >= busyScans ? last_ : ~last_ & 0x80;
        };
    }

    std::map<uint32_t, uint32_t> contents;
    std::vector<uint32_t> order; // of the addresses

  private:
    void Write(uint32_t address, uint32_t data) {
        if (programs_) {
            contents[address] = last_ = data;
            order.push_back(address);
        }
        programs_ = !programs_ && data == 0xA0A0;
    }

    bool programs_ = false;
    uint32_t last_ = 0;
};

// Scans between the end of a word's write and the capture of its status, with no wait.
constexpr int kScansAhead = 2;

constexpr wchar_t kAskAfterFour[] =
    L"4 words could not be programmed so far, the first at offset 00200h.\nThe flash may be not "
    L"erased, protected, defective or not connected as the setup says.\n\nGo on programming the "
    L"rest?";

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

// A word with no wait and looks until it is done; then single words, each looked at 16 times; at
// last the rest in batches of the wait that was found.
TEST_F(BulkProgramming, WaitIsMeasuredWhileWordsAreProgrammed) {
    const WordFlash flash(bench.cable, kScansAhead + 5);
    OmDataImage image;
    std::map<uint32_t, uint32_t> expected;
    for (uint32_t i = 0; i < 40; ++i) {
        image.SetByte(i * 2, static_cast<uint8_t>(i));
        expected[i] = i;
    }
    EXPECT_EQ(Program(image), OmFlashResult::Done);
    const std::vector<size_t> runs = ProgramRuns();
    EXPECT_EQ(std::vector<size_t>(runs.begin(), runs.begin() + 4),
              (std::vector<size_t>{12, 3, 4, 50}));
    EXPECT_EQ(runs.size(), 3u + 12 + 27) << "the first word, twelve measured, the rest";
    EXPECT_EQ(runs[15], 17u);
    EXPECT_EQ(runs.back(), 17u);
    EXPECT_EQ(wait, 5);
    EXPECT_EQ(flash.contents, expected);
}

TEST_F(BulkProgramming, WaitFoundBeforeIsTriedOnOneWordAndKept) {
    const WordFlash flash(bench.cable, kScansAhead + 5);
    bench.cable.status = 1000;
    wait = 5;
    Program(ImageOfWords(0, {1, 2, 3}));
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{17, 34}));
    EXPECT_EQ(wait, 5);
}

TEST_F(BulkProgramming, SearchStartsFromWhatTheFlashSaysOfItself) {
    const WordFlash flash(bench.cable, kScansAhead + 5);
    bench.bus.programTimes.word = {560, 0}; // 10 scans of 56 bits, of which two are the look
    Program(ImageOfWords(0, {1, 2}));
    // 8 suffices; the next word is looked at from 4 on.
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{20, 58}));
    EXPECT_EQ(wait, 0) << "two words prove nothing";
}

// Padded images: a blank word is done in no time, whatever the flash.
TEST_F(BulkProgramming, WaitIsNotTriedOnBlankWords) {
    const WordFlash flash(bench.cable, kScansAhead);
    Program(ImageOfWords(0, {0xFFFF, 0xFFFF, 0x1234, 0x5678}));
    EXPECT_EQ(flash.order, (std::vector<uint32_t>{2, 0, 1, 3}));
}

TEST_F(BulkProgramming, WaitAboveTheMaximumIsCut) {
    bench.cable.frequency = 23000; // 5 ms are 2 scans of 56 bits, and one more
    const WordFlash flash(bench.cable, kScansAhead);
    wait = 5000;
    Program(ImageOfWords(0, {1}));
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{15}));
}

TEST_F(BulkProgramming, FewWordsThatFailAreLeftToAVerify) {
    bench.cable.frequency = 23000; // a maximum of 3
    const WordFlash flash(bench.cable, 1000);
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2, 3})), OmFlashResult::Done);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(wait, 0);
}

TEST_F(BulkProgramming, UserIsAskedWhenMoreWordsFailAndCanStop) {
    RecordingUserInterface user;
    bench.cable.frequency = 23000; // a maximum of 3
    const WordFlash flash(bench.cable, 1000);
    user.Expect(kAskAfterFour, kLossQuestionBox, OmAnswer::No);
    EXPECT_EQ(Program(ImageOfWords(0x100, {1, 2, 3, 4, 5, 6})), OmFlashResult::Stopped);
    EXPECT_EQ(count, 4u);
}

TEST_F(BulkProgramming, UserWhoGoesOnIsToldAtTheEnd) {
    RecordingUserInterface user;
    bench.cable.frequency = 23000; // a maximum of 3
    const WordFlash flash(bench.cable, 1000);
    user.Expect(kAskAfterFour, kLossQuestionBox, OmAnswer::Yes);
    user.Expect(L"6 words could not be programmed, the first at offset 00200h.", kErrorBox);
    EXPECT_EQ(Program(ImageOfWords(0x100, {1, 2, 3, 4, 5, 6})), OmFlashResult::Told);
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(progress.finished, 1u);
}

// The flash can have ignored what follows, and show blank data, or the status of another word.
TEST_F(BulkProgramming, ItemsBehindOneThatIsNotDoneDoNotCount) {
    bench.cable.status = 36;
    bench.cable.answers = {0x1111, 0x2222, 0x0000, 0x4444, 0x3333};
    Program(ImageOfWords(0, {0x1111, 0x2222, 0x3333, 0x4444}));
    EXPECT_EQ(bench.cable.runSizes[0], 12u);
    EXPECT_EQ(bench.cable.runSizes[1], 36u);
    EXPECT_EQ(bench.cable.runSizes[3], 12u) << "the third word alone";
    EXPECT_EQ(count, 4u) << "retries do not count again";
}

// The longest wait, what ends half commands, what resumes, the longest wait, and the way back.
TEST_F(BulkProgramming, FlashIsBroughtToAKnownStateAfterAPassThatFailed) {
    bench.cable.frequency = 23000; // a maximum of 3
    bench.cable.keepLog = true;
    bench.cable.status = 36;
    bench.cable.answers = {0x1111, 0x0000, 0x2222};
    Program(ImageOfWords(0x123, {0x1111, 0x2222}));
    EXPECT_EQ(bench.cable.runSizes[2], 3u + 12 + 2 + 1 + 3 + 6 + 2 + 1);
    EXPECT_NE(bench.TakeLog().find("  00124 F0F0 0 1 1\n"
                                   "  00124 3030 0 1 0\n"
                                   "  00124 3030 0 1 1\n"
                                   "  00124 3030 0 1 1\n"
                                   "  00124 3030 0 1 1\n"
                                   "  00124 3030 0 1 1\n"
                                   "  55555 3030 0 1 1\n"
                                   "  55555 AAAA 0 1 0\n"
                                   "  AAAAA AAAA 0 1 1\n"
                                   "  AAAAA 5555 0 1 0\n"
                                   "  55555 5555 0 1 1\n"
                                   "  55555 F0F0 0 1 0\n"
                                   "  55555 F0F0 0 1 1\n"
                                   "  55555 F0F0 0 1 0\n"
                                   "  55555 F0F0 0 1 1\n"),
              std::string::npos);
}

TEST_F(BulkProgramming, BatchesFillTheirTransfersAtTheWaitFound) {
    bench.cable.status = 24;
    const WordFlash flash(bench.cable, kScansAhead + 1);
    OmDataImage image;
    for (uint32_t i = 0; i < 100; ++i)
        image.SetByte(i * 2, static_cast<uint8_t>(i));
    wait = 1;
    Program(image);
    // Words of 13 scans in transfers of 24: k = 6 takes 11 (143 of 144 scans), the fullest of k = 1
    // to 10.
    EXPECT_EQ(bench.cable.runSizes[0], 13u);
    EXPECT_EQ(bench.cable.runSizes[1], 143u);
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
    const WordFlash flash(bench.cable, kScansAhead + 5);
    progress.stopAtReport = 2;
    EXPECT_EQ(Program(ImageOfWords(0, {1, 2, 3})), OmFlashResult::Stopped);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(ProgramRuns(), (std::vector<size_t>{12, 3, 4, 50}));
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
    EXPECT_EQ(bench.cable.runSizes[0], 18u); // two blocks of 14 + 2 * 2, the first alone
    EXPECT_EQ(bench.cable.runSizes[1], 18u);
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
