// What every cable owes to those above it, the same for all ten: the TAP's walks as the board saw
// them, and every bit that comes back.
#include "jtag/Exception.h"
#include "tests/cables/CableBench.h"
#include "tests/cables/ScanExpectations.h"

#include <numeric>

namespace {

class Conformance : public ::testing::TestWithParam<CableCase> {};

// The FT2232 and the J-Link always read.
class NullResult : public ::testing::TestWithParam<CableCase> {};

// Around every boundary that a cable's encoding has, and to the length of the longest scan that an
// analysis of a chain makes.
std::vector<size_t> Lengths() {
    std::vector<size_t> lengths(40);
    std::iota(lengths.begin(), lengths.end(), 1);
    for (const size_t length : {63,  64,  65,  255,  256,  257,  503,  504,  505,  506,
                                512, 513, 514, 1000, 1009, 2017, 2018, 4108, 4224, 4300})
        lengths.push_back(length);
    return lengths;
}

// Every start but Test-Logic-Reset and Run-Test/Idle is a Pause state, and every end but
// Run-Test/Idle.
std::vector<ScanEnds> EveryEnds() {
    std::vector<ScanEnds> every;
    for (const auto which : {OmScanRegister::Data, OmScanRegister::Instruction})
        for (const int from : {0, 1, 2, 3, -1})
            for (const int to : {0, 1, 2, -1})
                every.push_back({which, from, to});
    return every;
}

void Scan(OmJtagHAL& hal, const ScanEnds& ends, const OmBitVector& in, OmBitVector* out) {
    if (ends.which == OmScanRegister::Data)
        hal.ScanDR(in, out, ends.from, ends.to);
    else
        hal.ScanIR(in, out, ends.from, ends.to);
}

// The TAP reset, then at the start of the scan, and what the chain has in its registers there.
ShiftRegister GoToStart(CableBench& bench, OmJtagHAL& hal, const ScanEnds& ends) {
    hal.ResetTap();
    ShiftRegister chain =
        ends.which == OmScanRegister::Data ? CapturedData() : CapturedInstruction();
    if (ends.from == 0)
        bench.ForceState(vb::TapState::TestLogicReset);
    if (ends.from == 0 || ends.from == 1)
        return chain;
    OmBitVector out;
    const OmBitVector in{1, 0, 1};
    Scan(hal, {ends.which, 1, 0}, in, &out);
    EXPECT_EQ(out, chain.Shift(in));
    return chain;
}

void CheckScan(CableBench& bench, OmJtagHAL& hal, const ScanEnds& ends, size_t length) {
    ShiftRegister chain = GoToStart(bench, hal, ends);
    const OmBitVector in = Pattern(length, static_cast<uint32_t>(length));
    OmBitVector out{9, 9};
    Trace trace;
    bench.Chain().SetTrace(&trace);
    Scan(hal, ends, in, &out);
    bench.Chain().SetTrace(nullptr);
    EXPECT_TRUE(out == chain.Shift(in)) << ends << ", " << length << " bits";
    EXPECT_EQ(FirstDifference(trace, ExpectedTrace(bench.cable, ends, in)), "")
        << ends << ", " << length << " bits";
    EXPECT_EQ(bench.Chain().State(), ExpectedEnd(ends)) << ends << ", " << length << " bits";
}

} // namespace

TEST_P(Conformance, ResetTakesTheTapFromEveryStateThroughResetToIdle) {
    OpenCable bench(GetParam());
    const bool jlink = GetParam().family == CableFamily::JLink;
    const size_t high = jlink ? 31 : 5;
    for (int state = 0; state < vb::kTapStateCount; ++state) {
        bench.ForceState(static_cast<vb::TapState>(state));
        Trace trace;
        bench.Chain().SetTrace(&trace);
        bench.Hal().ResetTap();
        bench.Chain().SetTrace(nullptr);
        EXPECT_EQ(bench.Chain().State(), vb::TapState::RunTestIdle) << state;
        ASSERT_EQ(trace.size(), high + 1) << state;
        for (size_t i = 0; i < trace.size(); ++i) {
            EXPECT_EQ(trace[i].tms, i < high) << state << ", cycle " << i;
            // The J-Link's array holds TDI high for its first eight clocks alone.
            EXPECT_EQ(trace[i].tdi, !jlink || i < 8) << state << ", cycle " << i;
        }
        EXPECT_EQ(trace.back().state, vb::TapState::TestLogicReset) << state;
    }
}

