// What an AMD chip does while it is busy, as the data sheets of the 29F, 29LV and S29GL families
// have it: what it hears, what its status says, and what a host can leave behind in it.

#include "tests/virtualboard/Bench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

using vb_test::Bench;

namespace {

// A word takes 1 ms, a buffer 2 ms, a sector 3 ms.
vb::BoardBuilder SlowChip(const std::string& suspend = "all") {
    return vb::BoardBuilder()
        .Set("word-us", "1000")
        .Set("buffer-us", "2000")
        .Set("sector-us", "3000")
        .Set("suspend", suspend);
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

void LoadBuffer(Bench& bench, uint32_t address, const std::vector<uint32_t>& values) {
    bench.bus.AmdUnlock();
    bench.bus.Write(address, 0x25);
    bench.bus.Write(address, static_cast<uint32_t>(values.size() - 1));
    for (uint32_t i = 0; i < values.size(); ++i)
        bench.bus.Write(address + i, values[i]);
}

bool Toggles(Bench& bench, uint32_t address, uint32_t bit) {
    const uint32_t first = bench.bus.Read(address);
    return ((first ^ bench.bus.Read(address)) & bit) != 0;
}

// Microseconds, in steps of ten, until the word at that address can be read.
uint32_t TimeUntil(Bench& bench, uint32_t address, uint32_t value) {
    const uint64_t start = bench.board.Clock().Now();
    while (bench.Chip().Word(address) != value) {
        bench.Wait(10);
        bench.Chip().Settle();
    }
    return static_cast<uint32_t>((bench.board.Clock().Now() - start) / 1'000'000);
}

} // namespace

TEST(AmdBusy, SuspendsProgrammingAtAnyAddressUntilItIsResumed) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(0x20, 0x2020);
    Program(bench, 0x1000, 0x1234);
    bench.bus.Write(0x3ABCD, 0x77B0);        // the high byte is not looked at
    EXPECT_TRUE(Toggles(bench, 0x20, 0x40)); // not at once
    bench.Wait(20);
    EXPECT_EQ(bench.bus.Read(0x20), 0x2020u);
    EXPECT_EQ(bench.bus.Read(0x1000), 0xFFFFu); // blank, though nothing has been programmed
    bench.Wait(5000);
    EXPECT_EQ(bench.bus.Read(0x1000), 0xFFFFu);
    bench.bus.Write(0, 0xF0);
    Program(bench, 0x1001, 0x5678); // no program command is taken now
    bench.Wait(5000);
    EXPECT_EQ(bench.bus.Read(0x1001), 0xFFFFu);
    bench.bus.Write(0x7, 0x30);
    EXPECT_TRUE(Toggles(bench, 0x20, 0x40));
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x1234u);
    EXPECT_EQ(bench.bus.Read(0x1001), 0xFFFFu);
}

TEST(AmdBusy, SuspendedProgramNeedsTheRestOfItsTime) {
    Bench bench(SlowChip());
    Program(bench, 0, 0x0000);
    bench.Wait(600);
    bench.bus.Write(0, 0xB0);
    bench.Wait(3000);
    bench.bus.Write(0, 0x30);
    const uint32_t rest = TimeUntil(bench, 0, 0x0000);
    EXPECT_GT(rest, 340u);
    EXPECT_LT(rest, 400u);
}

TEST(AmdBusy, SuspendedBufferIsProgrammedWholeAfterTheResume) {
    Bench bench(SlowChip());
    LoadBuffer(bench, 0x40, {0x4040, 0x4141});
    bench.bus.Write(0x40, 0x29);
    bench.bus.Write(0x40, 0xB0);
    bench.Wait(20);
    EXPECT_EQ(bench.bus.Read(0x41), 0xFFFFu);
    LoadBuffer(bench, 0x60, {0x6060}); // not taken
    bench.bus.Write(0x60, 0x29);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0x60), 0xFFFFu);
    bench.bus.Write(0, 0x30);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0x40), 0x4040u);
    EXPECT_EQ(bench.bus.Read(0x41), 0x4141u);
    EXPECT_EQ(bench.bus.Read(0x60), 0xFFFFu);
}

TEST(AmdBusy, OlderChipsSuspendAnEraseAlone) {
    for (const char* suspend : {"none", "erase"}) {
        Bench bench(SlowChip(suspend));
        Program(bench, 0, 0x1234);
        bench.bus.Write(0, 0xB0);
        bench.Wait(100);
        EXPECT_TRUE(Toggles(bench, 0, 0x40)) << suspend;
        bench.Wait(900);
        EXPECT_EQ(bench.bus.Read(0), 0x1234u) << suspend;
    }
}

