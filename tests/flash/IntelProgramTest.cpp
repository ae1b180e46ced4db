#include "flash/IntelCommands.h"

#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

std::string Closing() {
    return std::string(kIntelClearStatusLog) + kIntelReadArrayLog + kIdleLog;
}

class IntelProgram : public testing::Test {
  protected:
    FlashBench bench;
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 99;
};

} // namespace

TEST_F(IntelProgram, WordTakesEightScansAndTheWaitAndTheBatchTwoMore) {
    wait = 2;
    bench.cable.answers = {0x0080};
    const OmDataImage image = ImageOfWords(0x12345, {0xBEEF});
    EXPECT_EQ(IntelProgramWords(bench.bus, progress, image, wait, count), OmFlashResult::Done);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(bench.cable.runSizes[1], 12u);
    EXPECT_EQ(bench.TakeLog(), std::string("\n") + kIntelClearStatusLog + R"(write and read
  12345 ZZZZ 0 1 1
  12345 4040 0 1 0
  12345 4040 0 1 1
  12345 BEEF 0 1 0
  12345 BEEF 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 0 1
  12345 ZZZZ 0 1 1 r
  12345 5050 0 1 0
  12345 5050 0 1 1
write and read
  12345 5050 0 1 1 r
sleep 60
)" + Closing());
}

TEST_F(IntelProgram, BufferTakesElevenScansTwoAWordAndTheWaitAndTheBatchOneMore) {
    wait = 1;
    bench.cable.answers = {0x0080};
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(IntelProgramBuffers(bench.bus, progress, image, 16, wait, count),
              OmFlashResult::Done);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bench.cable.runSizes[1], 17u);
    EXPECT_EQ(bench.TakeLog(), std::string("\n") + kIntelClearStatusLog + R"(write and read
  00100 ZZZZ 0 1 1
  00100 E8E8 0 1 0
  00100 E8E8 0 1 1
  00100 0001 0 1 0
  00100 0001 0 1 1
  00100 1111 0 1 0
  00101 1111 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 D0D0 0 1 0
  00101 D0D0 0 1 1
  00101 ZZZZ 0 1 1
  00101 ZZZZ 0 1 1
  00101 ZZZZ 0 0 1
  00101 ZZZZ 0 1 1 r
  00101 5050 0 1 0
  00101 5050 0 1 1
write and read
  00101 5050 0 1 1 r
sleep 60
)" + Closing());
}

TEST_F(IntelProgram, StatusClearOfABlockEndsWithTheNextBlocksFirstScan) {
    bench.cable.status = 29; // two blocks of 13 scans, and the closing one
    bench.cable.answers = {0x0080, 0x0080, 0x0080};
    OmDataImage image = ImageOfWords(0x000, {0x9999}); // proves the wait of 0
    image.MergeFrom(ImageOfWords(0x00F, {0x1111, 0x2222}));
    IntelProgramBuffers(bench.bus, progress, image, 16, wait, count);
    EXPECT_EQ(bench.cable.runSizes[2], 27u);
    EXPECT_NE(bench.TakeLog().find("  0000F ZZZZ 0 1 1 r\n"
                                   "  0000F 5050 0 1 0\n"
                                   "  00010 5050 0 1 1\n"
                                   "  00010 E8E8 0 1 0\n"),
              std::string::npos);
}

TEST_F(IntelProgram, BlindWordsTakeFourScansAndTheWait) {
    bench.cable.blind = 100;
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(IntelProgramWordsBlind(bench.bus, progress, image, 1, count), OmFlashResult::Done);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bench.TakeLog(), std::string("\n") + kIntelClearStatusLog + R"(write
  00100 ZZZZ 0 1 1
  00100 4040 0 1 0
  00100 4040 0 1 1
  00100 1111 0 1 0
  00100 1111 0 1 1
  00101 1111 0 1 1
  00101 4040 0 1 0
  00101 4040 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 2222 0 1 1
write and read
  00101 2222 0 1 1 r
sleep 60
)" + Closing());
}

