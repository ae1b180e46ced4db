#include "jtag/ChainAnalyzer.h"

#include "jtag/Exception.h"
#include "tests/jtag/LogCollector.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

// A chain as its two ends see it: what TDO gives for a run of bits at TDI after a TAP reset.
class ChainDouble : public OmCable, public OmJtagHAL {
  public:
    using Answer = std::function<OmBitVector(const OmBitVector&)>;

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override { ++resets; }

    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override {
        batches.push_back(vectors);
        if (captured)
            *captured = {{1}};
    }

    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override {
        EXPECT_EQ(from, 1);
        EXPECT_EQ(to, 1);
        drScans.push_back(in);
        *out = dr(in);
    }

    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override {
        EXPECT_EQ(from, 1);
        EXPECT_EQ(to, 1);
        irScans.push_back(in);
        *out = ir(in);
    }

    uint32_t GetFrequency() override { return 1400000; }

    Answer dr;
    Answer ir;
    int resets = 0;
    std::vector<OmBitVector> drScans;
    std::vector<OmBitVector> irScans;
    std::vector<OmScanList> batches;
};

// Registers with this content, the first to come out at the right as in a number.
ChainDouble::Answer Registers(const std::string& content) {
    return [content](const OmBitVector& in) {
        OmBitVector out = BitsFromText(content);
        AppendBits(out, in);
        out.resize(in.size());
        return out;
    };
}

// Registers whose far end does not see TDI: what follows them is all of one level.
ChainDouble::Answer Masked(const std::string& content, uint8_t level) {
    return [content, level](const OmBitVector& in) {
        OmBitVector out = BitsFromText(content);
        out.resize(in.size(), level);
        return out;
    };
}

ChainDouble::Answer Stuck(uint8_t level) {
    return Masked("", level);
}

size_t FillerOf(const OmBitVector& scan, size_t markerLength) {
    return scan.size() - markerLength;
}

std::vector<size_t> Sizes(const std::vector<OmBitVector>& scans) {
    std::vector<size_t> sizes;
    for (const OmBitVector& scan : scans)
        sizes.push_back(scan.size());
    return sizes;
}

// IDCODE 0x4BA00477, and 0x0978203F with Atmel's manufacturer field 0x01F.
constexpr char kIdcodeA[] = "01001011101000000000010001110111";
constexpr char kIdcodeAtmel[] = "00001001011110000010000000111111";

std::wstring Repeat(const std::wstring& text, int count) {
    std::wstring result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// Eight lines of 32 zeros and one of 12: the 256-bit filler behind a 12-bit head.
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
    EXPECT_EQ(FillerOf(scan, 128), 64U);
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
