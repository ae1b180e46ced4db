// Flash chips behind the boundary scan: reads, writes, CFI, and the checker's findings.

#include "tests/virtualboard/Bench.h"

#include <gtest/gtest.h>

using vb_test::Bench;

namespace {

uint64_t Count(const Bench& bench, vb::ViolationKind kind) {
    return bench.board.Violations().Count(kind);
}

} // namespace

TEST(FlashBus, ReadsTheArrayWithEveryStyleOfCells) {
    for (vb::PinStyle style : {vb::PinStyle::SharedControl, vb::PinStyle::Separate}) {
        for (bool disableValue : {false, true}) {
            Bench bench(vb::BoardBuilder().Cells(style).DisableValue(disableValue).Devices(3));
            bench.Chip().SetWord(0x12345, 0xCAFE);
            EXPECT_EQ(bench.bus.Read(0x12345), 0xCAFEu);
            EXPECT_EQ(bench.bus.Read(0x12346), 0xFFFFu);
            EXPECT_EQ(bench.board.Violations().Count(), 0u);
        }
    }
}

TEST(FlashBus, QueryTableOfASixteenBitChip) {
    Bench bench(vb::BoardBuilder().Flash("amd16-64m"));
    bench.bus.Write(0x55, 0x98);

    struct Row {
        uint32_t address, value;
    };

    // Primary code 2, 8 MiB, x16, 32 byte buffer, one region of 128 sectors of 256 * 256 bytes.
    for (const Row& row :
         {Row{0x10, 'Q'}, Row{0x11, 'R'}, Row{0x12, 'Y'}, Row{0x13, 2}, Row{0x14, 0},
          Row{0x15, 0x40}, Row{0x27, 23}, Row{0x28, 1}, Row{0x2A, 5}, Row{0x2C, 1}, Row{0x2D, 127},
          Row{0x2E, 0}, Row{0x2F, 0}, Row{0x30, 1}, Row{0x40, 'P'}})
        EXPECT_EQ(bench.bus.Read(row.address), row.value) << row.address;
    bench.bus.Write(0, 0xF0);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFFu);
}

TEST(FlashBus, QueryTablesWithFaults) {
    struct Case {
        const char *key, *value;
        uint32_t address, expected;
    };

    for (const Case& test : {
             Case{"cfi", "none", 0x10, 0xFFFF},   // the array
             Case{"cfi", "short", 0x15, 0x2D},    // the primary table follows at once
             Case{"cfi", "no-regions", 0x2C, 0},  //
             Case{"cfi", "alternative", 0x17, 2}, //
             Case{"cfi", "alternative", 0x14, 1}, // 0100h: nobody's code
             Case{"primary", "4", 0x13, 4},       //
             Case{"sectors", "8x8K,127x64K", 0x2C, 2},
             Case{"sectors", "8x8K,127x64K", 0x2F, 0x20},
             Case{"sectors", "8x8K,127x64K", 0x31, 126},
             Case{"sectors", "65536x128", 0x2F, 0}, // 0 stands for 128 bytes
             Case{"sectors", "65536x128", 0x2E, 0xFF},
         }) {
        Bench bench(vb::BoardBuilder().Set(test.key, test.value));
        bench.bus.Write(0x55, 0x98);
        EXPECT_EQ(bench.bus.Read(test.address), test.expected) << test.key << " " << test.value;
    }
    Bench bench(vb::BoardBuilder().Line("fault query-byte F1 0x11 0x00"));
    bench.bus.Write(0x55, 0x98);
    EXPECT_EQ(bench.bus.Read(0x10), uint32_t{'Q'});
    EXPECT_EQ(bench.bus.Read(0x11), 0u);
}

TEST(FlashBus, ChipsMayDiffer) {
    Bench bench(vb::BoardBuilder().Chips(2).SetChip(1, "cfi", "none").SetChip(1, "id", "0x1234"));
    bench.bus.Write(0x55, 0x00980098);
    EXPECT_EQ(bench.bus.Read(0x10), 0xFFFF0051u);
    bench.bus.Write(0, 0x00F000F0);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(1), 0x1234227Eu);
}

TEST(FlashBus, CommandAddressesOfANarrowModeAreShifted) {
    Bench bench(vb::BoardBuilder().Flash("amd16-in-x8"));
    bench.bus.Write(0xAA, 0x98);
    EXPECT_EQ(bench.bus.Read(0x20), uint32_t{'Q'});
    EXPECT_EQ(bench.bus.Read(0x22), uint32_t{'R'});
    bench.bus.Write(0, 0xF0);
    bench.bus.AmdCommand(0x90);
    EXPECT_EQ(bench.bus.Read(0), 0x01u);
    EXPECT_EQ(bench.bus.Read(2), 0x7Eu);
}

