// Between bit vectors of one element a bit and packed bits, eight a byte, low bit first. Every bit
// that a cable moves passes here, so both ways work eight elements at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// Bytes that hold `bits` packed bits.
constexpr size_t PackedSize(size_t bits) {
    return (bits + 7) / 8;
}

// Sets or clears the packed bits at `firstBit` and above. An element that is not exactly 1 packs as
// 0. Bits below are kept; what is left of the last byte above becomes 0, and no byte past it is
// touched.
void PackBits(std::span<const uint8_t> bits, uint8_t* packed, size_t firstBit = 0);

// Fills all of `bits` with 0 and 1 from the packed bits at `firstBit` and above. Reads no byte that
// holds none of them.
void UnpackBits(const uint8_t* packed, size_t firstBit, std::span<uint8_t> bits);