TEST(AmdBusy, ResetAndOtherCommandsAreIgnored) {
    Bench bench(SlowChip());
    Program(bench, 1, 0x1111);
    for (const uint32_t command : {0xF0u, 0x98u, 0x90u, 0x30u, 0xFFu, 0x70u}) {
        bench.bus.Write(0x55, command);
        EXPECT_TRUE(Toggles(bench, 1, 0x40)) << command;
    }
    bench.bus.AmdCommand(0x90);
    EXPECT_TRUE(Toggles(bench, 1, 0x40));
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(1), 0x1111u);
}

TEST(AmdBusy, CommandBegunWhileBusyIsNotTakenUpAfterwards) {
    Bench bench(SlowChip());
    Program(bench, 1, 0x1111);
    bench.bus.AmdUnlock();
    bench.Wait(1000);
    bench.bus.Write(0x555, 0xA0);
    bench.bus.Write(2, 0x2222);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(2), 0xFFFFu);
}

// The data of a program command that was not heard are commands themselves.
TEST(AmdBusy, DataOfALostCommandCanBeACommand) {
    Bench bench(SlowChip());
    bench.bus.Write(0x1055, 0x1298);
    EXPECT_EQ(bench.bus.Read(0x10), 0x51u); // 'Q'
    bench.bus.Write(0x1056, 0x34F0);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu);
}

TEST(AmdBusy, SuspendedEraseShowsDq2InItsSectorAndTheArrayElsewhere) {
    Bench bench(SlowChip("erase"));
    bench.Chip().SetWord(0x8000, 0);
    bench.Chip().SetWord(0x10, 0x1010);
    EraseSector(bench, 0x8000);
    bench.Wait(500);
    bench.bus.Write(0x123, 0xB0);
    bench.Wait(20);
    EXPECT_EQ(bench.bus.Read(0x10), 0x1010u);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0xE0, 0x80u); // DQ7 is 1, DQ6 rests
    EXPECT_EQ(bench.bus.Read(0x8000) & 0xE0, 0x80u);
    EXPECT_TRUE(Toggles(bench, 0x8000, 0x04));
    Program(bench, 0x20, 0x2020); // another sector can be programmed
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x20), 0x2020u);
    Program(bench, 0x8001, 0x0000); // this one cannot
    EXPECT_FALSE(Toggles(bench, 0x8001, 0x40));
    bench.bus.Write(0, 0x30);
    EXPECT_TRUE(Toggles(bench, 0x8000, 0x40));
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0x8000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x8001), 0xFFFFu);
}

TEST(AmdBusy, SuspendEndsTheEraseWindowAtOnce) {
    Bench bench(SlowChip("erase").Set("window-us", "500"));
    EraseSector(bench, 0x8000);
    bench.bus.Write(0, 0xB0);
    EXPECT_FALSE(Toggles(bench, 0x8000, 0x40));
    bench.bus.Write(0, 0x30);
    EXPECT_EQ(bench.bus.Read(0x8000) & 0x88, 0x08u); // DQ3: no further sector is taken
}

TEST(AmdBusy, ChipEraseDoesNotSuspend) {
    Bench bench(SlowChip().Set("chip-us", "3000"));
    bench.bus.AmdCommand(0x80);
    bench.bus.AmdCommand(0x10);
    bench.bus.Write(0, 0xB0);
    bench.Wait(100);
    EXPECT_TRUE(Toggles(bench, 0, 0x40));
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
}

TEST(AmdBusy, TimesVaryFromWordToWordAndRepeatWithTheSeed) {
    std::vector<uint32_t> runs[3];
    for (size_t run = 0; run < 3; ++run) {
        Bench bench(
            SlowChip().Set("least-percent", "33").Set("seed", run == 2 ? "0x77" : "0x1234"));
        for (uint32_t i = 0; i < 40; ++i) {
            Program(bench, i, 0x1000 + i);
            runs[run].push_back(TimeUntil(bench, i, 0x1000 + i));
        }
    }
    EXPECT_EQ(runs[0], runs[1]);
    EXPECT_NE(runs[0], runs[2]);
    const auto [least, most] = std::ranges::minmax(runs[0]);
    EXPECT_GE(least, 320u);
    EXPECT_LT(least, 400u);
    EXPECT_GT(most, 900u);
    EXPECT_LE(most, 1010u);
}

