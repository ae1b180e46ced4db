#include "bsdl/IdcodePattern.h"

#include "jtag/IdcodeLayout.h"

namespace {

bool Fits(uint8_t bit, char wanted) {
    return wanted == '1' ? bit == 1 : wanted == '0' ? bit == 0 : true;
}

// Lowest bit in which the two differ, kIdcodeBits if there is none. The pattern has bit 31 first.
size_t FirstMismatch(const OmBitVector& idcode, const std::string& pattern) {
    size_t bit = 0;
    while (bit < kIdcodeBits &&
           Fits(bit < idcode.size() ? idcode[bit] : kBitUnknown, pattern[kIdcodeBits - 1 - bit]))
        ++bit;
    return bit;
}

} // namespace

OmIdcodeMatch MatchIdcode(const OmBitVector& idcode, const std::vector<std::string>& patterns) {
    OmIdcodeMatch match;
    for (const std::string& pattern : patterns) {
        if (pattern.size() != kIdcodeBits) {
            ++match.badPatterns;
            continue;
        }
        const size_t mismatch = FirstMismatch(idcode, pattern);
        if (mismatch == kIdcodeBits) {
            match.pattern = pattern;
            match.whole = true;
            break;
        }
        if (mismatch >= kIdcodeVersionBit && match.pattern.empty())
            match.pattern = pattern;
    }
    return match;
}
