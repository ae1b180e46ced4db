// Named states of the pins of an FT2232 chip that take no part in JTAG but enable buffers, drive
// nTRST and the like: each make of cable wants its own. The list is process-wide and kept in the
// settings, but for the predefined ones at its head.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct OmFtd2xxStaticPinsScheme {
    std::wstring description;
    uint16_t gpioDir = 0;   // low byte ADBUS, high byte ACBUS; 1 = output
    uint16_t gpioValue = 0; // likewise
    bool isPredefined = false;

    bool operator==(const OmFtd2xxStaticPinsScheme&) const = default;
};

using OmStaticPinsSchemes = std::vector<OmFtd2xxStaticPinsScheme>;

// The shared list; read from the settings at the first call.
OmStaticPinsSchemes& GetStaticPinsSchemes();

// The predefined schemes and those of the current settings store.
OmStaticPinsSchemes LoadStaticPinsSchemes();

// Replaces what the settings store holds by those of `schemes` that are not predefined.
void SaveStaticPinsSchemes(const OmStaticPinsSchemes& schemes);

// Writes the shared list, if it was ever read.
void SaveUsedStaticPinsSchemes();

// Index of a scheme with these states, or -1. The low four bits, the JTAG pins, do not count.
// Several of equal states: the one of that description, or the first.
int FindScheme(const OmStaticPinsSchemes& schemes, const std::wstring& description,
               uint16_t gpioDir, uint16_t gpioValue);
