// What the dialogs say about the sectors of a flash. No windows here. A layout typed by the user or
// read from a damaged file may claim billions of sectors; lists stop at kMaxListedSectors, which is
// well above what any NOR flash has.
#pragma once

#include "setup/SectorLayout.h"

#include <cstdint>
#include <string>
#include <vector>

inline constexpr uint32_t kMaxListedSectors = 8192;

// "4 x 8192 Bytes"
std::wstring FormatSectorGroup(const OmSectorGroup& group);

// One row a sector, with its addresses in an array of `chips` chips: " 1) 000h - 3FFh, 1024", and
// " 1) 000h - 7FFh, 2 x 1024" for two chips.
std::vector<std::wstring> FormatSectorRows(const OmFlashSectorLayout& layout, uint32_t chips);

// "Only the first 8192 of 1000000 sectors are listed."; empty if all are listed.
std::wstring FormatUnlistedNote(const OmFlashSectorLayout& layout);

// The total, a rule that fits it, and a row for each sector of one chip.
std::wstring FormatSectorTable(const OmFlashSectorLayout& layout);

// "1 sector selected", "12 sectors selected"
std::wstring FormatSelectedCount(size_t count);
