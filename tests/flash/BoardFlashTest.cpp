// The commands against flash chips that know what their data sheets say, on boards of many shapes:
// contents, scans for each word, and what the board's checker thinks of the pins.

#include "data/DataImage.h"
#include "flash/AmdCommands.h"
#include "flash/Identification.h"
#include "flash/IntelCommands.h"
#include "tests/flash/BoardBench.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr uint32_t kStart = 0x20000;

enum class Way { AmdWords, AmdBypass, AmdBuffers, AmdBlind, IntelWords, IntelBuffers, IntelBlind };

struct ProgramCase {
    const char* name;
    const char* model;
    unsigned chips;
    Way way;
    uint32_t sizeBytes;
    double scansPerWord; // the most that a word may cost, all in all
    uint32_t frequency = 30000000;
};

void PrintTo(const ProgramCase& row, std::ostream* stream) {
    *stream << row.name;
}

OmFlashResult Program(BoardBench& bench, Way way, const OmDataImage& image, int& wait,
                      uint32_t& count) {
    RecordingProgress progress;
    const unsigned words =
        std::max(1u, bench.built.flash.bufferBytes / bench.built.flash.WordBytes());
    switch (way) {
    case Way::AmdWords:
        return AmdProgramWords(bench.bus, progress, image, false, wait, count);
    case Way::AmdBypass:
        return AmdProgramWords(bench.bus, progress, image, true, wait, count);
    case Way::AmdBuffers:
        return AmdProgramBuffers(bench.bus, progress, image, words, wait, count);
    case Way::AmdBlind:
        return AmdProgramWordsBlind(bench.bus, progress, image, false, wait, count);
    case Way::IntelWords:
        return IntelProgramWords(bench.bus, progress, image, wait, count);
    case Way::IntelBuffers:
        return IntelProgramBuffers(bench.bus, progress, image, words, wait, count);
    case Way::IntelBlind:
        return IntelProgramWordsBlind(bench.bus, progress, image, wait, count);
    }
    return OmFlashResult::FlashError;
}

class BoardProgram : public testing::TestWithParam<ProgramCase> {};

} // namespace

TEST_P(BoardProgram, DataArriveWithinTheScanBudget) {
    const ProgramCase& row = GetParam();
    BoardBench bench(vb::BoardBuilder().Flash(row.model).Chips(row.chips).Set("locks", "none"),
                     row.frequency);
    const OmDataImage image = RandomImage(kStart, row.sizeBytes);
    int wait = 0;
    uint32_t count = 0;
    EXPECT_EQ(Program(bench, row.way, image, wait, count), OmFlashResult::Done);
    const uint32_t words = row.sizeBytes / bench.bus.BusWordBytes();
    EXPECT_EQ(count, words);
    const double scansPerWord = static_cast<double>(bench.board.DataScans()) / words;
    EXPECT_LE(scansPerWord, row.scansPerWord) << "wait " << wait;
    EXPECT_TRUE(bench.Contents(kStart, row.sizeBytes) == BytesOf(image));
    EXPECT_EQ(bench.Violations(), "");
    OmDataImage read;
    uint32_t done = 0;
    EXPECT_EQ(bench.bus.ReadWords(nullptr, kStart / bench.bus.BusWordBytes(), words, read, &done),
              OmFlashResult::Done);
    EXPECT_EQ(done, words);
    EXPECT_TRUE(read == image);
}

