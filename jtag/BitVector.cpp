#include "jtag/BitVector.h"

#include <algorithm>

namespace {

template <typename Character>
uint8_t BitFromCharacter(Character character) {
    switch (character) {
    case '0':
        return 0;
    case '1':
        return 1;
    case 'Z':
    case 'z':
        return kBitReleased;
    default:
        return kBitUnknown;
    }
}

template <typename Character>
OmBitVector BitsFromCharacters(std::basic_string_view<Character> text) {
    OmBitVector bits(text.size());
    std::transform(text.rbegin(), text.rend(), bits.begin(), BitFromCharacter<Character>);
    return bits;
}

char CharacterFromBit(uint8_t bit) {
    switch (bit) {
    case 0:
        return '0';
    case 1:
        return '1';
    case kBitReleased:
        return 'Z';
    default:
        return 'X';
    }
}

} // namespace

OmBitVector BitsFromText(std::string_view text) {
    return BitsFromCharacters(text);
}

OmBitVector BitsFromText(std::wstring_view text) {
    return BitsFromCharacters(text);
}

OmBitVector BitsFromAscii(std::string_view text) {
    OmBitVector bits;
    bits.reserve(text.size() * 8);
    for (const char character : text) {
        for (int bit = 0; bit < 8; ++bit)
            bits.push_back((static_cast<uint8_t>(character) >> bit) & 1);
    }
    return bits;
}

std::string BitsToText(const OmBitVector& bits, OmBitOrder order) {
    std::string text(bits.size(), '\0');
    if (order == OmBitOrder::LowestFirst)
        std::transform(bits.begin(), bits.end(), text.begin(), CharacterFromBit);
    else
        std::transform(bits.rbegin(), bits.rend(), text.begin(), CharacterFromBit);
    return text;
}

bool BitsToHex(const OmBitVector& bits, std::string& text) {
    text.assign((bits.size() + 3) / 4, '0');
    unsigned digit = 0;
    for (size_t i = 0; i < bits.size(); ++i) {
        if (bits[i] > 1)
            return false;
        digit |= static_cast<unsigned>(bits[i]) << (i % 4);
        text[text.size() - 1 - i / 4] = "0123456789ABCDEF"[digit];
        if (i % 4 == 3)
            digit = 0;
    }
    return true;
}

ptrdiff_t FindBits(const OmBitVector& bits, const OmBitVector& needle) {
    const auto found = std::search(bits.begin(), bits.end(), needle.begin(), needle.end());
    // An empty needle stands everywhere, even in an empty vector.
    return found == bits.end() && !needle.empty() ? -1 : found - bits.begin();
}

void ResolveUnknowns(OmBitVector& bits, uint8_t value) {
    for (uint8_t& bit : bits) {
        if (bit == kBitUnknown || bit == kBitReleased)
            bit = value;
    }
}

void AppendBits(OmBitVector& bits, const OmBitVector& tail) {
    // Through an index, since `tail` may be `bits` itself.
    const size_t count = tail.size();
    bits.reserve(bits.size() + count);
    for (size_t i = 0; i < count; ++i)
        bits.push_back(tail[i]);
}

void AppendBits(OmBitVector& bits, size_t count, uint8_t value) {
    bits.insert(bits.end(), count, value);
}
