// Faults by name, as board files and the environment give them; README.md lists them.
#pragma once

#include "virtualboard/Board.h"

#include <string>
#include <vector>

namespace vb {

// `words` is the fault's name and what it needs, such as {"erase-fails", "F1", "3"}.
// Throws std::runtime_error.
void AddFault(Board& board, const std::vector<std::string>& words);

} // namespace vb
