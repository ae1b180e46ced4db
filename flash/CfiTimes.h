// How long the chips themselves say that programming takes: the times of the CFI table (JESD68).
#pragma once

#include "flash/Cfi.h"
#include "flash/ProgramTimes.h"

#include <span>

// The longest that any of the chips says of itself. A figure that no flash needs counts as none.
OmProgramTimes FindProgramTimes(std::span<const OmCfiBuffer> chips);
