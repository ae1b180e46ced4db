// TCK frequencies as the user reads and chooses them: "7.5 MHz", "750 KHz".
#pragma once

#include <cstdint>
#include <string>

std::wstring FormatFrequency(int32_t hertz);

// In Hz, fractions of one cut off; without a unit the number is in Hz. -1 if there is no number, or
// if it is below `lowest` or above `highest`.
int32_t ParseFrequency(const std::wstring& text, int32_t lowest, int32_t highest);