TEST_F(IntelProgram, BlindBuffersEndInTheConfirmation) {
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(IntelProgramBuffersBlind(bench.bus, progress, image, 16, 0, count),
              OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string("\n") + kIntelClearStatusLog + R"(write
  00100 ZZZZ 0 1 1
  00100 E8E8 0 1 0
  00100 E8E8 0 1 1
  00100 0001 0 1 0
  00100 0001 0 1 1
  00100 1111 0 1 0
  00101 1111 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 D0D0 0 1 0
  00101 D0D0 0 1 1
write and read
  00101 D0D0 0 1 1 r
sleep 60
)" + Closing());
}

TEST_F(IntelProgram, LockedBlockEndsTheProgrammingAtOnce) {
    bench.cable.status = 100;
    bench.cable.answers = {0x0080, 0x0082, 0x0080};
    const OmDataImage image = ImageOfWords(0x00F, {0x1111, 0x2222, 0x3333, 0x4444});
    EXPECT_EQ(IntelProgramBuffers(bench.bus, progress, image, 1, wait, count),
              OmFlashResult::FlashError);
    EXPECT_EQ(progress.reports.size(), 1u) << "that of the first block";
    EXPECT_EQ(count, 4u) << "the words drawn for the batch that met the locked block count";
    EXPECT_TRUE(bench.TakeLog().ends_with("sleep 60\n" + Closing()));
    const std::vector<size_t> expected{2, 14, 40, 1, 2, 3, 1};
    EXPECT_EQ(bench.cable.runSizes, expected) << "nothing is tried again";
}

// A flash that is busy ignores a command and can take the data behind it for commands.
TEST_F(IntelProgram, WaitThatIsNotProvenIsTriedOnOneItem) {
    bench.cable.status = 100;
    bench.cable.answers = {0x0080, 0x0080, 0x0080};
    EXPECT_EQ(IntelProgramWords(bench.bus, progress, ImageOfWords(0, {1, 2, 3}), wait, count),
              OmFlashResult::Done);
    // clear, a word with no wait, both others, and the closing
    const std::vector<size_t> expected{2, 10, 18, 1, 2, 3, 1};
    EXPECT_EQ(bench.cable.runSizes, expected);
}

// The end of the batch has cleared the status of the word that was not ready: nobody knows how it
// ended.
TEST_F(IntelProgram, WordThatGotReadyLateIsSentAgainAndLookedAtSeveralTimes) {
    bench.cable.answers = {0x0000, 0x0080, 0x0000, 0x0080};
    EXPECT_EQ(IntelProgramWords(bench.bus, progress, ImageOfWords(0, {1}), wait, count),
              OmFlashResult::Done);
    // clear, the word with no wait, a look, the word with 16 looks behind its end
    const std::vector<size_t> expected{2, 10, 3, 46, 3, 2, 3, 1};
    EXPECT_EQ(bench.cable.runSizes, expected);
    EXPECT_EQ(wait, 0) << "one word proves nothing";
}

TEST_F(IntelProgram, ItemsBehindOneThatWasNotReadyAreSentAgain) {
    bench.cable.status = 100;
    bench.cable.answers = {0x0080, 0x0080, 0x0000, 0x0082, 0x0080, 0x0080, 0x0080};
    EXPECT_EQ(IntelProgramWords(bench.bus, progress, ImageOfWords(0, {1, 2, 3, 4}), wait, count),
              OmFlashResult::Done);
    // One word; three words, of which the second is not ready; the longest wait of 90 twice with
    // the recovery of 11 scans; the second word alone. The wait is proven no more: the third gets
    // 16 looks.
    const std::vector<size_t> expected{2, 10, 26, 191, 10};
    bench.cable.runSizes.resize(expected.size());
    EXPECT_EQ(bench.cable.runSizes, expected);
}

