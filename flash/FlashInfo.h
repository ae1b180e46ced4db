// The page that the Info command shows: what the flash says about itself, a column for each chip.
#pragma once

#include "flash/Cfi.h"

#include <cstdint>
#include <string>
#include <vector>

// What was found about one chip.
struct OmChipInfo {
    uint8_t manufacturer = 0; // JEDEC JEP106 code without its bank, 0 if the chip did not answer
    uint8_t device = 0;
    OmCfiBuffer cfi; // empty without CFI
};

// `commandSet` is HTML text. `wordSize` is the data width of one chip in bytes.
std::wstring FormatFlashInfo(const std::wstring& commandSet, int wordSize,
                             const std::vector<OmChipInfo>& chips);

// The labels of the CFI table, and the values of one chip in their order; a short table gives fewer
// values.
inline constexpr size_t kCfiRowCount = 18;
std::wstring GetCfiRowLabel(size_t row);
std::vector<std::wstring> FormatCfiRows(const OmCfiBuffer& cfi);
