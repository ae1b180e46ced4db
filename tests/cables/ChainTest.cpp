// What the program learns of an unknown chain, the same over every cable.
#include "jtag/ChainAnalyzer.h"
#include "tests/cables/CableBench.h"

namespace {

class Chains : public ::testing::TestWithParam<CableCase> {};

// An IDCODE as a number, or -1 for a device in BYPASS.
std::vector<int64_t> Numbers(const std::vector<OmBitVector>& chain) {
    std::vector<int64_t> numbers;
    for (const OmBitVector& entry : chain) {
        std::string digits;
        EXPECT_TRUE(BitsToHex(entry, digits));
        numbers.push_back(entry.size() == 32 ? std::stoll(digits, nullptr, 16) : -1);
    }
    return numbers;
}

struct Analysis {
    explicit Analysis(OpenCable& bench) {
        OmChainAnalyzer analyzer(bench.cablePointer.get());
        found = analyzer.AnalyzeChain(chain, atmelBug);
        captured = analyzer.CaptureChainIr(bits);
    }

    std::vector<OmBitVector> chain;
    bool atmelBug = true;
    bool found = false;
    OmBitVector bits;
    bool captured = false;
};

} // namespace

TEST_P(Chains, IdcodesAndInstructionBitsAreFound) {
    OpenCable bench(GetParam());
    const Analysis analysis(bench);
    EXPECT_TRUE(analysis.found);
    EXPECT_FALSE(analysis.atmelBug);
    EXPECT_EQ(Numbers(analysis.chain), (std::vector<int64_t>{0x1A001F01, 0x1A002F01, 0x1A003F01}));
    EXPECT_TRUE(analysis.captured);
    EXPECT_EQ(BitsToText(analysis.bits), "000100001000001");
}

// 13 devices have more bits than the first passes of the search, and one has no IDCODE.
TEST_P(Chains, LongChainsAreFound) {
    OpenCable bench(GetParam(),
                    vb::BoardBuilder().UnusedBefore(9).Devices(2).UnusedAfter(2).Idcode(4, 0));
    const Analysis analysis(bench);
    EXPECT_TRUE(analysis.found);
    std::vector<int64_t> expected;
    for (int64_t device = 0; device < 13; ++device)
        expected.push_back(device == 4 ? -1 : 0x1A001F01 + 0x1000 * device);
    EXPECT_EQ(Numbers(analysis.chain), expected);
    EXPECT_TRUE(analysis.captured);
    EXPECT_EQ(analysis.bits.size(), 2u * (4 + 5 + 6 + 7 + 8) + 4 + 5 + 6);
}

TEST_P(Chains, DeviceThatMasksTdiIsKnownByItsIdcode) {
    OpenCable bench(GetParam(),
                    ThreeDevices().Idcode(0, 0x0940303F).Line("fault idcode-masks-tdi U1"));
    const Analysis analysis(bench);
    EXPECT_TRUE(analysis.found);
    EXPECT_TRUE(analysis.atmelBug);
    EXPECT_EQ(Numbers(analysis.chain), (std::vector<int64_t>{0x0940303F, 0x1A002F01, 0x1A003F01}));
    EXPECT_TRUE(analysis.captured);
    EXPECT_EQ(BitsToText(analysis.bits), "000100001000001");
}

TEST_P(Chains, DeadTdoLineIsNoChain) {
    for (const char* fault : {"fault tdo-stuck 0", "fault tdo-stuck 1", "fault no-power"}) {
        OpenCable bench(GetParam(), ThreeDevices().Line(fault));
        bench.log.Take();
        const Analysis analysis(bench);
        EXPECT_FALSE(analysis.found) << fault;
        EXPECT_FALSE(analysis.atmelBug) << fault;
        EXPECT_FALSE(analysis.captured) << fault;
        EXPECT_TRUE(
            bench.log.text.ends_with(L"JTAG chain NOT found, checking for Atmel ATmega bug...\n"
                                     L"Received bits are either only ones or only zeros\n"
                                     L"NO JTAG chain found\n"))
            << fault;
    }
}

INSTANTIATE_TEST_SUITE_P(Cables, Chains, ::testing::ValuesIn(kCableCases), NameOfCable);
