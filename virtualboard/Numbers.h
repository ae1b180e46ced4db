// Numbers as board files write them: decimal or 0x hexadecimal, with an optional K or M after.
#pragma once

#include <cstdint>
#include <string>

namespace vb {

// Throws std::runtime_error that names the text.
uint32_t ParseNumber(const std::string& text);

std::string FormatHex(uint32_t value); // "0x1F"

} // namespace vb
