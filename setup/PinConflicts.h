// Finds device pins that carry more than one signal, over both tables of pins of a setup.
#pragma once

#include "setup/DesignSetup.h"

#include <string>
#include <vector>

class OmChainPins;

// All rows that share one device pin.
struct OmPinConflict {
    OmDevicePin pin;
    std::vector<int> signalRows;
    std::vector<int> staticRows;
};

struct OmPinConflicts {
    std::vector<OmPinConflict> conflicts;
    std::vector<bool> signals; // by row: whether it is in conflict
    std::vector<bool> statics;

    bool Any() const { return !conflicts.empty(); }
};

// The buses must have been padded. The time grows with the number of pins only.
OmPinConflicts FindPinConflicts(const OmFlashPins& pins);

// The error for the user; empty if no signal shares its pin.
std::wstring GetConflictError(const OmPinConflicts& conflicts);

// Every conflict in words, one a line: "A3 and D5 are connected to the same pin, Dev1 (chip) AB1 /
// D(3)."
std::wstring DescribeConflicts(const OmPinConflicts& conflicts, const OmChainPins& pins);

// "Dev1 (chip) AB1 / DATA(3)"
std::wstring FormatFullPin(const OmDevicePin& pin, const OmChainPins& pins);
