// Addresses of flash command cycles. A flash in a narrower mode than its bus can need them shifted.
// The program drives an alternating pattern of 32 bits, of which the real address pins take as many
// bits as there are: so one value serves 11-bit and 15-bit command decoders alike.
#pragma once

#include <cstdint>

struct OmCommandAddresses {
    uint32_t unlock1;    // ...5555h
    uint32_t unlock2;    // ...2AAAh
    uint32_t identifier; // word of the device code
    uint32_t cfiEntry;
    unsigned shift; // of CFI query byte addresses
};

// `addrCmdShift` as in the setup; any value but 1 and 2 counts as 0.
const OmCommandAddresses& GetCommandAddresses(int addrCmdShift);
