// The AMD command set: programming, erasing, status bits, busy times counted in TCK.

#include "tests/virtualboard/Bench.h"

#include <gtest/gtest.h>

using vb_test::Bench;

namespace {

// Slow enough for a look at the status: a word takes 1 ms, a buffer 2 ms, a sector 3 ms.
vb::BoardBuilder SlowChip() {
    return vb::BoardBuilder()
        .Set("word-us", "1000")
        .Set("buffer-us", "2000")
        .Set("sector-us", "3000")
        .Set("chip-us", "9000");
}

void Program(Bench& bench, uint32_t address, uint32_t value) {
    bench.bus.AmdCommand(0xA0);
    bench.bus.Write(address, value);
}

void EraseSector(Bench& bench, uint32_t address) {
    bench.bus.AmdCommand(0x80);
    bench.bus.AmdUnlock();
    bench.bus.Write(address, 0x30);
}

// Loads `values` from `address` on; the confirming write is left to the caller.
void LoadBuffer(Bench& bench, uint32_t address, const std::vector<uint32_t>& values) {
    bench.bus.AmdUnlock();
    bench.bus.Write(address, 0x25);
    bench.bus.Write(address, static_cast<uint32_t>(values.size() - 1));
    for (uint32_t i = 0; i < values.size(); ++i)
        bench.bus.Write(address + i, values[i]);
}

} // namespace

TEST(AmdFlash, ProgramsAWordAndTogglesDq6Meanwhile) {
    Bench bench(SlowChip());
    Program(bench, 0x1000, 0x1280);
    const uint32_t first = bench.bus.Read(0x1000);
    const uint32_t second = bench.bus.Read(0x1000);
    EXPECT_EQ(first & 0x80, 0x00u); // DQ7 is the complement of the data's
    EXPECT_EQ((first ^ second) & 0x40, 0x40u);
    EXPECT_EQ((first | second) & 0x22, 0x00u);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x1280u);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x1280u);
    EXPECT_EQ(bench.board.Violations().Count(), 0u);
}

TEST(AmdFlash, BusyTimeIsTckTime) {
    Bench bench(SlowChip());
    Program(bench, 0, 0x0000);
    bench.Wait(950);
    EXPECT_NE(bench.bus.Read(0), 0x0000u);
    bench.Wait(50);
    EXPECT_EQ(bench.bus.Read(0), 0x0000u);
}

TEST(AmdFlash, AnEndedOperationShowsWithOeHeldLow) {
    Bench bench(SlowChip());
    Program(bench, 5, 0x1234);
    bench.bus.Set("OE", false);
    bench.bus.Scan();
    EXPECT_NE(bench.bus.Scan(), 0x1234u);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Scan(), 0x1234u);
}

TEST(AmdFlash, ProgrammingOnlyClearsBits) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(9, 0x0FF0);
    Program(bench, 9, 0x00F0);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(9), 0x00F0u);
}

TEST(AmdFlash, ABitThatShouldBecomeOneExceedsTheTimeLimit) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(9, 0x0FF0);
    Program(bench, 9, 0x1FF0);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(9) & 0xA0, 0x20u); // DQ7 = complement of 1, DQ5
    EXPECT_EQ(bench.bus.Read(9) & 0xA0, 0x20u);
    Program(bench, 10, 0x0000); // ignored: only a reset helps
    bench.Wait(1000);
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(9), 0x0FF0u);
    EXPECT_EQ(bench.bus.Read(10), 0xFFFFu);
}

TEST(AmdFlash, StuckBitExceedsTheTimeLimit) {
    Bench bench(SlowChip().Line("fault stuck-bit F1 0x20 4"));
    Program(bench, 0x20, 0x0000);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x20) & 0xA0, 0xA0u);
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(0x20), 0x0010u);
}

TEST(AmdFlash, CommandsDuringProgrammingAreIgnored) {
    Bench bench(SlowChip());
    Program(bench, 1, 0x1111);
    Program(bench, 2, 0x2222);
    bench.bus.Write(0, 0xF0);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(1), 0x1111u);
    EXPECT_EQ(bench.bus.Read(2), 0xFFFFu);
}

TEST(AmdFlash, WrongUnlockDoesNothing) {
    Bench bench(SlowChip());
    bench.bus.Write(0x555, 0xAA);
    bench.bus.Write(0x2AB, 0x55);
    bench.bus.Write(0x555, 0xA0);
    bench.bus.Write(1, 0x0000);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(1), 0xFFFFu);
}

