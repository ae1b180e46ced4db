// IDCODEs (IEEE 1149.1, clause 12) as text, and JEDEC JEP106 manufacturer names from mfrid.dat.
#pragma once

#include "jtag/BitVector.h"

#include <cstdint>
#include <string>

struct OmIdcodeFields {
    std::wstring whole;            // 32 binary digits, bit 31 first
    std::wstring hexadecimal;      // 8 digits, or "ERROR" if an element is neither 0 nor 1
    std::wstring manufacturerName; // or "(Unknown)"
    std::wstring manufacturer;     // bits 11 to 1, binary
    std::wstring part;             // bits 27 to 12, binary
    std::wstring version;          // bits 31 to 28, binary

    bool operator==(const OmIdcodeFields&) const = default;
};

// All fields empty for a vector of other than 32 elements.
OmIdcodeFields DecodeIdcode(const OmBitVector& idcode);

// Path of the manufacturer table, an 8-bit path set once at start-up. The file is read when a name
// is needed and may be missing. Setting it empties the caches.
void SetManufacturerTablePath(const std::string& path);

// Name for a 32-element IDCODE. False if the table has none.
bool LookupManufacturer(const OmBitVector& idcode, std::wstring& name);

// Name for a flash chip's one-byte manufacturer identifier, bank 1 only; the parity bit takes no
// part.
bool LookupManufacturer(uint8_t id, std::wstring& name);
