// Intel chips at their busiest, as the data sheets of the J3, L18, W18 and W30 have it: suspend,
// partitions with read modes and error bits of their own, locks, and commands that data can form.

#include "tests/virtualboard/Bench.h"
#include "virtualboard/IntelFlash.h"

#include <gtest/gtest.h>

using vb_test::Bench;

namespace {

// Four partitions of 1000h words with two blocks each; a word takes 1 ms, a block 3 ms.
vb::BoardBuilder SlowChip(const std::string& partitions = "4", const std::string& locks = "none") {
    return vb::BoardBuilder()
        .Flash("intel16-64m")
        .Set("sectors", "8x4K")
        .Set("partitions", partitions)
        .Set("locks", locks)
        .Set("suspend", "all")
        .Set("word-us", "1000")
        .Set("buffer-us", "2000")
        .Set("sector-us", "3000")
        .Set("lock-us", "20");
}

void Program(Bench& bench, uint32_t address, uint32_t value) {
    bench.bus.Write(address, 0x40);
    bench.bus.Write(address, value);
}

vb::IntelFlash& Intel(Bench& bench) {
    return dynamic_cast<vb::IntelFlash&>(bench.Chip());
}

} // namespace

TEST(IntelPartition, ReadArrayReachesTheAddressedPartitionAlone) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(0x0010, 0x1010);
    bench.Chip().SetWord(0x1010, 0x2020);
    bench.bus.Write(0x0000, 0x70);
    bench.bus.Write(0x1000, 0x70);
    bench.bus.Write(0x0FFF, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x0010), 0x1010u);
    EXPECT_EQ(bench.bus.Read(0x1010), 0x0080u);
    bench.bus.Write(0x1FFF, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x1010), 0x2020u);
}

TEST(IntelPartition, IdentifierAndQueryShowInTheirPartition) {
    Bench bench(SlowChip());
    bench.bus.Write(0x0000, 0x90);
    bench.bus.Write(0x1000, 0x98);
    EXPECT_EQ(bench.bus.Read(0x0000), 0x0089u);
    EXPECT_EQ(bench.bus.Read(0x1010), 0x0051u); // 'Q', counted from the partition's start
    EXPECT_EQ(bench.bus.Read(0x2000), 0xFFFFu);
}

TEST(IntelPartition, OthersAreReadWhileOneIsProgrammed) {
    Bench bench(SlowChip());
    bench.Chip().SetWord(0x3000, 0x3030);
    Program(bench, 0x1000, 0x1234);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0000u);
    EXPECT_EQ(bench.bus.Read(0x3000), 0x3030u);
    bench.bus.Write(0x2000, 0x70);
    EXPECT_EQ(bench.bus.Read(0x2000), 0x0001u); // another partition is busy
    bench.bus.Write(0x2000, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x2000), 0xFFFFu);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0080u);
    bench.bus.Write(0x0000, 0xFF); // not this one's
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0080u);
    bench.bus.Write(0x1000, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x1234u);
}

TEST(IntelPartition, BusyPartitionHearsStatusAndSuspendAlone) {
    Bench bench(SlowChip());
    Program(bench, 0x1000, 0x1234);
    for (const uint32_t command : {0xFFu, 0x90u, 0x98u, 0x20u, 0x40u, 0x50u, 0xD0u}) {
        bench.bus.Write(0x1000, command);
        EXPECT_EQ(bench.bus.Read(0x1000), 0x0000u) << command;
    }
    Program(bench, 0x3000, 0x5678); // one program at a time
    bench.Wait(1000);
    EXPECT_EQ(bench.Chip().Word(0x3000), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0080u);
}

TEST(IntelPartition, ArrayReadWhileBusyIsIndeterminateWhereItIsTaken) {
    Bench bench(SlowChip().Set("busy-read-modes", "yes"));
    bench.Chip().SetWord(0x1001, 0x1111);
    Program(bench, 0x1000, 0x1234);
    bench.bus.Write(0x1000, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x1001), 0xEEEEu);
    bench.bus.Write(0x1000, 0x90);
    EXPECT_EQ(bench.bus.Read(0x0001), 0xFFFFu); // the array of another partition
    bench.bus.Write(0x1000, 0xFF);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x1001), 0x1111u);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x1234u);
}

TEST(IntelPartition, ErrorsBelongToTheirPartitionAndAreClearedThere) {
    Bench bench(SlowChip("4", "single"));
    Program(bench, 0x1000, 0x1234); // locked
    bench.Wait(10);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0092u);
    bench.bus.Write(0x2000, 0x70);
    EXPECT_EQ(bench.bus.Read(0x2000), 0x0080u);
    bench.bus.Write(0x2000, 0x50);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0092u);
    bench.bus.Write(0x1000, 0x50);
    EXPECT_EQ(bench.bus.Read(0x1000), 0x0080u);
}

TEST(IntelSuspend, ProgramStopsAndGoesOnAtD0h) {
    Bench bench(SlowChip("1"));
    bench.Chip().SetWord(0x20, 0x2020);
    Program(bench, 0x10, 0x1234);
    bench.bus.Write(0x777, 0x33B0);
    EXPECT_EQ(bench.bus.Read(0x10), 0x0000u);
    bench.Wait(10);
    EXPECT_EQ(bench.bus.Read(0x10), 0x0084u); // SR7, SR2
    bench.bus.Write(0, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x20), 0x2020u);
    Program(bench, 0x11, 0x1111); // not taken
    bench.Wait(5000);
    bench.bus.Write(0, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x11), 0xFFFFu);
    bench.bus.Write(0, 0xD0);
    EXPECT_EQ(bench.bus.Read(0x10), 0x0000u);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x10), 0x0080u);
    bench.bus.Write(0, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x10), 0x1234u);
}

