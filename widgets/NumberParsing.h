// The ways in which the dialogs read a number that the user typed. No windows here.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Addresses are signed 32-bit numbers that must not be negative.
inline constexpr uint32_t kMaxAddress = 0x7FFFFFFF;

// A data image is only moved to addresses below this.
inline constexpr uint32_t kNewStartLimit = 0x40000000;

// `text` without white space at its ends.
std::wstring TrimText(const std::wstring& text);

// A hexadecimal address that fills the whole text, 0 to kMaxAddress.
std::optional<uint32_t> ParsePlainHex(const std::wstring& text);

// A hexadecimal address that the text begins with, 0 to kMaxAddress: "10xyz" is 10h. Wanted so: the
// address may have been copied with its unit or with what stood after it.
std::optional<uint32_t> ParseScanningHex(const std::wstring& text);

// The same for the address that a data image is to be moved to: below kNewStartLimit.
std::optional<uint32_t> ParseNewStart(const std::wstring& text);

// A decimal number from `least` to 4294967295 that fills the whole text.
std::optional<uint32_t> ParseDecimal(const std::wstring& text, uint32_t least = 0);
