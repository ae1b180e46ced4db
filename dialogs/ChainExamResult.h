// What the chain wizard leaves for its owner to apply; its pages write it.
#pragma once

#include "jtag/BitVector.h"

#include <vector>

struct OmChainExamResult {
    std::vector<OmBitVector> devices; // IDCODEs from TDI on; empty for one added by hand
    OmBitVector irBits;               // captured instruction registers of the whole chain
    // The user has said Yes to the warning about adaptive clocking, in a wizard that was cancelled
    // too.
    bool adaptiveClockingAccepted = false;
};
