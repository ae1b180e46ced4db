#include "jtag/ChainAnalyzer.h"

#include "jtag/Exception.h"
#include "tests/jtag/ChainDouble.h"
#include "tests/jtag/LogCollector.h"

#include <gtest/gtest.h>

namespace {

// IDCODE 0x4BA00477, and 0x0978203F with Atmel's manufacturer field 0x01F.
constexpr char kIdcodeA[] = "01001011101000000000010001110111";
constexpr char kIdcodeAtmel[] = "00001001011110000010000000111111";

std::wstring Repeat(const std::wstring& text, int count) {
    std::wstring result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// Eight lines of 32 zeros and one of 12: the 256-bit filler after a 12-bit head.
const std::wstring kZeros20 = L"00000000000000000000";
const std::wstring kZeros32 = L"00000000000000000000000000000000";
const std::wstring kSent268 =
    L"111111110000" + kZeros20 + L"+\n" + Repeat(kZeros32 + L"+\n", 7) + L"000000000000\n";

struct Analysis {
    explicit Analysis(ChainDouble& cable) {
        OmChainAnalyzer analyzer(&cable);
        LogCollector collector;
        result = analyzer.AnalyzeChain(chain, atmelBug);
        log = collector.text;
    }

    bool Says(const std::wstring& line) const { return log.find(line) != std::wstring::npos; }

    bool EndsWith(const std::wstring& lines) const { return log.ends_with(lines); }

    std::vector<OmBitVector> chain;
    bool atmelBug = true; // must be cleared on entry
    bool result = false;
    std::wstring log;
};

} // namespace

TEST(ChainAnalyzer, FindsIdcodeAndBypassNearestTdiFirst) {
    ChainDouble cable;
    cable.dr = Registers(std::string(kIdcodeA) + "0"); // the BYPASS bit comes out first
    const Analysis run(cable);
    EXPECT_TRUE(run.result);
    EXPECT_FALSE(run.atmelBug);
    EXPECT_EQ(run.chain, (std::vector<OmBitVector>{BitsFromText(kIdcodeA), {0}}));
    EXPECT_EQ(cable.resets, 1);
}

TEST(ChainAnalyzer, FirstScanIsTheMarkerBefore256Zeros) {
    ChainDouble cable;
    cable.dr = Registers("0");
    const Analysis run(cable);
    ASSERT_EQ(Sizes(cable.drScans), (std::vector<size_t>{268}));
    OmBitVector expected{1, 1, 1, 1, 1, 1, 1, 1};
    expected.resize(268, 0);
    EXPECT_EQ(cable.drScans[0], expected);
}

TEST(ChainAnalyzer, LogsEveryStepOfASuccessfulAnalysis) {
    ChainDouble cable;
    cable.dr = Registers(std::string(kIdcodeA) + "0");
    const Analysis run(cable);
    // 33 register bits, the marker, and what of the filler is left.
    const std::wstring received = L"01110111000100000000001011101001+\n"
                                  L"011111111" +
                                  kZeros20 + L"000+\n" + Repeat(kZeros32 + L"+\n", 6) +
                                  L"000000000000\n";
    EXPECT_EQ(run.log, L"Analyzing the JTAG chain...\n"
                       L"TAP reset\n"
                       L"Scan DR...\n"
                       L"Bits to be shifted in:\n" +
                           kSent268 + L"Bits shifted out:\n" + received +
                           L"End marker found\n"
                           L"JTAG chain found, captured DR bits:\n"
                           L"01110111000100000000001011101001+\n"
                           L"0\n"
                           L"BYPASS register\n"
                           L"IDCODE register\n"
                           L"11101110001000000000010111010010\n"
                           L"Chain succesfully analyzed\n");
}

TEST(ChainAnalyzer, SingleBypassDeviceIsOneEntryOfOneZero) {
    ChainDouble cable;
    cable.dr = Registers("0");
    const Analysis run(cable);
    EXPECT_TRUE(run.result);
    EXPECT_EQ(run.chain, (std::vector<OmBitVector>{{0}}));
}

TEST(ChainAnalyzer, LongerChainsTakeLongerFillers) {
    ChainDouble cable;
    cable.dr = Registers(std::string(300, '0'));
    const Analysis run(cable);
    EXPECT_TRUE(run.result);
    EXPECT_EQ(run.chain.size(), 300U);
    EXPECT_EQ(Sizes(cable.drScans), (std::vector<size_t>{268, 524}));
    EXPECT_EQ(cable.resets, 2);
}

TEST(ChainAnalyzer, ChainOf4096BitsIsTheLongestFound) {
    ChainDouble cable;
    std::string content; // 128 IDCODEs, so that the tail is never flat
    for (int i = 0; i < 128; ++i)
        content += kIdcodeA;
    cable.dr = Registers(content);
    const Analysis run(cable);
    EXPECT_TRUE(run.result);
    EXPECT_EQ(run.chain.size(), 128U);
    EXPECT_EQ(Sizes(cable.drScans), (std::vector<size_t>{268, 524, 1036, 2060, 4108}));
}

TEST(ChainAnalyzer, ChainOf4097BitsIsNotFound) {
    ChainDouble cable;
    std::string content = "0";
    for (int i = 0; i < 128; ++i)
        content += kIdcodeA;
    cable.dr = Registers(content);
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_EQ(cable.drScans.size(), 5U);
    EXPECT_TRUE(run.EndsWith(L"BYPASS register\nIDCODE register\n")); // then a cut marker
}

TEST(ChainAnalyzer, StuckTdoEndsOnThePassWith512) {
    for (const uint8_t level : {0, 1}) {
        ChainDouble cable;
        cable.dr = Stuck(level);
        const Analysis run(cable);
        EXPECT_FALSE(run.result);
        EXPECT_FALSE(run.atmelBug);
        EXPECT_EQ(Sizes(cable.drScans), (std::vector<size_t>{268, 524}));
        EXPECT_TRUE(run.EndsWith(L"Checking for all bits are either ones or zeros...\n"
                                 L"Last 500 bits we received are either only ones or only zeros\n"
                                 L"JTAG chain NOT found, checking for Atmel ATmega bug...\n"
                                 L"Received bits are either only ones or only zeros\n"
                                 L"NO JTAG chain found\n"))
            << static_cast<int>(level);
    }
}

TEST(ChainAnalyzer, TailIsCheckedOnceOnly) {
    ChainDouble cable;
    cable.dr = [](const OmBitVector& in) { // alternating: never flat, never the marker
        OmBitVector out(in.size());
        for (size_t i = 0; i < out.size(); ++i)
            out[i] = i % 2;
        return out;
    };
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_EQ(cable.drScans.size(), 5U);
    const std::wstring line = L"Checking for all bits are either ones or zeros...\n";
    const size_t first = run.log.find(line);
    ASSERT_NE(first, std::wstring::npos);
    EXPECT_EQ(run.log.find(line, first + 1), std::wstring::npos);
    EXPECT_FALSE(run.Says(L"Last 500 bits"));
}

TEST(ChainAnalyzer, TailOf499EqualBitsIsNotFlat) {
    ChainDouble cable;
    cable.dr = [](const OmBitVector& in) {
        OmBitVector out(in.size(), 0);
        if (out.size() > 500)
            out[out.size() - 500] = 1;
        return out;
    };
    const Analysis run(cable);
    EXPECT_EQ(cable.drScans.size(), 5U);
}

TEST(ChainAnalyzer, OneTooNearTheEndMeansNoChainAndNoFurtherLine) {
    ChainDouble cable;
    cable.dr = Registers("0000000000000000000000000000001");
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_TRUE(run.EndsWith(L"IDCODE register\n"));
    EXPECT_FALSE(run.Says(L"NO JTAG chain found\n"));
}

TEST(ChainAnalyzer, CutIdcodeLeavesTheRegistersCollectedSoFar) {
    ChainDouble cable;
    cable.dr = Registers("1000"); // three BYPASS bits come out first
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_EQ(run.chain, (std::vector<OmBitVector>{{0}, {0}, {0}}));
}

TEST(ChainAnalyzer, MarkerAtIndexZeroDoesNotCount) {
    ChainDouble cable;
    cable.dr = Registers("");
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_FALSE(run.atmelBug);
    EXPECT_EQ(Sizes(cable.drScans), (std::vector<size_t>{268, 524}));
    ASSERT_EQ(run.chain.size(), 493U); // a group of 32, then 492 zeros
    EXPECT_EQ(run.chain.front(), OmBitVector{0});
    EXPECT_EQ(BitsToText(run.chain.back()), "00000000000000000000000011111111");
    EXPECT_TRUE(run.Says(L"JTAG chain NOT found, checking for Atmel ATmega bug...\n"
                         L"Received bits have both ones and zeros\n"
                         L"IDCODE register\n"
                         L"11111111000000000000000000000000\n"
                         L"BYPASS register\n"));
    EXPECT_TRUE(run.EndsWith(L"BYPASS register\n"
                             L"Some idcode(s) collected\n"
                             L"NO JTAG chain found\n"));
}

TEST(ChainAnalyzer, AtmegaNearestTdiIsFoundAtEntryZero) {
    ChainDouble cable;
    cable.dr = Masked(std::string(kIdcodeAtmel) + "0" + kIdcodeA, 1);
    const Analysis run(cable);
    EXPECT_TRUE(run.result);
    EXPECT_TRUE(run.atmelBug);
    EXPECT_EQ(run.chain,
              (std::vector<OmBitVector>{BitsFromText(kIdcodeAtmel), {0}, BitsFromText(kIdcodeA)}));
    EXPECT_TRUE(run.EndsWith(L"JTAG chain NOT found, checking for Atmel ATmega bug...\n"
                             L"Received bits have both ones and zeros\n"
                             L"IDCODE register\n"
                             L"11101110001000000000010111010010\n"
                             L"BYPASS register\n"
                             L"IDCODE register\n"
                             L"11111100000001000001111010010000\n"
                             L"IDCODE register\n" // the group of ones that ends the walk
                             L"Some idcode(s) collected\n"
                             L"JTAG chain contains buggy Atmel ATmega\n"));
}

TEST(ChainAnalyzer, MaskingDeviceOfAnotherMakerIsNoChain) {
    ChainDouble cable;
    cable.dr = Masked(kIdcodeA, 1);
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_FALSE(run.atmelBug);
    EXPECT_EQ(run.chain, (std::vector<OmBitVector>{BitsFromText(kIdcodeA)}));
    EXPECT_TRUE(run.EndsWith(L"Some idcode(s) collected\n"
                             L"NO JTAG chain found\n"));
}

TEST(ChainAnalyzer, OnesFirstCollectNothing) {
    ChainDouble cable;
    cable.dr = [](const OmBitVector& in) { // 32 ones and then a level that is not the tail's
        OmBitVector out(in.size(), 0);
        std::fill_n(out.begin(), 32, 1);
        return out;
    };
    // The marker's eight ones and four zeros stand inside at index 24, so hide them from the
    // search.
    cable.dr = [](const OmBitVector& in) {
        OmBitVector out(in.size(), 1);
        out[40] = 0;
        return out;
    };
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_TRUE(run.chain.empty());
    EXPECT_TRUE(run.EndsWith(L"Received bits have both ones and zeros\n"
                             L"IDCODE register\n"
                             L"NO JTAG chain found\n"));
}

TEST(ChainAnalyzer, CutIdcodeInTheAtmelCheckIsFalseWithoutAnotherLine) {
    ChainDouble cable;
    cable.dr = [](const OmBitVector& in) {
        OmBitVector out(in.size(), 0);
        out[out.size() - 10] = 1;
        return out;
    };
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_TRUE(run.EndsWith(L"IDCODE register\n"));
    EXPECT_FALSE(run.Says(L"NO JTAG chain found\n"));
}

TEST(ChainAnalyzer, IdcodeWithoutItsOneReadsAsBypassAndGarbage) {
    ChainDouble cable;
    cable.dr = Registers("00000000000000000000000000000010"); // bit 1 set, bit 0 clear
    const Analysis run(cable);
    EXPECT_FALSE(run.result);
    EXPECT_EQ(run.chain, (std::vector<OmBitVector>{{0}}));
    EXPECT_TRUE(run.EndsWith(L"BYPASS register\nIDCODE register\n"));
}

TEST(ChainAnalyzer, OldChainIsForgotten) {
    ChainDouble cable;
    cable.dr = Registers("0");
    OmChainAnalyzer analyzer(&cable);
    std::vector<OmBitVector> chain{{1}, {1}, {1}};
    bool atmelBug = true;
    EXPECT_TRUE(analyzer.AnalyzeChain(chain, atmelBug));
    EXPECT_EQ(chain, (std::vector<OmBitVector>{{0}}));
    EXPECT_FALSE(atmelBug);
}

TEST(ChainAnalyzer, ExceptionsOfTheCablePassThrough) {
    ChainDouble cable;
    cable.dr = cable.ir = [](const OmBitVector&) -> OmBitVector { throw OmException(L"gone"); };
    OmChainAnalyzer analyzer(&cable);
    std::vector<OmBitVector> chain;
    bool atmelBug = false;
    OmBitVector captured;
    EXPECT_THROW(analyzer.AnalyzeChain(chain, atmelBug), OmException);
    EXPECT_THROW(analyzer.CaptureChainIr(captured), OmException);
}
