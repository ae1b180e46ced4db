// The one board that the stand-in libraries of this process work on.
#pragma once

#include "virtualboard/Board.h"

#include <cstdint>
#include <memory>

namespace vb {

// The installed board. If none is installed, the first call loads the file that VIRTUALBOARD names,
// with the lines of VIRTUALBOARD_FAULTS (separated by ';') added as faults; its statistics go to
// VIRTUALBOARD_STATS, its flash contents to VIRTUALBOARD_FLASH_DUMP when the process ends.
// Null if there is no board, or if the file is faulty, which is told on standard error.
Board* CurrentBoard();

// Puts in a board made by a test, or takes it out (null). Open handles of the stand-ins are void.
void InstallBoard(std::unique_ptr<Board> board);

// Grows with every change of the board, so that a stand-in notices.
uint64_t BoardGeneration();

// Writes what the environment asks for, now; done at the end of the process anyway.
void WriteReports();

} // namespace vb
