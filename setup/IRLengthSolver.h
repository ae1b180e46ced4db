// Works out the IR lengths of a chain from what its instruction registers captured.
#pragma once

#include "jtag/BitVector.h"

#include <cstdint>
#include <optional>
#include <vector>

// `lengths` holds one element a device, the device nearest TDO first: its IR length, 2 or more, or
// -1 for an unknown one. Answers the complete list if exactly one assignment of lengths of 2 or
// more fills `stream` such that every IR begins with the captured 1, 0 of IEEE 1149.1, clause
// 7.1.1; nothing if there is none or more than one.
std::optional<std::vector<int32_t>> SolveIRLengths(const std::vector<int32_t>& lengths,
                                                   const OmBitVector& stream);
