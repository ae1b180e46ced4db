// The walks through the TAP state machine (IEEE 1149.1, 6.1) that every cable makes, each cable
// encoding them in the form its hardware takes.
#pragma once

#include "jtag/Cable.h"

#include <cstdint>

// TMS values, one a TCK; the first one is bit 0.
struct OmTapPath {
    unsigned clocks;
    unsigned tms;

    constexpr bool Tms(unsigned clock) const { return (tms >> clock & 1) != 0; }

    // The same walk, stopped one state early.
    constexpr OmTapPath WithoutLast() const {
        return {clocks - 1, tms & ((1U << (clocks - 1)) - 1)};
    }
};

enum class OmScanRegister { Data, Instruction };

namespace TapPathTables {

// Indexed by register and by start: Test-Logic-Reset, Run-Test/Idle, Pause. From Pause the walk
// goes through Exit2.
inline constexpr OmTapPath kToShift[2][3] = {
    {{4, 0b0010}, {3, 0b001}, {2, 0b01}},
    {{5, 0b00110}, {4, 0b0011}, {2, 0b01}},
};

} // namespace TapPathTables

// To Shift-DR or Shift-IR from the start that a scan's `from` names.
constexpr OmTapPath GetPathToShift(OmScanRegister which, int from) {
    const int start = from == kScanFromReset || from == kScanFromIdle ? from : kScanFromPause;
    return TapPathTables::kToShift[static_cast<int>(which)][start];
}

// From Exit1, which the last bit of a scan enters, to the end that its `to` names.
constexpr OmTapPath GetPathFromExit1(int to) {
    return to == kScanToIdle ? OmTapPath{2, 0b01} : OmTapPath{1, 0b0};
}

// From any state through Test-Logic-Reset to Run-Test/Idle.
inline constexpr OmTapPath kTapResetPath{6, 0b011111};
