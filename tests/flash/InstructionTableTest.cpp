#include "flash/InstructionTable.h"

#include "jtag/ChainAnalyzer.h"
#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

namespace {

OmChainDevice WithCodes(const std::vector<std::pair<const char*, const char*>>& codes) {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "dev";
    for (const auto& [name, code] : codes)
        data->AddInstructionCode(name, code);
    OmChainDevice device;
    device.SetBsdl(std::move(data), "");
    return device;
}

std::vector<OmChainDeviceIr> Fill(const std::vector<OmChainDevice>& devices) {
    OmChainAnalyzer analyzer(nullptr);
    analyzer.devices.resize(7); // of an earlier connection
    FillInstructionTable(devices, analyzer);
    return analyzer.devices;
}

} // namespace

TEST(InstructionTable, HoldsPreloadAndExtestOfEachDevice) {
    const auto table = Fill({MakeDevice("a", 1, {}), MakeDevice("b", 1, {})});
    ASSERT_EQ(table.size(), 2u);
    EXPECT_EQ(table[1].irLength, 4u);
    EXPECT_EQ(table[1].second, -1);
    EXPECT_TRUE(table[1].codes[0].empty());
    EXPECT_EQ(BitsToText(table[1].codes[1]), "0010");
    EXPECT_TRUE(table[1].codes[2].empty());
    EXPECT_EQ(BitsToText(table[1].codes[3]), "0000");
}

TEST(InstructionTable, SampleStandsInForPreload) {
    const auto table = Fill({WithCodes({{"EXTEST", "000"}, {"SAMPLE", "011"}})});
    EXPECT_EQ(BitsToText(table[0].codes[1]), "011");
}

TEST(InstructionTable, FirstOpcodeCountsAndItsOpenBitsBecomeOne) {
    const auto table = Fill({WithCodes({{"EXTEST", "0X0Z"}, {"EXTEST", "1111"}})});
    EXPECT_EQ(BitsToText(table[0].codes[3]), "0101");
    EXPECT_TRUE(table[0].codes[1].empty()) << "neither PRELOAD nor SAMPLE";
}

TEST(InstructionTable, IrLengthIsTakenFromWhoeverKnowsIt) {
    OmChainDevice captured;
    captured.resolvedIRLen = 5;
    captured.IRLen = 6;
    OmChainDevice entered;
    entered.IRLen = 6;
    OmChainDevice unknown;
    unknown.IRLen = 1;
    const auto table = Fill({captured, entered, unknown});
    EXPECT_EQ(table[0].irLength, 5u);
    EXPECT_EQ(table[1].irLength, 6u);
    EXPECT_EQ(table[2].irLength, kUnknownIrLength);
    EXPECT_TRUE(table[0].codes[3].empty());
}
