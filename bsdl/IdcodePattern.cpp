#include "bsdl/IdcodePattern.h"

namespace {

constexpr size_t kIdcodeLength = 32;
constexpr size_t kVersionStart = 28; // IEEE 1149.1, 12.1.1

bool Fits(uint8_t bit, char wanted) {
    return wanted == '1' ? bit == 1 : wanted == '0' ? bit == 0 : true;
}

// Lowest bit in which the two differ, kIdcodeLength if there is none. The pattern has bit 31 first.
size_t FirstMismatch(const OmBitVector& idcode, const std::string& pattern) {
    size_t bit = 0;
    while (bit < kIdcodeLength &&
           Fits(bit < idcode.size() ? idcode[bit] : kBitUnknown, pattern[kIdcodeLength - 1 - bit]))
        ++bit;
    return bit;
}

} // namespace

OmIdcodeMatch MatchIdcode(const OmBitVector& idcode, const std::vector<std::string>& patterns) {
    OmIdcodeMatch match;
    for (const std::string& pattern : patterns) {
        if (pattern.size() != kIdcodeLength) {
            ++match.badPatterns;
            continue;
        }
        const size_t mismatch = FirstMismatch(idcode, pattern);
        if (mismatch == kIdcodeLength) {
            match.pattern = pattern;
            break;
        }
        if (mismatch >= kVersionStart && match.pattern.empty())
            match.pattern = pattern;
    }
    return match;
}
