// Where each device's register lies in one DR scan through the whole chain.
#pragma once

#include "jtag/BitVector.h"
#include "setup/DesignSetup.h"

#include <cstdint>
#include <vector>

// The image runs from the device nearest TDO (the last of the setup) to the one nearest TDI (device
// 0). A used device takes part with its whole boundary register, cell 0 first; an unused one stays
// in BYPASS and takes one element. So element offsets[d] + n is cell n of device d.
struct OmChainLayout {
    OmBitVector defaultImage; // every cell at its safe value
    std::vector<bool> usedDevices;
    uint32_t deviceCount = 0;
    std::vector<uint32_t> offsets; // by device
};

OmChainLayout BuildChainLayout(const std::vector<OmChainDevice>& chain,
                               std::vector<bool> usedDevices);
