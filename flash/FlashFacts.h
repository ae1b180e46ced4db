// What has been found out about the flash, and carries over from action to action until the setup
// changes. Part of OmFlashProgrammer.
#pragma once

#include "flash/CommandSet.h"
#include "flash/ProgramTimes.h"
#include "setup/SectorLayout.h"

#include <cstdint>

struct OmFlashFacts {
    OmCommandSet commandSet = OmCommandSet::Unknown;
    uint32_t bufferBytes = 0;    // write buffer of one chip; counts only with a known command set
    OmProgramTimes programTimes; // as the flash gives them, where it has been asked
    int waitScans = 0;           // proven by programming, for this connection; 0 for none
    bool sectorsValid = false;
    OmFlashSectorLayout sectors; // what the setup or the flash gave; may be empty
};
