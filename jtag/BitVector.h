// The bit vector in which all scans are expressed: one 8-bit element a bit, element 0 is shifted
// first. Read as a number, element 0 is the low bit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Elements are 0, 1, kBitUnknown or kBitReleased. Only 0 and 1 may reach a cable; a cable shifts
// every element that is not exactly 1 as 0.
using OmBitVector = std::vector<uint8_t>;

inline constexpr uint8_t kBitUnknown = 'X';  // don't care
inline constexpr uint8_t kBitReleased = 'Z'; // high impedance

// The rightmost character becomes element 0. '0' gives 0, '1' gives 1, 'Z' and 'z' give 'Z', every
// other character 'X'.
OmBitVector BitsFromText(std::string_view text);
OmBitVector BitsFromText(std::wstring_view text);

// Each character in text order, each character's bit 0 first: 8 elements a character.
OmBitVector BitsFromAscii(std::string_view text);

enum class OmBitOrder { HighestFirst, LowestFirst };

// 0 gives '0', 1 gives '1', 'Z' gives 'Z', anything else 'X'.
std::string BitsToText(const OmBitVector& bits, OmBitOrder order = OmBitOrder::HighestFirst);

// Capital hexadecimal digits, highest group of four first, an incomplete top group zero-filled.
// False at the first element that is neither 0 nor 1, and then `text` is undefined. An empty vector
// gives empty text and true.
bool BitsToHex(const OmBitVector& bits, std::string& text);

// Index of the first place where the whole of `needle` occurs in `bits`, or -1.
ptrdiff_t FindBits(const OmBitVector& bits, const OmBitVector& needle);

// Replaces every 'X' and 'Z' element by `value`.
void ResolveUnknowns(OmBitVector& bits, uint8_t value);

void AppendBits(OmBitVector& bits, const OmBitVector& tail);
void AppendBits(OmBitVector& bits, size_t count, uint8_t value);
