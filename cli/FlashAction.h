// From the options of the command line to the jobs on the flash.
#pragma once

#include "cli/Options.h"
#include "data/DataImage.h"
#include "jobs/FlashReach.h"
#include "jobs/PlacedData.h"

class OmConsoleProgress;
class OmFlashJob;

// The data file of the options, if they name one. Reports its own failure.
bool LoadActionData(const OmCliOptions& options, OmDataImage& image);

// `image` at the place that --offset asks for.
OmDataChoice PlaceActionData(const OmCliOptions& options, const OmDataImage& image);

// The part of the flash that --from and --size ask for, the whole by default.
OmFlashPart GetFlashPart(const OmCliOptions& options);

// Indexes of the sectors that the options name by number or by --from and --size, once the sectors
// are known. False with a message.
bool SelectSectors(const OmCliOptions& options, OmSectorRange& indexes);

// Checks the options of an open job, runs it and tells its success.
bool RunJob(OmFlashJob& job, OmConsoleProgress& progress);
