// Which parallel ports the machine has.
#pragma once

#include <cstdint>

inline constexpr char kPortDriverName[] = "ompio2";

// I/O addresses of LPT1 to LPT3, 0 for an absent port. Any pointer may be null. False, with nothing
// written, if the port driver is absent or refuses.
bool GetLptAddresses(uint16_t* lpt1, uint16_t* lpt2, uint16_t* lpt3);
