// One run of the soak: a random board, a random state to begin in, random images, all through the
// program's real cable code, and the chips' own content compared with what should be in them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SoakResult {
    std::string description;
    std::vector<std::string> failures;
    uint64_t words = 0; // bytes that should have arrived
    uint64_t lost = 0;  // bytes that the program called done, and that are not in the flash
    uint64_t scans = 0;
};

SoakResult RunSoak(uint64_t seed);
