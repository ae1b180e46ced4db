#include "jtag/ChainAnalyzer.h"
#include "tests/jtag/ChainDouble.h"
#include "tests/jtag/LogCollector.h"

#include <gtest/gtest.h>

TEST(ChainAnalyzer, CapturesTheIrBitsBeforeTheMarkerAndLogsNothing) {
    ChainDouble cable;
    cable.ir = Registers("0101");
    OmChainAnalyzer analyzer(&cable);
    LogCollector log;
    OmBitVector captured{1, 1, 1};
    EXPECT_TRUE(analyzer.CaptureChainIr(captured));
    EXPECT_EQ(captured, (OmBitVector{1, 0, 1, 0}));
    EXPECT_EQ(log.text, L"");
    EXPECT_EQ(cable.resets, 1);
}

TEST(ChainAnalyzer, IrScanIsTheMarkerTextBefore64Ones) {
    ChainDouble cable;
    cable.ir = Registers("01");
    OmChainAnalyzer analyzer(&cable);
    OmBitVector captured;
    ASSERT_TRUE(analyzer.CaptureChainIr(captured));
    ASSERT_EQ(Sizes(cable.irScans), (std::vector<size_t>{192}));
    const OmBitVector& scan = cable.irScans[0];
    EXPECT_EQ(BitsToText(OmBitVector(scan.begin(), scan.begin() + 16), OmBitOrder::LowestFirst),
              "0010101010000110"); // 'T' 0x54, 'a' 0x61
    EXPECT_EQ(
        BitsToText(OmBitVector(scan.begin() + 120, scan.begin() + 128), OmBitOrder::LowestFirst),
        "10100110"); // 'e' 0x65
    EXPECT_EQ(OmBitVector(scan.begin() + 128, scan.end()), OmBitVector(64, 1));
}

TEST(ChainAnalyzer, IrSearchGoesUpTo4096) {
    ChainDouble cable;
    cable.ir = [](const OmBitVector& in) {
        OmBitVector out(in.size(), 0);
        out[3] = 1;
        return out;
    };
    OmChainAnalyzer analyzer(&cable);
    OmBitVector captured;
    EXPECT_FALSE(analyzer.CaptureChainIr(captured));
    EXPECT_EQ(Sizes(cable.irScans), (std::vector<size_t>{192, 256, 384, 640, 1152, 2176, 4224}));
    EXPECT_EQ(cable.resets, 7);
}

TEST(ChainAnalyzer, FlatIrCaptureEndsOnThePassWith512) {
    for (const uint8_t level : {0, 1}) {
        ChainDouble cable;
        cable.ir = Stuck(level);
        OmChainAnalyzer analyzer(&cable);
        OmBitVector captured;
        EXPECT_FALSE(analyzer.CaptureChainIr(captured));
        EXPECT_EQ(Sizes(cable.irScans), (std::vector<size_t>{192, 256, 384, 640}));
    }
}

TEST(ChainAnalyzer, IrMarkerAtIndexZeroDoesNotCount) {
    ChainDouble cable;
    cable.ir = Registers("");
    OmChainAnalyzer analyzer(&cable);
    OmBitVector captured;
    EXPECT_FALSE(analyzer.CaptureChainIr(captured));
    EXPECT_EQ(cable.irScans.size(), 7U);
}

TEST(ChainAnalyzer, LoadsInstructionsNearestTdoFirst) {
    ChainDouble cable;
    cable.ir = Stuck(0);
    OmChainAnalyzer analyzer(&cable);
    analyzer.devices.resize(3);
    analyzer.devices[0].irLength = 4;
    analyzer.devices[0].codes[1] = {1, 0, 0, 0}; // code 2
    analyzer.devices[1].irLength = 2;
    analyzer.devices[2].irLength = 3;
    analyzer.devices[2].codes[3] = {0, 1, 0}; // code 4
    const int kinds[] = {kInstructionPreload, kInstructionBypass, kInstructionExtest};
    EXPECT_TRUE(analyzer.LoadInstructions(kinds));
    EXPECT_EQ(cable.irScans, (std::vector<OmBitVector>{{0, 1, 0, 1, 1, 1, 0, 0, 0}}));
    EXPECT_EQ(cable.resets, 0);
}

