#include "flash/CommandAddresses.h"

#include <array>

namespace {

constexpr std::array<OmCommandAddresses, 3> kByShift{{
    {0x55555555, 0xAAAAAAAA, 1, 0x55, 0},
    {0xAAAAAAAA, 0x55555554, 2, 0xAA, 1},
    {0x55555554, 0xAAAAAAA8, 4, 0x154, 2},
}};

} // namespace

const OmCommandAddresses& GetCommandAddresses(int addrCmdShift) {
    return kByShift[addrCmdShift == 1 || addrCmdShift == 2 ? addrCmdShift : 0];
}
