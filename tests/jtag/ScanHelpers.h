// What the tests of all cables' scans share.
#pragma once

#include "jtag/BitVector.h"
#include "jtag/Exception.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The text of what `action` throws.
inline std::wstring MessageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const OmException& error) {
        return error.GetText();
    }
    return L"(nothing thrown)";
}

// Bits written in the order in which they are shifted.
inline OmBitVector Shifted(const std::string& text) {
    return BitsFromText(std::string(text.rbegin(), text.rend()));
}

inline std::string InShiftOrder(const OmBitVector& bits) {
    return BitsToText(bits, OmBitOrder::LowestFirst);
}

inline std::vector<uint8_t> operator+(std::vector<uint8_t> one, const std::vector<uint8_t>& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}