TEST(FlashBus, ChipsSideBySideOwnTheirLanes) {
    Bench bench(vb::BoardBuilder().Chips(2));
    bench.Chip(0).SetWord(7, 0x1111);
    bench.Chip(1).SetWord(7, 0x2222);
    EXPECT_EQ(bench.bus.Read(7), 0x22221111u);
    bench.bus.Write(0x55, 0x98u << 16); // the high chip alone
    EXPECT_EQ(bench.bus.Read(0x10) >> 16, uint32_t{'Q'});
    EXPECT_EQ(bench.bus.Read(0x10) & 0xFFFF, 0xFFFFu);
}

TEST(FlashBus, InvertedAndTiedChipEnable) {
    for (const vb::BoardBuilder& builder :
         {vb::BoardBuilder().InvertedChipEnable(), vb::BoardBuilder().TiedChipEnable()}) {
        Bench bench(builder);
        bench.Chip().SetWord(3, 0x5A5A);
        EXPECT_EQ(bench.bus.Read(3), 0x5A5Au);
        EXPECT_EQ(bench.board.Violations().Count(), 0u);
    }
}

TEST(FlashBus, StaticResetLowKeepsTheChipSilent) {
    Bench bench(vb::BoardBuilder().StaticReset());
    bench.Chip().SetWord(3, 0x5A5A);
    EXPECT_EQ(bench.bus.Read(3), 0x5A5Au);
    bench.bus.Set("RESET", false);
    bench.bus.Read(3);
    EXPECT_EQ(bench.board.LevelOf("D0").state, vb::NetState::Floating);
}

TEST(FlashBus, PipelinedReadTakesOneScanAWord) {
    Bench bench{vb::BoardBuilder()};
    for (uint32_t i = 0; i < 4; ++i)
        bench.Chip().SetWord(i, 0x100 + i);
    bench.bus.Set("CE", false);
    bench.bus.Set("OE", false);
    bench.bus.SetAddress(0);
    bench.bus.Scan();
    for (uint32_t i = 0; i < 4; ++i) {
        bench.bus.SetAddress(i + 1);
        EXPECT_EQ(bench.bus.Scan(), 0x100 + i);
    }
    EXPECT_EQ(bench.board.TotalBusCycles().reads, 5u);
}

TEST(FlashBus, AddressIsLatchedByTheFallOfWeAndDataByItsRise) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.AmdCommand(0xA0);
    bench.bus.SetAddress(0x100);
    bench.bus.SetData(0x1234);
    bench.bus.Scan();
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", true); // the address and the data go on to what comes next
    bench.bus.SetAddress(0x200);
    bench.bus.SetData(0x0000);
    bench.bus.Scan();
    bench.Wait(100);
    bench.bus.ReleaseData();
    bench.bus.Scan();
    EXPECT_EQ(bench.bus.Read(0x100), 0x1234u);
    EXPECT_EQ(bench.bus.Read(0x200), 0xFFFFu);
}

TEST(Checker, ContentionWhenDataAreDrivenIntoARead) {
    Bench bench{vb::BoardBuilder()};
    bench.Chip().SetWord(0, 0x0000);
    bench.bus.SetData(0x0001);
    bench.bus.Set("CE", false);
    bench.bus.Set("OE", false);
    bench.bus.Scan();
    EXPECT_FALSE(bench.board.LevelOf("D0").high); // the lower transistor wins
    ASSERT_EQ(Count(bench, vb::ViolationKind::Contention), 1u);
    EXPECT_EQ(bench.board.Violations().List()[0].text,
              "net D0 (U2.PD(0)=1, F1.D0=0) is driven to both levels");
    EXPECT_EQ(bench.board.Violations().List()[0].scan, 2u);
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::Contention), 1u); // still the same one
}

TEST(Checker, AddressMayMoveWithTheEndOfAWriteButNotWithin) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.SetData(0x00F0);
    bench.bus.Set("CE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", true);
    bench.bus.SetAddress(1);
    bench.bus.Scan();
    EXPECT_EQ(bench.board.Violations().Count(), 0u);
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    bench.bus.SetAddress(2); // A0 falls, A1 rises
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::AddressChange), 2u);
    EXPECT_EQ(bench.board.Violations().Count(), 2u);
}

TEST(Checker, AddressMustNotMoveWithTheFallOfWe) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.SetData(0x00F0);
    bench.bus.Set("CE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", false);
    bench.bus.SetAddress(4);
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::AddressChange), 1u);
}

TEST(Checker, DataMayComeWithTheFallOfWeButMustHoldBeyondItsRise) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Set("CE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", false);
    bench.bus.SetData(0x00F0);
    bench.bus.Scan();
    EXPECT_EQ(bench.board.Violations().Count(), 0u);
    bench.bus.Set("WE", true);
    bench.bus.SetData(0x00F1);
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::DataChange), 1u);
    EXPECT_EQ(bench.board.Violations().List()[0].text,
              "F1.D0 on net D0 (U2.PD(0)=1) changes in the update that raises WE");
}