// Every word costs its command's scans and the wait; what is above is the search for the wait and
// the opening and closing of the whole.
INSTANTIATE_TEST_SUITE_P(
    Ways, BoardProgram,
    testing::Values(
        ProgramCase{"AMD words", "amd16-64m", 1, Way::AmdWords, 0x4000, 16.5},
        ProgramCase{"AMD bypass", "amd16-64m", 1, Way::AmdBypass, 0x8000, 12.9},
        ProgramCase{"AMD buffers", "amd16-64m", 1, Way::AmdBuffers, 0x10000, 5.1},
        ProgramCase{"AMD buffers, two chips", "amd16-64m", 2, Way::AmdBuffers, 0x4000, 4.8},
        ProgramCase{"AMD words, 8 bits", "amd8-4m", 1, Way::AmdWords, 0x2000, 19},
        ProgramCase{"AMD words, four chips", "amd8-4m", 4, Way::AmdWords, 0x4000, 15.6},
        ProgramCase{"AMD buffers, byte mode", "amd16-in-x8", 2, Way::AmdBuffers, 0x4000, 3.9},
        ProgramCase{"AMD bypass, 32 bits", "amd32-64m", 1, Way::AmdBypass, 0x8000, 12.2},
        ProgramCase{"AMD blind", "amd16-64m", 1, Way::AmdBlind, 0x2000, 8.1, 1000000},
        ProgramCase{"Intel words", "intel16-64m", 1, Way::IntelWords, 0x4000, 14},
        ProgramCase{"Intel words, two chips", "intel8-std", 2, Way::IntelWords, 0x4000, 14},
        ProgramCase{"Intel buffers", "intel16-64m", 1, Way::IntelBuffers, 0x10000, 4.0},
        ProgramCase{"Intel buffers, two chips", "intel16-j3", 2, Way::IntelBuffers, 0x4000, 7.3},
        ProgramCase{"Intel buffers, 32 bits", "intel32-128m", 1, Way::IntelBuffers, 0x4000, 7.3},
        ProgramCase{"Intel blind", "intel16-64m", 1, Way::IntelBlind, 0x2000, 4.1, 1000000}),
    [](const testing::TestParamInfo<ProgramCase>& row) {
        std::string name = row.param.name;
        std::erase_if(name, [](char c) { return c == ' ' || c == ','; });
        return name;
    });

TEST(BoardErase, AmdSectorIsErasedAndItsNeighboursAreNot) {
    BoardBench bench(vb::BoardBuilder().Flash("amd16-64m-bottom").Set("sector-us", "2000"));
    for (const uint32_t word : {0x07FFF, 0x08000, 0x0FFFF, 0x10000})
        bench.Chip().SetWord(word, 0x1234);
    RecordingProgress progress;
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 0x10000), OmFlashResult::Done);
    EXPECT_EQ(bench.Chip().Word(0x07FFF), 0x1234u);
    EXPECT_EQ(bench.Chip().Word(0x08000), 0xFFFFu);
    EXPECT_EQ(bench.Chip().Word(0x0FFFF), 0xFFFFu);
    EXPECT_EQ(bench.Chip().Word(0x10000), 0x1234u);
    EXPECT_GT(progress.reports.size(), 100u) << "it has been polled while it was busy";
    EXPECT_EQ(bench.Violations(), "");
}

TEST(BoardErase, AmdChipIsErased) {
    BoardBench bench(vb::BoardBuilder().Flash("amd8-4m").Chips(2).Set("chip-us", "2000"));
    bench.Chip(0).SetWord(0x12345, 0x12);
    bench.Chip(1).SetWord(0x54321, 0x34);
    RecordingProgress progress;
    EXPECT_EQ(AmdEraseChip(bench.bus, progress), OmFlashResult::Done);
    EXPECT_EQ(bench.Chip(0).Word(0x12345), 0xFFu);
    EXPECT_EQ(bench.Chip(1).Word(0x54321), 0xFFu);
    EXPECT_EQ(bench.Violations(), "");
}

TEST(BoardErase, AmdSectorThatFailsIsAnError) {
    BoardBench bench(vb::BoardBuilder()
                         .Flash("amd16-64m")
                         .Chips(2)
                         .Set("sector-us", "2000")
                         .Line("fault erase-fails F2 3"));
    RecordingProgress progress;
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 3 * 0x10000), OmFlashResult::FlashError);
    EXPECT_EQ(AmdEraseSector(bench.bus, progress, 4 * 0x10000), OmFlashResult::Done);
    EXPECT_EQ(bench.Violations(), "");
}

TEST(BoardErase, IntelBlockIsUnlockedErasedAndLockedAgain) {
    BoardBench bench(vb::BoardBuilder().Flash("intel16-64m").Set("sector-us", "2000"));
    constexpr uint32_t kBlock = 0x20000; // the first of 128 KiB
    bench.Chip().SetWord(kBlock / 2, 0x1234);
    RecordingProgress progress;
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, kBlock), OmFlashResult::BlockLocked);
    EXPECT_EQ(bench.Chip().Word(kBlock / 2), 0x1234u);
    EXPECT_EQ(IntelUnlockBlock(bench.bus, progress, kBlock), OmFlashResult::Done);
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, kBlock), OmFlashResult::Done);
    EXPECT_EQ(bench.Chip().Word(kBlock / 2), 0xFFFFu);
    EXPECT_EQ(IntelLockBlock(bench.bus, progress, kBlock), OmFlashResult::Done);
    EXPECT_EQ(IntelEraseBlock(bench.bus, progress, kBlock), OmFlashResult::BlockLocked);
    EXPECT_EQ(bench.Violations(), "");
}

