// Fills the rows of a bus from two that are set: flash buses mostly lie on one port, bit by bit. No
// windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <optional>
#include <string>
#include <vector>

class OmChainPins;

struct OmPinFill {
    int firstRow = 0;
    std::vector<OmDevicePin> pins; // of firstRow and the rows behind it
};

// What follows from the selected row and its neighbour, the one before it if that will do: both
// must be on consecutive bits of one port, rising or falling. Ends where the port or the bus ends;
// nothing if the rows show no pattern. The buses must have been padded.
std::optional<OmPinFill> PlanPinFill(const OmFlashPins& pins, const OmChainPins& chain,
                                     int selectedRow);

// The rows that would lose another pin, one a line, as in "A5: Dev1 (chip) AB1 / X"; empty if none
// would.
std::wstring DescribeOverwritten(const OmFlashPins& pins, const OmChainPins& chain,
                                 const OmPinFill& fill);

void ApplyPinFill(OmFlashPins& pins, const OmPinFill& fill);
