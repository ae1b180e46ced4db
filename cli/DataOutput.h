// Saving what was read from the flash.
#pragma once

#include "cli/Options.h"
#include "data/DataImage.h"

// Whether a file could be written there, as far as that shows before anything is: hours of reading
// must not end at a folder that is not there. Reports its own failure; leaves no trace.
bool CheckOutput(const std::string& path);

// `image` is one piece, as it was read. Reports its own failure.
bool SaveData(const std::string& path, const OmDataFormat& format, const OmDataImage& image);

// The bytes of `image` from `start` on, `size` of them.
OmDataImage CropImage(const OmDataImage& image, uint32_t start, uint32_t size);