TEST_P(Conformance, ScansFromEveryStartToEveryEnd) {
    OpenCable bench(GetParam());
    for (const ScanEnds& ends : EveryEnds())
        for (const size_t length : {1, 2, 8, 9, 12, 33, 513})
            CheckScan(bench, bench.Hal(), ends, length);
}

TEST_P(Conformance, ScansOfEveryLength) {
    OpenCable bench(GetParam());
    for (const auto which : {OmScanRegister::Data, OmScanRegister::Instruction})
        for (const size_t length : Lengths()) {
            CheckScan(bench, bench.Hal(), {which, 1, 1}, length);
            CheckScan(bench, bench.Hal(), {which, 2, 0}, length);
        }
}

TEST_P(Conformance, ScansFollowEachOtherWithoutAReset) {
    OpenCable bench(GetParam());
    bench.Hal().ResetTap();
    ShiftRegister instruction = CapturedInstruction();
    OmBitVector out;
    const OmBitVector bypass(15, 1);
    bench.Hal().ScanIR(bypass, &out, 1, 1);
    EXPECT_EQ(out, instruction.Shift(bypass));
    for (const size_t length : {1, 7, 8, 9, 64, 600}) {
        const OmBitVector in = Pattern(length, 3);
        ShiftRegister data({0, 0, 0});
        bench.Hal().ScanDR(in, &out, 1, 1);
        EXPECT_EQ(out, data.Shift(in)) << length;
    }
}

TEST_P(Conformance, OnlyExactlyOneIsShiftedAsOne) {
    OpenCable bench(GetParam());
    bench.Hal().ResetTap();
    const OmBitVector in{1, 'X', 'Z', 2, 255, 1, 0, '1', 'X', 1, 3};
    Trace trace;
    OmBitVector out;
    bench.Chain().SetTrace(&trace);
    bench.Hal().ScanDR(in, &out, 1, 1);
    bench.Hal().ScanVectors({{in, true}}, nullptr);
    bench.Hal().ScanIR(in, &out, 1, 1);
    bench.Chain().SetTrace(nullptr);
    std::string shifted;
    for (const vb::TckCycle& cycle : trace)
        if (cycle.state == vb::TapState::ShiftDr || cycle.state == vb::TapState::ShiftIr)
            shifted += cycle.tdi ? '1' : '0';
    EXPECT_EQ(shifted, "10000100010"
                       "10000100010"
                       "10000100010");
}

TEST_P(NullResult, ScanWithoutAResultReadsNothing) {
    OpenCable bench(GetParam());
    for (const size_t length : {1, 8, 9, 513}) {
        const ScanEnds ends{OmScanRegister::Data, 1, 1};
        bench.Hal().ResetTap();
        const uint64_t reads = bench.Reads();
        const OmBitVector in = Pattern(length, 5);
        Trace trace;
        bench.Chain().SetTrace(&trace);
        bench.Hal().ScanDR(in, nullptr, 1, 1);
        bench.Chain().SetTrace(nullptr);
        EXPECT_EQ(bench.Reads(), reads) << length;
        EXPECT_EQ(FirstDifference(trace, ExpectedTrace(bench.cable, ends, in)), "") << length;
    }
}

TEST_P(Conformance, ScanOfNoBitsIsRefusedWithNothingSent) {
    OpenCable bench(GetParam());
    OmBitVector out;
    Trace trace;
    bench.Chain().SetTrace(&trace);
    EXPECT_THROW(bench.Hal().ScanDR({}, &out, 1, 1), OmException);
    EXPECT_THROW(bench.Hal().ScanIR({}, &out, 1, 1), OmException);
    EXPECT_THROW(bench.Hal().ScanVectors({{{}, true}}, nullptr), OmException);
    bench.Chain().SetTrace(nullptr);
    EXPECT_TRUE(trace.empty());
}

INSTANTIATE_TEST_SUITE_P(Cables, Conformance, ::testing::ValuesIn(kCableCases), NameOfCable);

INSTANTIATE_TEST_SUITE_P(Cables, NullResult,
                         ::testing::ValuesIn(CablesThat([](const CableCase& cable) {
                             return cable.family != CableFamily::Ftd2xx &&
                                    cable.family != CableFamily::JLink;
                         })),
                         NameOfCable);