TEST(AmdBusy, BufferTimesVaryToo) {
    Bench bench(SlowChip().Set("least-percent", "33"));
    std::vector<uint32_t> times;
    for (uint32_t i = 0; i < 20; ++i) {
        LoadBuffer(bench, i * 16, {0x1000 + i});
        bench.bus.Write(i * 16, 0x29);
        times.push_back(TimeUntil(bench, i * 16, 0x1000 + i));
    }
    const auto [least, most] = std::ranges::minmax(times);
    EXPECT_GE(least, 650u);
    EXPECT_LE(most, 2010u);
    EXPECT_GT(most - least, 500u);
}

TEST(AmdBusy, RaisedBitIsNoErrorOnChipsThatDoNotLook) {
    Bench bench(SlowChip().Set("raised-bit-fails", "no"));
    bench.Chip().SetWord(9, 0x0FF0);
    Program(bench, 9, 0x1F70);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(9), 0x0F70u);
}

TEST(AmdBusy, FailingWordRunsIntoItsOwnLimit) {
    Bench bench(SlowChip().Set("program-limit-factor", "4").Set("buffer", "32"));
    bench.Chip().SetWord(9, 0x0000);
    Program(bench, 9, 0x00FF);
    bench.Wait(3900);
    EXPECT_EQ(bench.bus.Read(9) & 0xA2, 0x00u);
    bench.Wait(100);
    EXPECT_EQ(bench.bus.Read(9) & 0xA2, 0x20u);
    EXPECT_TRUE(Toggles(bench, 9, 0x40));
    bench.bus.AmdCommand(0x90); // F0h alone is taken
    EXPECT_EQ(bench.bus.Read(9) & 0xA2, 0x20u);
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(9), 0x0000u);
}

TEST(AmdBusy, BufferAbortsInAllItsWays) {
    struct Case {
        const char* why;
        uint32_t countAddress, count, secondAddress, confirmAddress, confirm;
    };

    for (const Case& test : {
             Case{"count too large", 0x40, 16, 0x41, 0x40, 0x29},
             Case{"count in another sector", 0x8040, 1, 0x41, 0x40, 0x29},
             Case{"address outside the page", 0x40, 1, 0x50, 0x40, 0x29},
             Case{"address in another sector", 0x40, 1, 0x8041, 0x40, 0x29},
             Case{"wrong confirmation", 0x40, 1, 0x41, 0x40, 0x2A},
             Case{"confirmation in another sector", 0x40, 1, 0x41, 0x8040, 0x29},
         }) {
        for (const bool dq5 : {false, true}) {
            SCOPED_TRACE(std::string(test.why) + (dq5 ? " with DQ5" : ""));
            Bench bench(SlowChip().Set("abort-dq5", dq5 ? "yes" : "no"));
            bench.bus.AmdUnlock();
            bench.bus.Write(0x40, 0x25);
            bench.bus.Write(test.countAddress, test.count);
            bench.bus.Write(0x40, 0x0000);
            bench.bus.Write(test.secondAddress, 0x0000);
            bench.bus.Write(test.confirmAddress, test.confirm);
            bench.Wait(5000);
            EXPECT_EQ(bench.bus.Read(0x40) & 0x22, dq5 ? 0x22u : 0x02u);
            EXPECT_TRUE(Toggles(bench, 0x40, 0x40));
            bench.bus.Write(0, 0xF0);
            Program(bench, 0x40, 0x0000);
            bench.Wait(1000);
            EXPECT_EQ(bench.bus.Read(0x40) & 0x02, 0x02u);
            bench.bus.AmdCommand(0xF0);
            EXPECT_EQ(bench.bus.Read(0x40), 0xFFFFu);
            EXPECT_EQ(bench.bus.Read(0x41), 0xFFFFu);
        }
    }
}

TEST(AmdBusy, AbortShowsTheComplementOfTheLastLoadedDq7) {
    for (const uint32_t value : {0x0000u, 0x0080u}) {
        Bench bench(SlowChip());
        LoadBuffer(bench, 0x40, {value ^ 0x80, value});
        bench.bus.Write(0x40, 0x00);
        EXPECT_EQ(bench.bus.Read(0x41) & 0x82, value ? 0x02u : 0x82u) << value;
    }
}

