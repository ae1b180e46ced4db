// Whether the flash reaches as far as an action wants to go. The flash ends where the address lines
// of the setup do: the upper bits of a higher address would fall away, and the access would land at
// the beginning.
#pragma once

#include "flash/FlashProgrammer.h"

#include <optional>

// A part of the flash, in image addresses.
struct OmFlashPart {
    uint32_t from = 0;
    std::optional<uint32_t> size; // up to the end of the flash
};

// False with a message if the flash does not hold the whole part.
bool FindFlashPart(const OmFlashProgrammer& programmer, const OmFlashPart& part,
                   OmAddressRange& range);

// False with a message if a byte of `image` (not empty) lies past the end of the flash.
bool CheckDataFit(const OmFlashProgrammer& programmer, const OmDataImage& image);
