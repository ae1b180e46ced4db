// The Common Flash Interface table (JESD68) of each chip of the array: how it is read, and what the
// program concludes from it. Nothing in it can be trusted to be there.
#pragma once

#include "flash/CommandSet.h"
#include "setup/SectorLayout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class OmBoundaryScanBus;

inline constexpr int kMaxChips = 4;

// Query bytes of one chip, empty if it gave no valid query structure. Index n is query address 10h
// + n: 29 bytes up to the number of erase regions, then four bytes a region.
using OmCfiBuffer = std::vector<uint8_t>;

inline constexpr size_t kCfiPrimarySet = 3;
inline constexpr size_t kCfiPrimaryTable = 5;
inline constexpr size_t kCfiAlternativeSet = 7;
inline constexpr size_t kCfiAlternativeTable = 9;
inline constexpr size_t kCfiVoltages = 11;
inline constexpr size_t kCfiTimeOuts = 15;
inline constexpr size_t kCfiDeviceSize = 23;
inline constexpr size_t kCfiInterface = 24;
inline constexpr size_t kCfiBufferSize = 26;
inline constexpr size_t kCfiRegionCount = 28;
inline constexpr size_t kCfiRegions = 29;

// The tables of all chips, read at most once an action.
struct CfiData {
    bool read = false;
    std::array<OmCfiBuffer, kMaxChips> chips;
};

// 16 bits, low byte first; 0 beyond the end.
uint32_t GetCfiValue(const OmCfiBuffer& buffer, size_t index);

// Query address at which the standard part of the table ends: the first of the extended tables that
// is there, the largest value if none is.
uint32_t GetCfiTableEnd(const OmCfiBuffer& buffer);

// Reads the table of one chip, its query command put on the lanes of that chip alone. Leaves the
// flash in read mode.
void ReadCfi(OmBoundaryScanBus& bus, int chip, OmCfiBuffer& out);

struct OmCfiFindings {
    OmCommandSet commandSet = OmCommandSet::Unknown;
    uint32_t bufferBytes = 0; // of one chip, 0 unless the set is a buffered one

    bool operator==(const OmCfiFindings&) const = default;
};

// What all chips agree on.
OmCfiFindings FindCommandSetInCfi(std::span<const OmCfiBuffer> chips);

// The erase regions, if all chips give the same and a chip can have them; true also if all say that
// they have none.
bool FindSectorsInCfi(std::span<const OmCfiBuffer> chips, OmFlashSectorLayout& sectors);