TEST(ChainAnalyzer, InstructionCodes1And3AreReachedToo) {
    ChainDouble cable;
    cable.ir = Stuck(0);
    OmChainAnalyzer analyzer(&cable);
    analyzer.devices.resize(2);
    analyzer.devices[0].irLength = 2;
    analyzer.devices[0].codes[0] = {1, 0};
    analyzer.devices[1].irLength = 2;
    analyzer.devices[1].codes[2] = {0, 0};
    EXPECT_TRUE(analyzer.LoadInstructions(std::vector<int>{1, 3}));
    EXPECT_EQ(cable.irScans, (std::vector<OmBitVector>{{0, 0, 1, 0}}));
}

TEST(ChainAnalyzer, InstructionOfAnotherKindAppendsNothing) {
    ChainDouble cable;
    cable.ir = Stuck(0);
    OmChainAnalyzer analyzer(&cable);
    analyzer.devices.resize(3);
    for (OmChainDeviceIr& device : analyzer.devices)
        device.irLength = 2;
    EXPECT_TRUE(analyzer.LoadInstructions(std::vector<int>{-1, 0, 5}));
    EXPECT_EQ(cable.irScans, (std::vector<OmBitVector>{{1, 1}}));
}

TEST(ChainAnalyzer, LoadInstructionsRefusesWhatItCannotPlace) {
    ChainDouble cable;
    OmChainAnalyzer analyzer(&cable);
    EXPECT_FALSE(analyzer.LoadInstructions({})) << "empty table";
    analyzer.devices.resize(2);
    analyzer.devices[0].irLength = 4;
    EXPECT_FALSE(analyzer.LoadInstructions(std::vector<int>{0, 0})) << "unknown length";
    for (const uint32_t absurd : {0xFFFFFFFEU, 0x80000000U, 1000000000U, 0x00100000U}) {
        analyzer.devices[1].irLength = absurd;
        EXPECT_FALSE(analyzer.LoadInstructions(std::vector<int>{0, 0})) << absurd;
    }
    analyzer.devices[1].irLength = 4;
    EXPECT_FALSE(analyzer.LoadInstructions(std::vector<int>{0})) << "too few kinds";
    EXPECT_TRUE(cable.irScans.empty());
}

TEST(ChainAnalyzer, NewTableEntriesAreUnknown) {
    const OmChainDeviceIr entry;
    EXPECT_EQ(entry.irLength, 0xFFFFFFFFU);
    EXPECT_EQ(entry.second, -1);
    for (const OmBitVector& code : entry.codes)
        EXPECT_TRUE(code.empty());
}

TEST(ChainAnalyzer, ForwardsToTheHal) {
    ChainDouble cable;
    cable.dr = Registers("1");
    OmChainAnalyzer analyzer(&cable);
    analyzer.ResetTap();
    EXPECT_EQ(cable.resets, 1);
    OmBitVector out;
    analyzer.ScanDR({0, 1}, out);
    EXPECT_EQ(out, (OmBitVector{1, 0}));
    OmCapturedList captured;
    analyzer.ScanVectors({{{1, 0}, true}}, &captured);
    ASSERT_EQ(cable.batches.size(), 1U);
    EXPECT_EQ(cable.batches[0][0].bits, (OmBitVector{1, 0}));
    EXPECT_EQ(captured, (OmCapturedList{{1}}));
    EXPECT_EQ(analyzer.GetFrequency(), 1400000U);
    float reading = 0;
    analyzer.GetVectorsPerTransfer(10, &reading, nullptr, nullptr);
    EXPECT_EQ(reading, -1.0F);
}

TEST(ChainAnalyzer, AnotherCableKeepsTheInstructionTable) {
    ChainDouble first;
    ChainDouble second;
    OmChainAnalyzer analyzer(&first);
    EXPECT_EQ(analyzer.hal, first.GetJtagHAL());
    analyzer.devices.resize(2);
    analyzer.SetCable(&second);
    EXPECT_EQ(analyzer.hal, second.GetJtagHAL());
    EXPECT_EQ(analyzer.devices.size(), 2U);
    analyzer.SetCable(nullptr);
    EXPECT_EQ(analyzer.hal, nullptr);
    EXPECT_EQ(OmChainAnalyzer(nullptr).hal, nullptr);
}
