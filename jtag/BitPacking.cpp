#include "jtag/BitPacking.h"

#include <bit>
#include <cstring>

namespace {

static_assert(std::endian::native == std::endian::little, "eight elements are moved as one word");

constexpr uint64_t kOnes = 0x0101010101010101;
constexpr uint64_t kLow7 = 0x7F7F7F7F7F7F7F7F;

// 1 in each byte that is exactly 1, 0 in every other one. A byte differs from 1 if its exclusive-or
// with 1 has any bit set; adding 0x7F carries a set low bit into bit 7, and bytes cannot carry into
// each other.
uint64_t ExactlyOne(uint64_t elements) {
    const uint64_t differs = elements ^ kOnes;
    return ~(((differs & kLow7) + kLow7) | differs | kLow7) >> 7;
}

// Moves byte i's low bit to bit i: the factor's bits stand 7 apart, so that each product lands on a
// bit of its own.
uint8_t Gather(uint64_t zeroOrOne) {
    return static_cast<uint8_t>(zeroOrOne * 0x0102040810204080 >> 56);
}

uint64_t Scatter(uint8_t packed) {
    const uint64_t single = packed * kOnes & 0x8040201008040201; // bit i is left in byte i alone
    return (single + kLow7) >> 7 & kOnes;
}

} // namespace

void PackBits(std::span<const uint8_t> bits, uint8_t* packed, size_t firstBit) {
    packed += firstBit / 8;
    const unsigned shift = firstBit % 8;
    // What the byte at hand already holds in its low end.
    unsigned held = shift ? *packed & ((1U << shift) - 1) : 0;
    const uint8_t* element = bits.data();
    for (size_t group = bits.size() / 8; group > 0; --group, element += 8) {
        uint64_t elements;
        std::memcpy(&elements, element, 8);
        held |= static_cast<unsigned>(Gather(ExactlyOne(elements))) << shift;
        *packed++ = static_cast<uint8_t>(held);
        held >>= 8;
    }
    const size_t rest = bits.size() % 8;
    if (rest > 0) {
        uint64_t elements = 0;
        std::memcpy(&elements, element, rest);
        held |= static_cast<unsigned>(Gather(ExactlyOne(elements))) << shift;
    }
    for (size_t left = shift + rest; left > 0; left -= left < 8 ? left : 8) {
        *packed++ = static_cast<uint8_t>(held);
        held >>= 8;
    }
}

void UnpackBits(const uint8_t* packed, size_t firstBit, std::span<uint8_t> bits) {
    packed += firstBit / 8;
    const unsigned shift = firstBit % 8;
    // The byte above is needed only while it holds bits of this group.
    const auto group = [&packed, shift](size_t count) {
        const unsigned above = shift + count > 8 ? packed[1] : 0;
        const unsigned both = *packed++ | above << 8;
        return Scatter(static_cast<uint8_t>(both >> shift));
    };
    uint8_t* element = bits.data();
    for (size_t left = bits.size() / 8; left > 0; --left, element += 8) {
        const uint64_t elements = group(8);
        std::memcpy(element, &elements, 8);
    }
    const size_t rest = bits.size() % 8;
    if (rest == 0)
        return;
    const uint64_t elements = group(rest);
    std::memcpy(element, &elements, rest);
}
