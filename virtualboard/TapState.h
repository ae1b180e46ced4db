// The 16 states of an IEEE 1149.1 TAP controller and the moves between them.
#pragma once

#include <cstdint>

namespace vb {

enum class TapState : uint8_t {
    TestLogicReset,
    RunTestIdle,
    SelectDr,
    CaptureDr,
    ShiftDr,
    Exit1Dr,
    PauseDr,
    Exit2Dr,
    UpdateDr,
    SelectIr,
    CaptureIr,
    ShiftIr,
    Exit1Ir,
    PauseIr,
    Exit2Ir,
    UpdateIr,
};

constexpr int kTapStateCount = 16;

// The state after one rising edge of TCK with this level on TMS.
TapState NextTapState(TapState state, bool tms);

const char* TapStateName(TapState state);

} // namespace vb