TEST(BoardErase, IntelFailuresAreErrors) {
    BoardBench bench(vb::BoardBuilder()
                         .Flash("intel16-64m")
                         .Line("fault lock-fails F1 4")
                         .Set("sector-us", "2000"));
    RecordingProgress progress;
    EXPECT_EQ(IntelUnlockBlock(bench.bus, progress, 0x20000), OmFlashResult::FlashError);
    EXPECT_EQ(IntelLockBlock(bench.bus, progress, 0x20000), OmFlashResult::FlashError);
}

TEST(BoardProgramming, LockedIntelBlockEndsInItsOwnResult) {
    BoardBench bench(vb::BoardBuilder().Flash("intel16-64m"));
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 0;
    EXPECT_EQ(
        IntelProgramBuffers(bench.bus, progress, RandomImage(kStart, 0x1000), 32, wait, count),
        OmFlashResult::FlashError);
    EXPECT_EQ(bench.Contents(kStart, 4), (std::vector<uint8_t>{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(BoardProgramming, AbortedWriteBufferIsSentAgain) {
    BoardBench bench(vb::BoardBuilder().Flash("amd16-64m").Line("fault buffer-aborts F1 3"));
    const OmDataImage image = RandomImage(kStart, 0x800);
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 0;
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 16, wait, count), OmFlashResult::Done);
    EXPECT_TRUE(bench.Contents(kStart, 0x800) == BytesOf(image));
    EXPECT_EQ(bench.Violations(), "");
}

TEST(BoardProgramming, SlowFlashIsWaitedForAndTheNextActionStartsWithTheWaitFound) {
    BoardBench bench(vb::BoardBuilder().Flash("amd16-64m").Line("fault slow F1 20"));
    const OmDataImage image = RandomImage(kStart, 0x400);
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 0;
    EXPECT_EQ(AmdProgramWords(bench.bus, progress, image, false, wait, count), OmFlashResult::Done);
    EXPECT_TRUE(bench.Contents(kStart, 0x400) == BytesOf(image));
    EXPECT_GT(wait, 100) << "200 us of scans of some 50 bits at 30 MHz";
    EXPECT_LT(wait, 140);
}

// The same data through boundary registers of every taste.
TEST(BoardShapes, DataArriveWhateverTheBoardLooksLike) {
    const struct {
        const char* what;
        vb::BoardBuilder builder;
    } cases[] = {
        {"own control cell for each bit", vb::BoardBuilder().Cells(vb::PinStyle::Separate)},
        {"shared control, disable value 0",
         vb::BoardBuilder().Cells(vb::PinStyle::SharedControl).DisableValue(false)},
        {"one device", vb::BoardBuilder().Devices(1)},
        {"four devices between unused ones",
         vb::BoardBuilder().Devices(4).UnusedBefore(1).UnusedAfter(2).Padding(100)},
        {"inverted CE", vb::BoardBuilder().InvertedChipEnable()},
        {"CE tied low", vb::BoardBuilder().TiedChipEnable()},
        {"RESET held by a static pin", vb::BoardBuilder().StaticReset()},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        vb::BoardBuilder builder = row.builder;
        BoardBench bench(builder.Flash("amd16-64m"));
        const OmDataImage image = RandomImage(kStart + 1, 0x1FF); // begins inside a word
        RecordingProgress progress;
        int wait = 0;
        uint32_t count = 0;
        AmdReset(bench.bus);
        EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 16, wait, count),
                  OmFlashResult::Done);
        EXPECT_TRUE(bench.Contents(kStart + 1, 0x1FF) == BytesOf(image));
        EXPECT_EQ(bench.Contents(kStart, 1)[0], 0) << "a missing byte of a word is programmed as 0";
        OmDataImage read;
        bench.bus.ReadWords(nullptr, kStart / 2, 0x100, read, nullptr);
        EXPECT_TRUE(BytesOf(read) == bench.Contents(kStart, 0x200));
        EXPECT_EQ(bench.Violations(), "");
    }
}

