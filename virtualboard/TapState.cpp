#include "virtualboard/TapState.h"

#include <cstddef>

namespace vb {

namespace {

struct Row {
    const char* name;
    TapState onLow;
    TapState onHigh;
};

// IEEE 1149.1, figure of the TAP controller state diagram; rows in the order of the enumeration.
constexpr Row kRows[kTapStateCount] = {
    {"Test-Logic-Reset", TapState::RunTestIdle, TapState::TestLogicReset},
    {"Run-Test/Idle", TapState::RunTestIdle, TapState::SelectDr},
    {"Select-DR-Scan", TapState::CaptureDr, TapState::SelectIr},
    {"Capture-DR", TapState::ShiftDr, TapState::Exit1Dr},
    {"Shift-DR", TapState::ShiftDr, TapState::Exit1Dr},
    {"Exit1-DR", TapState::PauseDr, TapState::UpdateDr},
    {"Pause-DR", TapState::PauseDr, TapState::Exit2Dr},
    {"Exit2-DR", TapState::ShiftDr, TapState::UpdateDr},
    {"Update-DR", TapState::RunTestIdle, TapState::SelectDr},
    {"Select-IR-Scan", TapState::CaptureIr, TapState::TestLogicReset},
    {"Capture-IR", TapState::ShiftIr, TapState::Exit1Ir},
    {"Shift-IR", TapState::ShiftIr, TapState::Exit1Ir},
    {"Exit1-IR", TapState::PauseIr, TapState::UpdateIr},
    {"Pause-IR", TapState::PauseIr, TapState::Exit2Ir},
    {"Exit2-IR", TapState::ShiftIr, TapState::UpdateIr},
    {"Update-IR", TapState::RunTestIdle, TapState::SelectDr},
};

} // namespace

TapState NextTapState(TapState state, bool tms) {
    const Row& row = kRows[static_cast<size_t>(state)];
    return tms ? row.onHigh : row.onLow;
}

const char* TapStateName(TapState state) {
    return kRows[static_cast<size_t>(state)].name;
}

} // namespace vb
