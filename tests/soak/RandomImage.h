// Images that are hard on a flash programmer: what a status looks like, what a command looks like,
// what blank flash looks like, and what firmware looks like.
#pragma once

#include "data/DataImage.h"
#include "tests/soak/Dice.h"

#include <string>

struct SoakImage {
    std::string kind;
    OmDataImage image;
};

// One to three pieces of whole bus words from `start` on, `size` bytes at most; `busBytes` is the
// width of the bus.
SoakImage DrawImage(Dice& dice, uint32_t start, uint32_t size, uint32_t busBytes);