TEST(AmdBusy, SecondLoadOfAnAddressReplacesTheFirstAndCounts) {
    Bench bench(SlowChip());
    bench.bus.AmdUnlock();
    bench.bus.Write(0x40, 0x25);
    bench.bus.Write(0x40, 1);
    bench.bus.Write(0x40, 0x1111);
    bench.bus.Write(0x40, 0x2222);
    bench.bus.Write(0x40, 0x29);
    bench.Wait(2000);
    EXPECT_EQ(bench.bus.Read(0x40), 0x2222u);
}

TEST(AmdBusy, OnlyItsOwnResetLeavesTheBypass) {
    Bench bench(SlowChip());
    bench.bus.AmdCommand(0x20);
    bench.bus.Write(0, 0xF0);
    bench.bus.AmdCommand(0xF0);
    bench.bus.AmdCommand(0x90); // no autoselect: the third cycle begins the way out
    bench.bus.Write(0, 0xF0);   // and this is not its end
    EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
    bench.bus.Write(0, 0xA0);
    bench.bus.Write(0x30, 0x3030);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x30), 0x3030u);
    bench.bus.Write(0x777, 0x90);
    bench.bus.Write(0x888, 0x00);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x0001u);
}

TEST(AmdBusy, BypassStaysAfterDq5AndItsReset) {
    Bench bench(SlowChip());
    bench.bus.AmdCommand(0x20);
    bench.Chip().SetWord(9, 0x0000);
    bench.bus.Write(0, 0xA0);
    bench.bus.Write(9, 0xFFFF);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(9) & 0x20, 0x20u);
    bench.bus.Write(0, 0xF0);
    bench.bus.Write(0, 0xA0);
    bench.bus.Write(0x30, 0x3030);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x30), 0x3030u);
}

TEST(AmdBusy, BypassTakesEraseAndBufferWhereTheChipHasThem) {
    for (const bool all : {false, true}) {
        SCOPED_TRACE(all);
        Bench bench(SlowChip().Set("bypass-commands", all ? "all" : "program"));
        bench.Chip().SetWord(0x8000, 0x1234);
        bench.bus.AmdCommand(0x20);
        bench.bus.Write(0, 0x80);
        bench.bus.Write(0x8000, 0x30);
        bench.Wait(4000);
        EXPECT_EQ(bench.bus.Read(0x8000), all ? 0xFFFFu : 0x1234u);
        bench.bus.Write(0x40, 0x25);
        bench.bus.Write(0x40, 0);
        bench.bus.Write(0x40, 0x4040);
        bench.bus.Write(0x40, 0x29);
        bench.Wait(2000);
        EXPECT_EQ(bench.bus.Read(0x40), all ? 0x4040u : 0xFFFFu);
    }
}

TEST(AmdBusy, HardwareResetLeavesTheBypassAndASuspend) {
    Bench bench(SlowChip());
    bench.bus.AmdCommand(0x20);
    bench.bus.Write(0, 0xA0);
    bench.bus.Write(1, 0x1111);
    bench.bus.Write(0, 0xB0);
    bench.Wait(20);
    bench.Chip().HardwareReset();
    bench.bus.Write(0, 0x30);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(1), 0xFFFFu);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x0001u);
}

TEST(AmdBusy, StatusFillShowsAboveDq7) {
    Bench bench(SlowChip().Set("status-fill", "0xFFFF"));
    Program(bench, 0, 0x0080);
    EXPECT_EQ(bench.bus.Read(0) & 0xFFBF, 0xFF00u);
}

// A host that dies in the bypass finds the chip there when it comes again, until power is cut.
TEST(AmdBusy, BypassOutlivesTheHost) {
    const std::filesystem::path file =
        std::filesystem::path(testing::TempDir()) / "amd-busy-chip-state";
    std::filesystem::remove(file);
    const vb::BoardBuilder builder = SlowChip().Set("buffer", "0");
    {
        Bench bench(builder);
        bench.board.KeepState("F1", file.string());
        bench.bus.AmdCommand(0x20);
        bench.board.SaveContents();
    }
    {
        Bench bench(builder);
        bench.board.KeepState("F1", file.string());
        bench.bus.Write(0, 0xF0);
        bench.bus.AmdCommand(0x90);
        bench.bus.Write(0, 0xF0);
        EXPECT_EQ(bench.bus.Read(0), 0xFFFFu);
    }
    Bench bench(builder); // power has been cut
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x0001u);
    std::filesystem::remove(file);
}
