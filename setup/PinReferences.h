// Keeps the pins of a setup in step with its chain: a pin names a port of a device's BSDL data, and
// the chain may change under it.
#pragma once

#include "setup/DesignSetup.h"

// Which of the two lists of pins lost entries.
struct OmDroppedPins {
    bool signals = false;
    bool statics = false;

    bool Any() const { return signals || statics; }

    bool operator==(const OmDroppedPins&) const = default;
};

// Pads the buses to 32 pins, then drops what the chain cannot resolve. One bad pin of a device
// drops all pins of the list that are connected to this device: data that lacks one of them is that
// of another part, where equal names mean nothing.
OmDroppedPins DropInvalidPins(OmDesignSetup& setup);

// Asks whether a change of the chain may drop pins; true, without a question, if it drops none.
bool ConfirmNewBsdl(const OmDroppedPins& dropped);
bool ConfirmNewChain(const OmDroppedPins& dropped);
