// The loops that program a data image: many operations laid into one list of scans, with a tuned
// number of idle scans as the wait. What a command set adds is an OmBulkCommands.
#pragma once

#include "flash/BulkCommands.h"

#include <cstdint>

class OmDataImage;
class OmProgressCallback;

// Programs every word that `image` touches and tunes `wait`, the idle scans ahead of a status read,
// as it goes; a `wait` above 0 is one that an action before has proven. `count` counts the words
// drawn from the image. An item that fails at the longest wait is given up. A few are left to a
// verify; when there are more, the user is asked whether to go on, and told at the end. Done,
// Stopped, FlashError if the flash forbids to program, or Told.
OmFlashResult ProgramWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                                OmProgressCallback& callback, const OmDataImage& image, int& wait,
                                uint32_t& count);

// The same with nothing read back. Done or Stopped.
OmFlashResult ProgramBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                           OmProgressCallback& callback, const OmDataImage& image, int wait,
                           uint32_t& count);
