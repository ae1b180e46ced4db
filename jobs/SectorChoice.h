// Sectors named by number or by where they lie, for those who do not tick them in a list.
#pragma once

#include "jobs/FlashReach.h"

#include <vector>

// Sector numbers from 0; both ends are included.
struct OmSectorRun {
    uint32_t first = 0;
    uint32_t last = 0;

    bool operator==(const OmSectorRun&) const = default;
};

// False with a message if the sectors are unknown or if there are none like this. `indexes` gets
// them in addition.
bool ChooseSectors(const OmFlashProgrammer& programmer, const std::vector<OmSectorRun>& runs,
                   OmSectorRange& indexes);
bool ChooseSectors(const OmFlashProgrammer& programmer, const OmFlashPart& part,
                   OmSectorRange& indexes);
