// How long programming takes as far as is known ahead: from there the search for the wait starts.
#pragma once

#include <cstdint>

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
