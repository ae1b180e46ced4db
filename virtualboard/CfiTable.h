// The query structure of the Common Flash Interface (JESD68) of a chip.
#pragma once

#include "virtualboard/FlashParameters.h"

#include <cstdint>
#include <vector>

namespace vb {

// Query bytes from query address 0 on; empty for a chip without query mode.
std::vector<uint8_t> MakeCfiTable(const FlashParameters& flash);

} // namespace vb
