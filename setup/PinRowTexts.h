// The two tables of pins of a setup as texts, one for each column. No windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <array>
#include <string>

class OmChainPins;

inline constexpr size_t kPinColumnCount = 4;
using OmPinRowTexts = std::array<std::wstring, kPinColumnCount>;

// Flash pin, device, device pin, active level; all but the first are empty for a pin that is not
// connected, and the level for all but CE, OE and WE. The buses must have been padded.
OmPinRowTexts FormatSignalRow(const OmFlashPins& pins, const OmChainPins& chain, int row);

// Device, device pin, value, note.
OmPinRowTexts FormatStaticRow(const StaticPin& pin, const OmChainPins& chain);

// "high" or "low"
std::wstring FormatActiveLevel(bool isHigh);

// "0", "1", "Z", or "ERROR" for any other value.
std::wstring FormatStaticValue(uint8_t value);
