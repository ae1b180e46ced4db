// A board of random shape with random chips on it, and the way in which it is programmed.
#pragma once

#include "tests/soak/Dice.h"
#include "virtualboard/BoardBuilder.h"

#include <cstdint>
#include <string>

struct SoakBoard {
    vb::BoardBuilder builder;
    std::string description;
    bool intel = false;
    bool bypass = false;
    bool buffered = true;
    int32_t frequency = 30000000;
};

SoakBoard DrawBoard(Dice& dice);
