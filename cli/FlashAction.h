// What several commands on the flash have in common.
#pragma once

#include "cli/Options.h"
#include "data/DataImage.h"
#include "flash/FlashProgrammer.h"

// The data file of the options at the place where it is to be in the flash. Reports its own
// failure.
bool LoadActionData(const OmCliOptions& options, OmDataImage& image);

// The part of the flash that --from and --size ask for, the whole by default; false with a message
// if the flash does not reach so far. Needs a Prepare that has succeeded.
bool GetFlashRange(const OmCliOptions& options, OmAddressRange& range);

// False with a message if the data reaches beyond the flash: its upper address bits would fall away
// and it would land somewhere else.
bool CheckDataFits(const OmDataImage& image);

// --- sectors, after a Prepare with the sector map

// Sectors are unknown, and there is no command that erases the whole chip.
bool IsEraseImpossible();

// Says why IsEraseImpossible; answers false.
bool FailEraseImpossible();

// Chip offsets of the sectors that the options name by number or by --from and --size. False with a
// message.
bool SelectSectors(const OmCliOptions& options, OmSectorRange& chipOffsets);

// Chip offsets of the sectors that `image` touches.
OmSectorRange GetSectorsForData(const OmDataImage& image);