TEST_F(IntelProgram, RecoveryEndsHalfCommandsBeforeItResumes) {
    bench.cable.frequency = 23000; // a maximum of 3 scans
    bench.cable.answers = {0x0000, 0x0000, 0x0000, 0x0080};
    IntelProgramWords(bench.bus, progress, ImageOfWords(0x123, {1}), wait, count);
    EXPECT_NE(bench.TakeLog().find("  00123 FFFF 0 1 0\n"
                                   "  00123 FFFF 0 1 1\n"
                                   "  00123 FFFF 0 1 0\n"
                                   "  00123 FFFF 0 1 1\n"
                                   "  00123 FFFF 0 1 0\n"
                                   "  00123 FFFF 0 1 1\n"
                                   "  00123 D0D0 0 1 0\n"
                                   "  00123 D0D0 0 1 1\n"
                                   "  00123 D0D0 0 1 1\n"
                                   "  00123 D0D0 0 1 1\n"
                                   "  00123 D0D0 0 1 1\n"
                                   "  00123 5050 0 1 0\n"
                                   "  00123 5050 0 1 1\n"),
              std::string::npos);
}

TEST_F(IntelProgram, FlashThatNeverGetsReadyIsGivenUpAtTheLongestWait) {
    bench.cable.frequency = 23000; // a maximum of 3 scans
    EXPECT_EQ(IntelProgramWords(bench.bus, progress, ImageOfWords(0, {1, 2, 3}), wait, count),
              OmFlashResult::Done);
    EXPECT_EQ(wait, 0);
    EXPECT_EQ(count, 3u);
    // Each word with two looks of 1 and 2 idle scans; the first twice, the others right after the
    // recovery of the one before; the last is recovered from too.
    const std::vector<size_t> expected{2, 10, 3,  4, 17, 10, 3, 4, 17, 10, 3,
                                       4, 17, 10, 3, 4,  17, 1, 2, 3,  1};
    EXPECT_EQ(bench.cable.runSizes, expected);
}

TEST_F(IntelProgram, TransfersAreFilledWithTheClosingScansCounted) {
    bench.cable.flash = [](const BenchPins&) { return 0x0080u; };
    OmDataImage image;
    for (uint32_t word = 0; word < 60; ++word)
        image.SetByte(word * 2, 1);
    bench.cable.status = 34; // 38 words of 8 scans and two more fill nine transfers
    IntelProgramWords(bench.bus, progress, image, wait, count);
    EXPECT_EQ(bench.cable.runSizes[2], 306u);
    bench.cable.runSizes.clear();
    bench.cable.status = 27; // two blocks of 13 scans and one more fill one transfer
    IntelProgramBuffers(bench.bus, progress, image, 1, wait, count);
    EXPECT_EQ(bench.cable.runSizes[2], 27u);
}

TEST_F(IntelProgram, WordIsDoneWhenAllChipsAreReadyWithoutAnError) {
    FlashBench two({.chips = 2});
    // SR1 of a busy chip does not count; SR4 sends the word again, once.
    two.cable.answers = {0x00020080, 0x00900080, 0x00900080, 0x00800080};
    OmDataImage image;
    image.SetByte(0, 0x55);
    EXPECT_EQ(IntelProgramWords(two.bus, progress, image, wait, count), OmFlashResult::Done);
    EXPECT_EQ(two.cable.answers.size(), 0u);
    EXPECT_EQ(progress.reports.size(), 3u) << "a try, a recovery, another try";
}

TEST_F(IntelProgram, BlockOfWhichDataCouldEraseIsTheFirstOfItsBatch) {
    const struct {
        std::vector<uint16_t> words;
        bool isFirst;
    } cases[] = {
        {{0x1120, 0x22D0}, true}, // erase
        {{0x1111, 0x2220}, true}, // with the confirmation of the buffer
        {{0x1160, 0x2201}, true}, // lock
        {{0x11D0, 0x2220 + 1}, false}, {{0x1120, 0xD022}, false}, {{0x11C0, 0x2222}, false},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.words[0]);
        FlashBench own;
        own.cable.status = 200;
        own.cable.flash = [](const BenchPins&) { return 0x0080u; };
        OmDataImage image = ImageOfWords(0, {1, 2, 3, 4});
        image.MergeFrom(ImageOfWords(4, {row.words[0], row.words[1]}));
        int ownWait = 0;
        IntelProgramBuffers(own.bus, progress, image, 2, ownWait, count);
        // one buffer of 15 scans and the closing one, then the two others together or not
        EXPECT_EQ(own.cable.runSizes[2], row.isFirst ? 16u : 31u);
    }
}
