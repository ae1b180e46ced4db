// Firmware files made by outside tools, and what an outside tool makes of them.
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <vector>

// True if objcopy and srec_cat are on this machine.
bool HaveFirmwareTools();

// A piece of a firmware file.
struct FirmwarePiece {
    uint32_t address = 0;
    std::vector<uint8_t> bytes;
};

// An S-record file that srec_cat makes of the pieces.
std::string WriteFirmware(const TemporaryFolder& folder, const std::vector<FirmwarePiece>& pieces);

// The file from its lowest address on, gaps filled with FFh, as objcopy makes it.
std::vector<uint8_t> FlattenFirmware(const TemporaryFolder& folder, const std::string& path);
