// Which of a file's IDCODE patterns fits the IDCODE that a device gave.
#pragma once

#include "jtag/BitVector.h"

#include <string>
#include <vector>

struct OmIdcodeMatch {
    std::string pattern; // empty if none fits
    bool whole = false;  // it fits in every bit, and not but for the version
    int badPatterns = 0; // looked at and not 32 characters long
};

// The first pattern that fits in every bit; failing that, the first that differs in the version
// field alone, since a new version of a chip seldom has a file of its own.
OmIdcodeMatch MatchIdcode(const OmBitVector& idcode, const std::vector<std::string>& patterns);
