// Which sectors of the flash a data image reaches.
#pragma once

#include "setup/SectorLayout.h"

class OmDataImage;

// Indexes of the sectors of an array of `chips` chips that hold a byte of `image`, moved by
// `dataOffset` modulo 2^32. Empty when the data lies beyond the flash.
OmSectorRange FindTouchedSectors(const OmFlashSectorLayout& sectorMap, uint32_t chips,
                                 const OmDataImage& image, uint32_t dataOffset);
