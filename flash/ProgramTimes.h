// How long the chips themselves say that programming takes: the times of the CFI table (JESD68),
// from which the search for the wait starts.
#pragma once

#include "flash/Cfi.h"

#include <cstdint>
#include <span>

// In microseconds; 0 where the chips do not say.
struct OmProgramTime {
    uint32_t typical = 0;
    uint32_t maximum = 0;

    bool operator==(const OmProgramTime&) const = default;
};

struct OmProgramTimes {
    OmProgramTime word;
    OmProgramTime buffer;

    bool operator==(const OmProgramTimes&) const = default;
};

// The longest that any of the chips says of itself. A figure that no flash needs counts as none.
OmProgramTimes FindProgramTimes(std::span<const OmCfiBuffer> chips);
