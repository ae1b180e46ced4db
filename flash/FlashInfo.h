// The report of the Info command as data: what the flash says about itself, a column for each chip.
// The window makes a page of it, the console text.
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

// In the user's language. A value of several lines has a line feed between them.
struct OmReportRow {
    std::wstring label;
    std::vector<std::wstring> values; // by chip

    bool operator==(const OmReportRow&) const = default;
};

struct OmFlashReport {
    OmReportRow heading;            // of the columns
    OmReportRow commandSet;         // one value for the whole array
    bool commandSetKnown = false;   // the value deserves a warning otherwise
    std::vector<OmReportRow> chips; // identifiers, and whether there is a CFI table
    std::wstring cfiTitle;
    std::vector<OmReportRow> cfi; // as long as the longest table; empty without any
};

// `wordSize` is the data width of one chip in bytes.
OmFlashReport MakeFlashReport(OmCommandSet commandSet, int wordSize,
                              const std::vector<OmChipInfo>& chips);

// The labels of the CFI table, and the values of one chip in their order; a short table gives fewer
// values.
inline constexpr size_t kCfiRowCount = 18;
std::wstring GetCfiRowLabel(size_t row);
std::vector<std::wstring> FormatCfiRows(const OmCfiBuffer& cfi);
