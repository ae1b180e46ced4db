#include "flash/AmdCommands.h"

#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

constexpr char kAbortResetLog[] = R"(write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 F0F0 0 1 0
  55555 F0F0 0 1 1
)";

class AmdProgram : public testing::Test {
  protected:
    FlashBench bench;
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 99;
};

} // namespace

TEST_F(AmdProgram, WordTakesTwelveScansAndTheWait) {
    wait = 2;
    bench.cable.answers = {0xBEEF};
    const OmDataImage image = ImageOfWords(0x12345, {0xBEEF});
    EXPECT_EQ(AmdProgramWords(bench.bus, progress, image, false, wait, count), OmFlashResult::Done);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(bench.cable.runSizes.front(), 14u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 A0A0 0 1 0
  12345 A0A0 0 1 1
  12345 BEEF 0 1 0
  12345 BEEF 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 0 1
  12345 ZZZZ 0 1 1 r
write and read
  12345 ZZZZ 0 1 1 r
sleep 60
)") + kAmdResetLog + kIdleLog);
}

TEST_F(AmdProgram, WordInBypassModeTakesEightScansAndTheMode) {
    bench.cable.answers = {0xBEEF};
    const OmDataImage image = ImageOfWords(0x12345, {0xBEEF});
    EXPECT_EQ(AmdProgramWords(bench.bus, progress, image, true, wait, count), OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 2020 0 1 0
  55555 2020 0 1 1
  55555 2020 0 1 1
  55555 A0A0 0 1 0
  12345 A0A0 0 1 1
  12345 BEEF 0 1 0
  12345 BEEF 0 1 1
  12345 ZZZZ 0 1 1
  12345 ZZZZ 0 0 1
  12345 ZZZZ 0 1 1 r
write and read
  12345 ZZZZ 0 1 1 r
sleep 60
write
  12345 ZZZZ 0 1 1
  12345 9090 0 1 0
  12345 9090 0 1 1
  12345 0000 0 1 0
  12345 0000 0 1 1
)") + kAmdResetLog + kIdleLog);
}

TEST_F(AmdProgram, SecondWordInBypassModeNeedsNoUnlockCycles) {
    bench.cable.answers = {0x1111, 0x2222};
    const OmDataImage image = ImageOfWords(0, {0x1111, 0x2222});
    AmdProgramWords(bench.bus, progress, image, true, wait, count);
    EXPECT_EQ(bench.cable.runSizes[0], 15u);
    EXPECT_EQ(bench.cable.runSizes[1], 8u);
}

TEST_F(AmdProgram, BufferTakesFourteenScansTwoAWordAndTheWait) {
    wait = 1;
    bench.cable.answers = {0x2222};
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 16, wait, count), OmFlashResult::Done);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bench.cable.runSizes.front(), 19u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write and read
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  00100 5555 0 1 1
  00100 2525 0 1 0
  00100 2525 0 1 1
  00100 0001 0 1 0
  00100 0001 0 1 1
  00100 1111 0 1 0
  00101 1111 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 2929 0 1 0
  00101 2929 0 1 1
  00101 ZZZZ 0 1 1
  00101 ZZZZ 0 1 1
  00101 ZZZZ 0 0 1
  00101 ZZZZ 0 1 1 r
write and read
  00101 ZZZZ 0 1 1 r
sleep 60
)") + kAbortResetLog + kAmdResetLog +
                                   kIdleLog);
}

TEST_F(AmdProgram, AbortedBufferIsResetAndSentAgain) {
    bench.cable.answers = {0x0082, 0x0082, 0x2222}; // DQ1 set, DQ7 not that of the data; seen twice
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 16, wait, count), OmFlashResult::Done);
    // the buffer, a look, the recovery, the buffer again, the closing
    const std::vector<size_t> expected{18, 3, 204, 18, 1, 7, 3, 1};
    EXPECT_EQ(bench.cable.runSizes, expected);
}

TEST_F(AmdProgram, OnlyDq1OnAWrongDq7IsAnAbort) {
    const struct {
        uint32_t status;
        bool isSettled; // nothing is waited for
    } cases[] = {
        {0x0082, true},  {0x0080, false}, // DQ1 clear: busy
        {0x00A2, true},                   // DQ5 too, as some chips show
        {0x00A0, true},                   // time limit exceeded
        {0x0002, false},                  // DQ7 as written
        {0x8200, false},                  // upper byte
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.status);
        FlashBench own;
        int ownWait = 0;
        own.cable.answers = {row.status, row.status};
        AmdProgramBuffers(own.bus, progress, ImageOfWords(0, {0x2222}), 16, ownWait, count);
        EXPECT_EQ(own.cable.runSizes[2] == 204, row.isSettled);
    }
}