TEST(Checker, DataReleasedWhileWeIsLowIsAChange) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Set("CE", false);
    bench.bus.SetData(0x00F0);
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    bench.bus.ReleaseData();
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::DataChange), 16u);
}

TEST(Checker, ReadOfADeadChipFloats) {
    Bench bench(vb::BoardBuilder().Line("fault dead F1"));
    bench.bus.Read(0);
    EXPECT_EQ(Count(bench, vb::ViolationKind::FloatingRead), 16u);
}

TEST(Checker, ReadOverAnOpenPinFloatsUnlessThereIsAPull) {
    Bench open(vb::BoardBuilder().Line("fault open-data F1 3"));
    open.bus.Read(0);
    EXPECT_EQ(Count(open, vb::ViolationKind::FloatingRead), 1u);
    Bench pulled(vb::BoardBuilder().Line("fault open-data F1 3").Line("pull D3 down"));
    EXPECT_EQ(pulled.bus.Read(0), 0xFFF7u);
    EXPECT_EQ(Count(pulled, vb::ViolationKind::FloatingRead), 0u);
}

TEST(Checker, WriteWithReleasedDataFloats) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Set("CE", false);
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    bench.bus.Set("WE", true);
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::FloatingInput), 16u);
}

TEST(Checker, ReleasedAddressLineFloats) {
    Bench bench(vb::BoardBuilder().Cells(vb::PinStyle::Separate));
    bench.bus.Set("CE", false);
    bench.bus.Set("OE", false);
    bench.bus.Release("A4");
    bench.bus.Scan();
    EXPECT_EQ(Count(bench, vb::ViolationKind::FloatingInput), 1u);
}

TEST(Checker, CoreLogicReleasedInMidCycle) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Set("CE", false);
    bench.bus.Set("WE", false);
    bench.bus.SetData(0x00F0);
    bench.bus.Scan();
    bench.pod.ResetTap();
    EXPECT_EQ(Count(bench, vb::ViolationKind::CoreReleased), 2u); // both devices let go
    EXPECT_EQ(bench.board.Violations().List()[0].text,
              "F1: the core logic of U1 gets its pins in the middle of a write cycle");
}

TEST(Checker, ControlLinesThatFloatAgainstEachOther) {
    // U1 (left) has CE and WE, U2 has OE. The other one than that of the low line goes to HIGHZ.
    struct Case {
        const char *low, *instructions;
    };

    for (const Case& test : {Case{"OE", "010000000"}, Case{"CE", "000000100"}}) {
        Bench bench{vb::BoardBuilder()};
        bench.bus.Set(test.low, false);
        bench.bus.Scan();
        bench.pod.ScanIr(test.instructions);
        EXPECT_EQ(Count(bench, vb::ViolationKind::FloatingInput), 1u) << test.low;
        EXPECT_EQ(Count(bench, vb::ViolationKind::CoreReleased), 0u) << test.low;
    }
}

TEST(Checker, HighZInMidCycleIsNoWorkOfTheCore) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Set("CE", false);
    bench.bus.Set("OE", false);
    bench.bus.Scan();
    bench.pod.ScanIr("010000000");
    EXPECT_EQ(Count(bench, vb::ViolationKind::CoreReleased), 0u);
}

TEST(Checker, CoreLogicReleasedFromAnIdleBusIsFine) {
    Bench bench{vb::BoardBuilder()};
    bench.bus.Read(0);
    bench.bus.Set("CE", true);
    bench.bus.Scan();
    bench.pod.ResetTap();
    EXPECT_EQ(bench.board.Violations().Count(), 0u);
}

// A write whose address line A4 nobody drives.
TEST(Checker, FindingTellsTheDataOfItsCycle) {
    Bench bench(vb::BoardBuilder().Cells(vb::PinStyle::Separate));
    bench.bus.Set("CE", false);
    bench.bus.Release("A4");
    bench.bus.SetData(0x1234);
    bench.bus.Set("WE", false);
    bench.bus.Scan();
    ASSERT_EQ(Count(bench, vb::ViolationKind::FloatingInput), 1u);
    EXPECT_EQ(bench.board.Violations().List()[0].data, 0x1234u);
}

TEST(Checker, WhatIsToleratedIsNotCounted) {
    vb::Checker checker;
    checker.Tolerate([](const vb::Violation& violation) { return violation.data == 0x50; });
    const vb::Violation harmless{vb::ViolationKind::FloatingInput, 1, "F1.A0 floats", 0x50};
    const vb::Violation harmful{vb::ViolationKind::FloatingInput, 2, "F1.A0 floats", 0x20};
    checker.Report(harmless);
    checker.Report(harmful);
    EXPECT_EQ(checker.Count(), 1u);
    EXPECT_EQ(checker.Count(vb::ViolationKind::FloatingInput), 1u);
    ASSERT_EQ(checker.List().size(), 1u);
    EXPECT_EQ(checker.List()[0].scan, 2u);
    checker.Clear();
    checker.Report(harmless);
    EXPECT_EQ(checker.Count(), 0u);
}
