// The layout of an IDCODE register (IEEE 1149.1, 12.1.1).
#pragma once

#include <cstddef>

inline constexpr size_t kIdcodeBits = 32;
inline constexpr size_t kIdcodeVersionBit = 28; // and up to the highest
