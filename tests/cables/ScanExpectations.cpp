#include "tests/cables/ScanExpectations.h"

#include <algorithm>

namespace {

using enum vb::TapState;

// The states that the TAP is in at each TCK on the way to Shift, and the TMS values that it gets
// there.
struct Walk {
    std::vector<vb::TapState> states;
    std::string tms;
};

// By register and start: Test-Logic-Reset, Run-Test/Idle, Pause.
const Walk kToShift[2][3] = {
    {
        {{TestLogicReset, RunTestIdle, SelectDr, CaptureDr}, "0100"},
        {{RunTestIdle, SelectDr, CaptureDr}, "100"},
        {{PauseDr, Exit2Dr}, "10"},
    },
    {
        {{TestLogicReset, RunTestIdle, SelectDr, SelectIr, CaptureIr}, "01100"},
        {{RunTestIdle, SelectDr, SelectIr, CaptureIr}, "1100"},
        {{PauseIr, Exit2Ir}, "10"},
    },
};

// By register and end: Pause, Run-Test/Idle.
const Walk kFromExit1[2][2] = {
    {{{Exit1Dr}, "0"}, {{Exit1Dr, UpdateDr}, "10"}},
    {{{Exit1Ir}, "0"}, {{Exit1Ir, UpdateIr}, "10"}},
};

size_t RowOf(OmScanRegister which) {
    return which == OmScanRegister::Data ? 0 : 1;
}

bool FromPause(const ScanEnds& ends) {
    return ends.from != 0 && ends.from != 1;
}

void AppendWalk(Trace& trace, const Walk& walk, bool tdi) {
    for (size_t i = 0; i < walk.states.size(); ++i)
        trace.push_back({walk.states[i], walk.tms[i] == '1', tdi});
}

OmBitVector NumberBits(uint32_t number) {
    OmBitVector bits;
    for (unsigned i = 0; i < 32; ++i)
        bits.push_back(number >> i & 1);
    return bits;
}

bool Equal(const vb::TckCycle& one, const vb::TckCycle& other) {
    return one.state == other.state && one.tms == other.tms && one.tdi == other.tdi;
}

std::string Describe(const vb::TckCycle& cycle) {
    return std::string(vb::TapStateName(cycle.state)) + " TMS " + (cycle.tms ? "1" : "0") +
           " TDI " + (cycle.tdi ? "1" : "0");
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ScanEnds& ends) {
    return stream << (ends.which == OmScanRegister::Data ? "DR" : "IR") << " from " << ends.from
                  << " to " << ends.to;
}

// TDI is high on all walks but for two: a parallel pod's clock from Exit2-DR, and the FT2232's
// walks after the last bit.
Trace ExpectedTrace(const CableCase& cable, const ScanEnds& ends, const OmBitVector& in) {
    const size_t row = RowOf(ends.which);
    Trace trace;
    AppendWalk(trace, kToShift[row][FromPause(ends) ? 2 : ends.from], true);
    if (cable.family == CableFamily::Parallel && FromPause(ends) &&
        ends.which == OmScanRegister::Data)
        trace.back().tdi = false;
    for (const uint8_t bit : in)
        trace.push_back({row == 0 ? ShiftDr : ShiftIr, false, bit == 1});
    trace.back().tms = true;
    AppendWalk(trace, kFromExit1[row][ends.to == 1 ? 1 : 0], cable.family != CableFamily::Ftd2xx);
    return trace;
}

vb::TapState ExpectedEnd(const ScanEnds& ends) {
    if (ends.to == 1)
        return RunTestIdle;
    return ends.which == OmScanRegister::Data ? PauseDr : PauseIr;
}

std::string FirstDifference(const Trace& seen, const Trace& expected) {
    for (size_t i = 0; i < std::min(seen.size(), expected.size()); ++i)
        if (!Equal(seen[i], expected[i]))
            return "cycle " + std::to_string(i) + ": " + Describe(seen[i]) + " and not " +
                   Describe(expected[i]);
    if (seen.size() == expected.size())
        return "";
    return std::to_string(seen.size()) + " cycles and not " + std::to_string(expected.size());
}

OmBitVector ShiftRegister::Shift(const OmBitVector& in) {
    for (const uint8_t bit : in)
        bits_.push_back(bit == 1 ? 1 : 0);
    const auto out = bits_.begin() + static_cast<ptrdiff_t>(in.size());
    const OmBitVector shifted(bits_.begin(), out);
    bits_.erase(bits_.begin(), out);
    return shifted;
}

ShiftRegister CapturedData() {
    OmBitVector bits = NumberBits(0x1A003F01); // U3 is nearest TDO
    AppendBits(bits, NumberBits(0x1A002F01));
    AppendBits(bits, NumberBits(0x1A001F01));
    return ShiftRegister(bits);
}

ShiftRegister CapturedInstruction() {
    return ShiftRegister(BitsFromText("0001"      // U1
                                      "00001"     // U2
                                      "000001")); // U3
}

OmBitVector Pattern(size_t bits, uint32_t seed) {
    OmBitVector pattern;
    uint32_t state = seed;
    for (size_t i = 0; i < bits; ++i) {
        state = state * 1664525 + 1013904223; // Numerical Recipes' generator
        pattern.push_back(state >> 31);
    }
    return pattern;
}
