#include "flash/BusCycleBatch.h"

#include "jtag/Exception.h"
#include "tests/flash/FlashBench.h"
#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

TEST(BusCycleBatch, WriteCycleIsTwoScansAndEndsWithTheNextOne) {
    FlashBench bench;
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(0x12345, 0x6789);
    batch.AppendRise();
    batch.Run();
    EXPECT_EQ(bench.TakeLog(), R"(
write
  12345 ZZZZ 0 1 1
  12345 6789 0 1 0
  12345 6789 0 1 1
)");
}

TEST(BusCycleBatch, ReadCycleBringsItsDataBackWithTheSecondScan) {
    FlashBench bench;
    bench.cable.flash = [](const BenchPins& pins) { return pins.oe ? 0xBAD0u : pins.address; };
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.SetWE(1);
    batch.SetAddress(0x2345);
    batch.AppendReadPulse();
    OmCapturedList captured;
    batch.RunForCapture(captured);
    EXPECT_EQ(bench.TakeLog(), R"(
write and read
  02345 ZZZZ 0 0 1
  02345 ZZZZ 0 1 1 r
)");
    ASSERT_EQ(captured.size(), 1u);
    EXPECT_EQ(bench.bus.DecodeDataWord(captured[0]), 0x2345u);
}

TEST(BusCycleBatch, ValuesWiderThanTheBusFallAway) {
    FlashBench bench({.addressPins = 8, .wordSize = 1});
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(0x55555555, OnAllLanes(0x90));
    batch.Run();
    EXPECT_EQ(bench.TakeLog(), R"(
write
  55 ZZ 0 1 1
  55 90 0 1 0
)");
}

TEST(BusCycleBatch, CommandByteStandsOnAllLanes) {
    EXPECT_EQ(OnAllLanes(0x90), 0x90909090u);
    EXPECT_EQ(OnAllLanes(0xFF), 0xFFFFFFFFu);
    EXPECT_EQ(OnAllLanes(0), 0u);
}

TEST(BusCycleBatch, ClearKeepsTheLevels) {
    FlashBench bench;
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(0x12345, 0x6789);
    batch.Clear();
    EXPECT_TRUE(batch.scans.empty());
    batch.AppendIdle(2);
    batch.Run();
    EXPECT_EQ(bench.TakeLog(), R"(
write
  12345 6789 0 1 0
  12345 6789 0 1 0
)");
}

TEST(BusCycleBatch, OnlyDirtySignalsReachTheImage) {
    FlashBench bench;
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(0x12345, 0x6789);
    EXPECT_EQ(batch.dirty, 0u);
    batch.pins.weLevel = 1; // not marked
    batch.AppendScan(false);
    EXPECT_EQ(batch.scans[2].bits, batch.scans[1].bits);
    batch.SetWE(1);
    EXPECT_EQ(batch.dirty, PinStateWE);
}

TEST(BusCycleBatch, StaticPinsHoldTheirLevelInEveryScan) {
    FlashBench bench({.addressPins = 2, .wordSize = 1});
    bench.setup.addressPins.resize(1);
    bench.setup.staticPins = {MakeStaticPin(0, "A", 0)};
    bench.setup.staticPins[0].PortIndex = 1; // the pin of A1, whose safe value counts as 1
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(1, 0x55);
    batch.AppendRise();
    for (const OmScanVector& scan : batch.scans)
        EXPECT_EQ(scan.bits[kBenchAddress + 1], 0);
}

TEST(BusCycleBatch, CableThatReturnsTooFewCapturesIsAnInvalidBitSequence) {
    struct ShortCable : BenchCable {
        using BenchCable::BenchCable;

        void ScanVectors(const OmScanList&, OmCapturedList* captured) override {
            captured->clear();
        }
    };

    FlashBench bench;
    ShortCable cable{BenchShape{}};
    bench.analyzer.SetCable(&cable);
    EXPECT_THROW(bench.bus.DriveBusIdle(), OmException);
}
