#include "flash/ChainLayout.h"

OmChainLayout BuildChainLayout(const std::vector<OmChainDevice>& chain,
                               std::vector<bool> usedDevices) {
    OmChainLayout layout;
    layout.deviceCount = static_cast<uint32_t>(chain.size());
    layout.offsets.resize(chain.size());
    for (size_t device = chain.size(); device-- > 0;) {
        layout.offsets[device] = static_cast<uint32_t>(layout.defaultImage.size());
        OmBitVector cells{1}; // the BYPASS register
        if (usedDevices[device])
            chain[device].GetSafeBsrVector(cells);
        AppendBits(layout.defaultImage, cells);
    }
    layout.usedDevices = std::move(usedDevices);
    return layout;
}