TEST_F(AmdProgram, WordThatBypassModeCouldTakeForACommandIsTheFirstOfItsBatch) {
    for (const uint16_t value : {uint16_t{0x11A0}, uint16_t{0xA011}})
        for (const bool bypass : {false, true}) {
            SCOPED_TRACE(testing::Message() << value << " " << bypass);
            FlashBench own;
            own.cable.status = 200;
            own.cable.answers = {1, 2, value, 4};
            int ownWait = 0;
            const OmDataImage image = ImageOfWords(0, {1, 2, value, 4});
            AmdProgramWords(own.bus, progress, image, bypass, ownWait, count);
            const bool isFirst = bypass && value == 0x11A0;
            EXPECT_EQ(own.cable.runSizes[1], isFirst ? 8u : bypass ? 24u : 36u);
        }
}

TEST_F(AmdProgram, BufferCountGoesOnEveryChipsLane) {
    FlashBench two({.chips = 2});
    two.cable.answers = {0x44443333};
    OmDataImage image;
    const uint8_t bytes[] = {1, 2, 3, 4, 5, 6, 7, 8, 0x33, 0x33, 0x44, 0x44};
    image.SetBytes(0, bytes);
    AmdProgramBuffers(two.bus, progress, image, 16, wait, count);
    EXPECT_EQ(count, 3u);
    EXPECT_NE(two.TakeLog().find("  00000 00020002 0 1 0\n"), std::string::npos);
}

TEST_F(AmdProgram, BlindWordsKeepTheDataBusDriven) {
    bench.cable.blind = 18;
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(AmdProgramWordsBlind(bench.bus, progress, image, false, 0, count),
              OmFlashResult::Done);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 A0A0 0 1 0
  00100 A0A0 0 1 1
  00100 1111 0 1 0
  55555 1111 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 A0A0 0 1 0
  00101 A0A0 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
write and read
  00101 2222 0 1 1 r
sleep 60
)") + kAmdResetLog + kIdleLog);
}

TEST_F(AmdProgram, BlindWordsInBypassModeTakeFourScansAndTheWait) {
    bench.cable.blind = 100;
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(AmdProgramWordsBlind(bench.bus, progress, image, true, 2, count),
              OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 2020 0 1 0
  55555 2020 0 1 1
  55555 2020 0 1 1
  55555 A0A0 0 1 0
  00100 A0A0 0 1 1
  00100 1111 0 1 0
  00100 1111 0 1 1
  00100 1111 0 1 1
  55555 1111 0 1 1
  55555 A0A0 0 1 0
  00101 A0A0 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 2222 0 1 1
  00101 2222 0 1 1
write and read
  00101 2222 0 1 1 r
sleep 60
write
  00101 2222 0 1 1
  00101 9090 0 1 0
  00101 9090 0 1 1
  00101 0000 0 1 0
  00101 0000 0 1 1
)") + kAmdResetLog + kIdleLog);
}

TEST_F(AmdProgram, BlindBuffersEndInTheConfirmation) {
    const OmDataImage image = ImageOfWords(0x100, {0x1111, 0x2222});
    EXPECT_EQ(AmdProgramBuffersBlind(bench.bus, progress, image, 16, 0, count),
              OmFlashResult::Done);
    EXPECT_EQ(bench.TakeLog(), std::string(R"(
write
  55555 ZZZZ 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  00100 5555 0 1 1
  00100 2525 0 1 0
  00100 2525 0 1 1
  00100 0001 0 1 0
  00100 0001 0 1 1
  00100 1111 0 1 0
  00101 1111 0 1 1
  00101 2222 0 1 0
  00101 2222 0 1 1
  00101 2929 0 1 0
  00101 2929 0 1 1
write and read
  00101 2929 0 1 1 r
sleep 60
)") + R"(write
  55555 2929 0 1 1
  55555 AAAA 0 1 0
  AAAAA AAAA 0 1 1
  AAAAA 5555 0 1 0
  55555 5555 0 1 1
  55555 F0F0 0 1 0
  55555 F0F0 0 1 1
)" + kAmdResetLog + kIdleLog);
}