TEST(IntelSuspend, EraseStopsAndAnotherBlockIsProgrammed) {
    Bench bench(SlowChip("1"));
    bench.Chip().SetWord(0x800, 0);
    bench.bus.Write(0x800, 0x20);
    bench.bus.Write(0x800, 0xD0);
    bench.bus.Write(0, 0xB0);
    bench.Wait(10);
    EXPECT_EQ(bench.bus.Read(0), 0x00C0u); // SR7, SR6
    Program(bench, 0x10, 0x1010);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0), 0x00C0u);
    Program(bench, 0x801, 0x0000); // the block that is being erased
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0), 0x00F0u); // SR5 and SR4: command sequence
    bench.bus.Write(0, 0x50);
    bench.bus.Write(0, 0xD0);
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0), 0x0080u);
    bench.bus.Write(0, 0xFF);
    EXPECT_EQ(bench.bus.Read(0x800), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x801), 0xFFFFu);
    EXPECT_EQ(bench.bus.Read(0x10), 0x1010u);
}

TEST(IntelSuspend, ChipsWithoutItGoOn) {
    Bench bench(SlowChip("1").Set("suspend", "none"));
    Program(bench, 0x10, 0x1234);
    bench.bus.Write(0, 0xB0);
    bench.Wait(1000);
    EXPECT_EQ(bench.bus.Read(0x10), 0x0080u);
}

TEST(IntelSequence, ErrorsSetSr4AndSr5) {
    struct Case {
        const char* why;
        uint32_t setup, second;
    };

    for (const Case& test :
         {Case{"erase not confirmed", 0x20, 0xFF}, Case{"erase set up twice", 0x20, 0x20},
          Case{"lock of an unknown kind", 0x60, 0x60}, Case{"factory program", 0x80, 0x00},
          Case{"more words than the buffer has", 0xE8, 0x20}}) {
        Bench bench(SlowChip("1", "single"));
        bench.bus.Write(0, test.setup);
        bench.bus.Write(0, test.second);
        bench.Wait(100);
        EXPECT_EQ(bench.bus.Read(0), 0x00B0u) << test.why;
    }
}

// What data become when the command ahead of them has not been heard.
TEST(IntelSequence, DataCanBeCommandsOfTheirOwn) {
    Bench bench(SlowChip("1", "single"));
    bench.bus.Write(0x800, 0x60);
    bench.bus.Write(0x800, 0xD0);
    bench.Wait(20);
    bench.Chip().SetWord(0x810, 0x1234);
    bench.bus.Write(0x810, 0x5620);
    bench.bus.Write(0x811, 0x78D0);
    bench.Wait(3000);
    EXPECT_EQ(bench.bus.Read(0x810), 0x0080u);
    EXPECT_EQ(bench.Chip().Word(0x810), 0xFFFFu) << "erased";
    bench.bus.Write(0x810, 0x1260);
    bench.bus.Write(0x811, 0x3401);
    bench.Wait(20);
    EXPECT_EQ(bench.bus.Read(0x810), 0x0080u);
    EXPECT_TRUE(Intel(bench).IsLocked(1));
    bench.bus.Write(0x810, 0x12C0);
    bench.bus.Write(0x811, 0x3456);
    bench.Wait(1000);
    EXPECT_EQ(Intel(bench).ProtectionWrites(), 1u);
    bench.bus.Write(0x810, 0x1260);
    bench.bus.Write(0x811, 0x3403);
    EXPECT_EQ(Intel(bench).ConfigurationWrites(), 1u);
    bench.bus.Write(0x810, 0x1280);
    bench.bus.Write(0x811, 0x34D0);
    EXPECT_EQ(bench.bus.Read(0x800), 0x0098u); // SR4, SR3: no such voltage
}

TEST(IntelLock, LockedDownBlockStaysLockedWhileWpIsLow) {
    for (const bool low : {false, true}) {
        SCOPED_TRACE(low);
        vb::BoardBuilder builder = SlowChip("1", "single");
        builder.Line("net WP F1.WP").Line(low ? "tie WP 0" : "tie WP 1");
        Bench bench(builder);
        bench.bus.Write(0x1000, 0x60);
        bench.bus.Write(0x1000, 0x2F);
        bench.bus.Write(0x1000, 0x60);
        bench.bus.Write(0x1000, 0xD0);
        bench.Wait(20);
        EXPECT_EQ(bench.bus.Read(0x1000), 0x0080u); // no error either way
        bench.bus.Write(0, 0x90);
        EXPECT_EQ(bench.bus.Read(0x1002), low ? 3u : 2u);
        Program(bench, 0x1000, 0x1234);
        bench.Wait(1000);
        EXPECT_EQ(bench.bus.Read(0x1000), low ? 0x0092u : 0x0080u);
    }
}

TEST(IntelLock, FaultLocksABlockDown) {
    Bench bench(SlowChip("1", "single").Line("fault lock-down F1 2"));
    bench.bus.Write(0, 0x90);
    EXPECT_EQ(bench.bus.Read(0x0802), 1u);
    EXPECT_EQ(bench.bus.Read(0x1002), 3u);
}
