// From a device pin to the boundary-register cells (IEEE 1149.1) that drive and sense it. Used by
// the boundary-scan bus alone, once an action to look cells up and then for every scan.
#pragma once

#include "jtag/BitVector.h"
#include "setup/DesignSetup.h"

#include <cstdint>
#include <string>
#include <vector>

// One entry of one boundary cell that belongs to a pin. What a scan needs of the entry is copied
// out of the BSDL data, so that setting a pin costs a few array stores and no look-up.
struct OmCellRef {
    uint32_t cellNumber = 0; // in the device's boundary register
    uint32_t entryIndex = 0; // which of the cell's entries
    int32_t controlCell = -1;
    uint8_t disableValue = kBitUnknown; // releases the pin
    uint8_t enableValue = 1;            // drives it
    bool drives = false;                // OUTPUT2, OUTPUT3, BIDIR
    bool releases = false;              // OUTPUT3 or BIDIR with a control cell
    bool senses = false;                // INPUT, INTERNAL, CLOCK, OBSERVE_ONLY
    bool sensesReleased = false;        // BIDIR: only while its driver is off
};

// The cells of one pin. Empty for a pin that is not connected: it is neither driven nor sensed, and
// every operation below skips it.
struct OmPinCellList {
    std::vector<OmCellRef> cells;
    const OmBsdlData* bsdl = nullptr; // of the pin's device; not owned
};

// Finds every entry whose port is that of `signal`, names compared without regard to case. False if
// there is none, or if the device is outside `chain` or has no BSDL data.
bool FindPinCells(OmPinCellList& pin, const OmDevicePin& signal,
                  const std::vector<OmChainDevice>& chain);

// "Dev1 (entity) PORT(3)", or "<invalid_signal>" for a device outside `chain`.
std::wstring FormatPinName(const std::vector<OmChainDevice>& chain, const OmDevicePin& pin);

// Writes `value` (0, 1 or 'Z') into every cell of the pin that can show it. `base` is the place of
// the device's register in `image`. A pin that cannot be released keeps the value last driven.
void SetPinValue(const OmPinCellList& pin, uint8_t value, OmBitVector& image, uint32_t base);

// What a captured image says of the pin: the element of the last cell that senses it, 'X' if none
// does.
uint8_t GetPinValue(const OmPinCellList& pin, const OmBitVector& image, uint32_t base);
