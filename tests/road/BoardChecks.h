// What the checker of a board says of a run of the program.
#pragma once

#include "virtualboard/BoardBuilder.h"

#include <string>

// From here on the board does not count the one oddity that the program has: an Intel flash's Clear
// Status Register takes no address, and goes out with the address lines released. Any other write
// has to have its address.
void TolerateClearStatus(vb::Board& board, const vb::BuiltBoard& built);

// One finding a line, empty for none.
std::string DescribeViolations(const vb::Board& board);