TEST(AmdFlash, DecoderLooksAtSoManyAddressBits) {
    struct Case {
        const char* decode;
        uint32_t first, second;
        bool unlocks;
    };

    for (const Case& test : {Case{"11", 0x555, 0x2AA, true}, Case{"11", 0x5555, 0x2AAA, true},
                             Case{"15", 0x5555, 0x2AAA, true}, Case{"15", 0x555, 0x2AA, false}}) {
        Bench bench(SlowChip().Set("decode", test.decode));
        bench.bus.Write(test.first, 0xAA);
        bench.bus.Write(test.second, 0x55);
        bench.bus.Write(test.first, 0x90);
        EXPECT_EQ(bench.bus.Read(0) == 0x0001, test.unlocks) << test.decode << " " << test.first;
    }
}

TEST(AmdFlash, AutoselectTellsIdentifiersAndProtection) {
    Bench bench(SlowChip().Line("fault protect F1 1"));
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x0001u);
    EXPECT_EQ(bench.bus.Read(1), 0x227Eu);
    EXPECT_EQ(bench.bus.Read(2), 0u);
    EXPECT_EQ(bench.bus.Read(0x8002), 1u);
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
}

TEST(AmdFlash, UnlockBypassSavesTheUnlockCycles) {
    Bench bench(SlowChip());
    bench.bus.AmdCommand(0x20);
    bench.bus.Write(0, 0xA0);
    bench.bus.Write(0x30, 0x3030);
    bench.Wait(1000);
    bench.bus.Write(0, 0x90);
    bench.bus.Write(0, 0x00);
    bench.bus.Write(0, 0xA0); // no longer a command
    bench.bus.Write(0x31, 0x3131);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x30), 0x3030u);
    EXPECT_EQ(bench.bus.Read(0x31), 0xFFFFu);
}

TEST(AmdFlash, ErasesASectorAndShowsDq7AndDq3) {
    Bench bench(SlowChip().Set("window-us", "500"));
    bench.Chip().SetWord(0x8000, 0);
    bench.Chip().SetWord(0xFFFF, 0);
    bench.Chip().SetWord(0x10000, 0);
    bench.Chip().SetWord(0x7FFF, 0);
    EraseSector(bench, 0x8123);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0xA8, 0x00u); // DQ3: further sectors may come
    bench.Wait(500);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0xA8, 0x08u);
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0x8000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0xFFFF), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x10000), 0u);
    EXPECT_EQ(bench.bus.Read(0x7FFF), 0u);
}

TEST(AmdFlash, Dq2TogglesInTheErasingSectorAlone) {
    Bench bench(SlowChip());
    EraseSector(bench, 0x8000);
    EXPECT_EQ((bench.bus.Read(0x8000) ^ bench.bus.Read(0x8000)) & 0x44, 0x44u);
    EXPECT_EQ((bench.bus.Read(0x0000) ^ bench.bus.Read(0x0000)) & 0x44, 0x40u);
}

TEST(AmdFlash, FurtherSectorsJoinWithinTheWindow) {
    Bench bench(SlowChip().Set("window-us", "500"));
    bench.Chip().SetWord(0x8000, 0);
    bench.Chip().SetWord(0x18000, 0);
    EraseSector(bench, 0x8000);
    bench.bus.Write(0x18000, 0x30);
    bench.Wait(500 + 3000);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0x88, 0x08u); // one after the other
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0x8000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x18000), 0xFFFFu);
}

TEST(AmdFlash, ErasesTheWholeChip) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(0, 0);
    bench.Chip().SetWord(0x3FFFFF, 0);
    bench.bus.AmdCommand(0x80);
    bench.bus.AmdCommand(0x10);
    EXPECT_EQ(bench.bus.Read(0) & 0x88, 0x08u); // no window, busy at once
    bench.Wait(9000);
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x3FFFFF), 0xFFFFu);
}

TEST(AmdFlash, ASectorThatFailsToEraseEndsInDq5) {
    Bench bench(SlowChip().Line("fault erase-fails F1 1"));
    bench.Chip().SetWord(0x8000, 0);
    EraseSector(bench, 0x8000);
    bench.Wait(4 * 3050);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0xA0, 0x20u);
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(0x8000), 0x0000u);
}

TEST(AmdFlash, EarlyDq5ShowsForOneReadOnly) {
    Bench bench(SlowChip().Line("fault early-dq5 F1"));
    EraseSector(bench, 0);
    bench.bus.Set("OE", false);
    bench.bus.SetAddress(0);
    bench.bus.Scan();
    EXPECT_EQ(bench.bus.Scan() & 0xA0, 0x00u);
    bench.Wait(3050);
    EXPECT_EQ(bench.bus.Scan() & 0xA0, 0x20u);
    EXPECT_EQ(bench.bus.Scan(), 0xFFFFu);
}