TEST(BoardIdentification, EveryKindOfFlashIsFound) {
    using Set = OmCommandSet;

    const struct {
        const char* model;
        unsigned chips;
        Set set;
        uint32_t manufacturer;
        uint32_t bufferBytes;
        uint64_t sectors;
    } cases[] = {
        {"amd16-64m", 1, Set::AmdBuffered, 0x0001, 32, 128},
        {"amd16-64m", 2, Set::AmdBuffered, 0x00010001, 32, 128},
        {"amd16-64m-top", 1, Set::AmdWord, 0x0001, 0, 135},
        {"amd16-in-x8", 4, Set::AmdBuffered, 0x01010101, 32, 128},
        {"amd8-4m", 2, Set::AmdWord, 0x2020, 0, 0},
        {"amd32-64m", 1, Set::AmdWord, 0x00000001, 0, 64},
        {"intel16-64m", 1, Set::IntelExtended, 0x0089, 64, 67},
        {"intel16-j3", 2, Set::IntelExtended, 0x00890089, 32, 64},
        {"intel16-std", 1, Set::IntelStandard, 0x00B0, 0, 32},
        {"intel32-128m", 1, Set::IntelExtended, 0x00000089, 64, 64},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.model);
        RecordingUserInterface user;
        BoardBench bench(vb::BoardBuilder().Flash(row.model).Chips(row.chips));
        OmFlashIdentifier identifier(bench.setup, bench.analyzer);
        OmDetectedFlash found;
        EXPECT_TRUE(identifier.DetectCommandSet(found));
        EXPECT_EQ(found.commandSet, row.set);
        EXPECT_EQ(found.ids.manufacturer, row.manufacturer);
        EXPECT_EQ(found.bufferBytes, row.bufferBytes);
        OmFlashSectorLayout layout;
        const auto chips = std::span(identifier.cfi.chips).first(row.chips);
        EXPECT_EQ(FindSectorsInCfi(chips, layout), row.sectors != 0);
        EXPECT_EQ(layout.GetSectorCount(), row.sectors);
        EXPECT_EQ(bench.Violations(), "");
    }
}

// A chip that has given up a word (DQ5) takes nothing but a reset: without it, all words that
// follow would be lost too.
TEST(BoardProgramming, WordsBehindABatchThatFailedArrive) {
    const struct {
        bool bypass;
        ptrdiff_t lostBytes; // at most: outside bypass mode the first word's whole batch
    } cases[] = {{false, 0x80}, {true, 2}};

    for (const auto& row : cases) {
        SCOPED_TRACE(row.bypass);
        BoardBench bench(vb::BoardBuilder().Flash("amd16-64m"), 1000000);
        bench.Chip().SetWord(kStart / 2, 0x0000); // not erased
        const OmDataImage image = RandomImage(kStart, 0x400);
        RecordingProgress progress;
        int wait = 0;
        uint32_t count = 0;
        EXPECT_EQ(AmdProgramWords(bench.bus, progress, image, row.bypass, wait, count),
                  OmFlashResult::Done);
        const std::vector<uint8_t> contents = bench.Contents(kStart, 0x400);
        const std::vector<uint8_t> expected = BytesOf(image);
        EXPECT_TRUE(std::equal(contents.begin() + row.lostBytes, contents.end(),
                               expected.begin() + row.lostBytes));
        EXPECT_EQ(bench.Violations(), "");
    }
}

// The same of a write buffer: those after the first batch arrive.
TEST(BoardProgramming, BuffersBehindABatchThatFailedArrive) {
    constexpr uint32_t kSectorBytes = 0x10000;
    constexpr uint32_t kBad = 0x40;    // two buffers in the sector that fails
    constexpr ptrdiff_t kLost = 0x160; // the batch that they go out in
    BoardBench bench(vb::BoardBuilder().Flash("amd16-64m").Line("fault program-fails F1 2"),
                     1000000);
    const uint32_t start = kStart + kSectorBytes - kBad;
    std::vector<uint8_t> bytes; // none of them is the reset command
    for (int i = 0; i < 0x2000; ++i)
        bytes.push_back(static_cast<uint8_t>(i % 0x7B));
    OmDataImage image;
    image.SetBytes(start, bytes);
    RecordingProgress progress;
    int wait = 0;
    uint32_t count = 0;
    EXPECT_EQ(AmdProgramBuffers(bench.bus, progress, image, 16, wait, count), OmFlashResult::Done);
    const std::vector<uint8_t> contents = bench.Contents(start, 0x2000);
    EXPECT_TRUE(std::equal(contents.begin() + kLost, contents.end(), bytes.begin() + kLost));
}
