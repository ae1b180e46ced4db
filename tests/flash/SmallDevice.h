// Chain devices of a few cells, for tests that look at single cells.
#pragma once

#include "setup/DesignSetup.h"

#include <string>
#include <vector>

struct CellRow {
    int number;
    const char* port;
    const char* function;
    const char* safe = "X";
    const char* control = "";
    const char* disable = "";
};

// With EXTEST 0000, SAMPLE 0001, PRELOAD 0010.
OmChainDevice MakeDevice(const std::string& entity, int boundaryLength,
                         const std::vector<CellRow>& cells);

SignalPin MakePin(int device, const std::string& port, int index = -1, bool inverted = false);
StaticPin MakeStaticPin(int device, const std::string& port, uint8_t value);