TEST(AmdFlash, ProgramsABuffer) {
    Bench bench(SlowChip());
    LoadBuffer(bench, 0x40, {0x4040, 0x4141, 0x4242});
    bench.bus.Write(0x40, 0x29);
    EXPECT_EQ(bench.bus.Read(0x42) & 0x82, 0x80u); // DQ7: complement of the last word's
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0x40), 0x4040u);
    EXPECT_EQ(bench.bus.Read(0x41), 0x4141u);
    EXPECT_EQ(bench.bus.Read(0x42), 0x4242u);
    EXPECT_EQ(bench.bus.Read(0x43), 0xFFFFu);
}

TEST(AmdFlash, BufferLoadAbortsAndOnlyTheAbortResetHelps) {
    struct Case {
        const char* why;
        uint32_t address, words, confirm;
    };

    for (const Case& test :
         {Case{"more than the buffer holds", 0x40, 17, 0x29}, Case{"crosses a page", 0x4F, 2, 0x29},
          Case{"no confirmation", 0x40, 2, 0x28}}) {
        Bench bench(SlowChip());
        LoadBuffer(bench, test.address, std::vector<uint32_t>(test.words, 0x0000));
        bench.bus.Write(test.address, test.confirm);
        bench.Wait(5000);
        EXPECT_EQ(bench.bus.Read(test.address) & 0x22, 0x02u) << test.why;
        bench.bus.Write(0, 0xF0); // not enough
        EXPECT_EQ(bench.bus.Read(test.address) & 0x22, 0x02u) << test.why;
        bench.bus.AmdCommand(0xF0);
        EXPECT_EQ(bench.bus.Read(test.address), 0xFFFFu) << test.why;
    }
}

TEST(AmdFlash, BufferAbortFaultStrikesSoManyTimes) {
    Bench bench(SlowChip().Line("fault buffer-aborts F1 1"));
    LoadBuffer(bench, 0, {0x1234});
    bench.bus.Write(0, 0x29);
    EXPECT_EQ(bench.bus.Read(0) & 0x82, 0x82u);
    bench.bus.AmdCommand(0xF0);
    LoadBuffer(bench, 0, {0x1234});
    bench.bus.Write(0, 0x29);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0), 0x1234u);
}

TEST(AmdFlash, ProtectedSectorStaysAsItIs) {
    Bench bench(SlowChip().Line("fault protect F1 0"));
    Program(bench, 0, 0x0000);
    bench.Wait(10);
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
}

TEST(AmdFlash, NeverReadyAndSlow) {
    Bench never(SlowChip().Line("fault never-ready F1"));
    Program(never, 0, 0x0080);
    never.Wait(60'000'000);
    EXPECT_EQ(never.bus.Read(0) & 0xA0, 0x00u);
    Bench slow(SlowChip().Line("fault slow F1 5"));
    Program(slow, 0, 0x0080);
    slow.Wait(4000);
    EXPECT_EQ(slow.bus.Read(0) & 0xA0, 0x00u);
    slow.Wait(1000);
    EXPECT_EQ(slow.bus.Read(0), 0x0080u);
}

TEST(AmdFlash, OneOfTwoChipsIsSlow) {
    Bench bench(SlowChip().Chips(2).Line("fault slow F2 3"));
    Program(bench, 0, 0x22221111);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0) & 0xFFFF, 0x1111u);
    EXPECT_NE(bench.bus.Read(0) >> 16, 0x2222u);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0), 0x22221111u);
}

TEST(AmdFlash, EightAndThirtyTwoBitChips) {
    Bench narrow(vb::BoardBuilder().Flash("amd8-4m"));
    narrow.bus.Write(0x5555, 0xAA);
    narrow.bus.Write(0x2AAA, 0x55);
    narrow.bus.Write(0x5555, 0xA0);
    narrow.bus.Write(0x7FFFF, 0x5A);
    narrow.Wait(10);
    EXPECT_EQ(narrow.board.FlashContents()[0x7FFFF], 0x5A);
    Bench wide(vb::BoardBuilder().Flash("amd32-64m"));
    Program(wide, 3, 0x12345678);
    wide.Wait(10);
    EXPECT_EQ(wide.bus.Read(3), 0x12345678u);
    EXPECT_EQ(wide.Chip().Bytes()[12], 0x78);
}
