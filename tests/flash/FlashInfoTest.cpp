#include "flash/FlashInfo.h"

#include "bsdl/Idcode.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<std::wstring>;

// A 16-bit AMD chip of 8 MiB with two regions; index n is query address 10h + n.
std::vector<uint8_t> AmdTable() {
    return {
        'Q',  'R',  'Y',        // 10h
        0x02, 0x00, 0x40, 0x00, // primary set and table
        0x00, 0x00, 0x00, 0x00, // alternative set and table
        0x27, 0x36, 0x00, 0x00, // Vcc, Vpp
        0x04, 0x05, 0x0A, 0x00, // typical: 16 us, 32 us, 1024 ms, none
        0x05, 0x1B, 0x04, 0x03, // maximum: factors
        0x17,                   // 8 MiB
        0x02, 0x00, 0x05, 0x00, // x8/x16, 32 bytes
        0x02,                   // two regions
        0x07, 0x00, 0x20, 0x00, // 8 of 8 KiB
        0x7E, 0x00, 0x00, 0x01, // 127 of 64 KiB
    };
}

std::vector<uint8_t> With(std::vector<uint8_t> table, size_t index, uint8_t value) {
    table[index] = value;
    return table;
}

std::wstring Row(const std::vector<uint8_t>& cfi, size_t row) {
    const Rows rows = FormatCfiRows(cfi);
    return row < rows.size() ? rows[row] : L"(no such row)";
}

constexpr size_t kPrimarySet = 3;
constexpr size_t kPrimaryTable = 5;
constexpr size_t kAlternativeSet = 7;
constexpr size_t kAlternativeTable = 9;

} // namespace

TEST(FlashInfo, DecodesATable) {
    EXPECT_EQ(
        FormatCfiRows(AmdTable()),
        (Rows{L"AMD/Fujitsu Std", L"N/A", L"2.7 V", L"3.6 V", L"N/A", L"N/A", L"16 us", L"32 us",
              L"1024 ms", L"N/A", L"512 us", L"2^32 us", L"16384 ms", L"N/A", L"8388608 Bytes",
              L"x8/x16 async", L"32 Bytes", L"8 x 8192 Bytes,\n127 x 65536 Bytes"}));
}

TEST(FlashInfo, NamesTheCommandSets) {
    struct Case {
        unsigned code;
        const wchar_t* name;
    };

    const Case cases[] = {
        {0x0001, L"Intel/Sharp Ext"},
        {0x0002, L"AMD/Fujitsu Std"},
        {0x0003, L"Intel Std"},
        {0x0004, L"AMD/Fujitsu Ext"},
        {0x0005, L"Unknown"},
        {0x0006, L"Winbond Std"},
        {0x0100, L"Mitsubishi Std"},
        {0x0101, L"Mitsubishi Ext"},
        {0x0102, L"Page Write"},
        {0x0200, L"Intel Performance Code Command"},
        {0x0210, L"Intel Data Command Set"},
        {0xFFFF, L"Unknown"},
    };
    for (const Case& c : cases) {
        std::vector<uint8_t> table = AmdTable();
        for (const size_t index : {kPrimarySet, kAlternativeSet}) {
            table[index] = static_cast<uint8_t>(c.code);
            table[index + 1] = static_cast<uint8_t>(c.code >> 8);
        }
        EXPECT_EQ(Row(table, 0), c.name) << c.code;
        EXPECT_EQ(Row(table, 1), c.name) << c.code;
    }
    EXPECT_EQ(Row(With(AmdTable(), kPrimarySet, 0), 0), L"Unknown");
}

TEST(FlashInfo, FormatsSingleBytes) {
    struct Case {
        size_t index;
        uint8_t value;
        size_t row;
        const wchar_t* text;
    };

    const Case cases[] = {
        {11, 0x00, 2, L"0.0 V"},
        {11, 0xFA, 2, L"15.10 V"},
        {13, 0xB5, 4, L"11.5 V"},
        {14, 0xC5, 5, L"12.5 V"},
        {15, 31, 6, L"2147483648 us"},
        {15, 32, 6, L"2^32 us"},
        {16, 0, 7, L"N/A"},
        {17, 32, 8, L"2^32 ms"},
        {19, 0, 10, L"N/A"},
        {15, 0, 10, L"N/A"}, // a factor of no typical time
        {19, 28, 10, L"2^32 us"},
        {19, 27, 10, L"2147483648 us"},
        {23, 0, 14, L"1 Bytes"},
        {23, 32, 14, L"2^32 Bytes"},
        {24, 0, 15, L"x8 async"},
        {24, 1, 15, L"x16 async"},
        {24, 3, 15, L"x32 async"},
        {24, 4, 15, L"x16/x32 async"},
        {24, 5, 15, L"Unknown [5]"},
        {25, 1, 15, L"Unknown [258]"},
        {26, 0, 16, L"1 Bytes"},
        {27, 1, 16, L"2^261 Bytes"},
        {28, 0, 17, L"1"},
        {28, 1, 17, L"8 x 8192 Bytes"},
        {31, 0, 17, L"8 x 128 Bytes,\n127 x 65536 Bytes"},
        {30, 1, 17, L"264 x 8192 Bytes,\n127 x 65536 Bytes"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Row(With(AmdTable(), c.index, c.value), c.row), c.text)
            << c.index << " " << int{c.value};
}

TEST(FlashInfo, ExtendedTableEndsTheValues) {
    struct Case {
        uint8_t address;
        size_t rows;
    };

    const Case cases[] = {
        {27, 2},  {28, 3},  {29, 4},  {30, 5},  {31, 6},  {32, 7},  {33, 8},  {34, 9},
        {35, 10}, {36, 11}, {37, 12}, {38, 13}, {39, 14}, {40, 15}, {41, 15}, {42, 16},
        {43, 16}, {44, 17}, {45, 17}, {52, 17}, {53, 18}, {26, 18}, // not an address that counts
        {0, 18},
    };
    for (const Case& c : cases) {
        const auto primary = With(AmdTable(), kPrimaryTable, c.address);
        EXPECT_EQ(FormatCfiRows(primary).size(), c.rows) << int{c.address};
        const auto alternative = With(AmdTable(), kAlternativeTable, c.address);
        EXPECT_EQ(FormatCfiRows(alternative).size(), c.rows) << int{c.address};
    }
    // Without regions the row needs no more than their number.
    EXPECT_EQ(FormatCfiRows(With(With(AmdTable(), 28, 0), kPrimaryTable, 45)).size(), 18u);
}

TEST(FlashInfo, TableThatWasReadInPartGivesFewerValues) {
    std::vector<uint8_t> table = AmdTable();
    table.pop_back();
    EXPECT_EQ(FormatCfiRows(table).size(), 17u);
    table.resize(12);
    EXPECT_EQ(FormatCfiRows(table).size(), 3u);
    EXPECT_EQ(FormatCfiRows({'Q', 'R', 'Y'}).size(), 0u);
    EXPECT_EQ(FormatCfiRows({}).size(), 0u);
}

TEST(FlashInfo, RowsHaveTheirLabels) {
    const wchar_t* labels[] = {
        L"Primary Command Set",
        L"Alternative Command Set",
        L"Vcc Min Program/Erase Voltage",
        L"Vcc Max Program/Erase Voltage",
        L"Vpp Min Program/Erase Voltage",
        L"Vpp Max Program/Erase Voltage",
        L"Typ Timeout per Single Byte/Word Program",
        L"Typ Timeout for Multi-Byte Program",
        L"Typ Timeout per Individual Block Erase",
        L"Typ Timeout for Full Chip Erase",
        L"Max Timeout for Byte/Word Program",
        L"Max Timeout for Multi-Byte Program",
        L"Max Timeout per Individual Block Erase",
        L"Max Timeout for Full Chip Erase",
        L"Device Size",
        L"Flash Device Interface",
        L"Max Number of Bytes in Multi-Byte Program",
        L"Sectors",
    };
    ASSERT_EQ(std::size(labels), kCfiRowCount);
    for (size_t row = 0; row < kCfiRowCount; ++row)
        EXPECT_EQ(GetCfiRowLabel(row), labels[row]);
}

TEST(FlashInfo, FlashThatAnswersNothingStillGetsAReport) {
    SetManufacturerTablePath("");
    const OmFlashReport report = MakeFlashReport(OmCommandSet::Unknown, 2, {{}});
    EXPECT_EQ(report.heading, (OmReportRow{L"Parameter", {L"Chip 1 / D15-D0"}}));
    EXPECT_EQ(report.commandSet, (OmReportRow{L"Detected Command Set", {L"Unknown"}}));
    EXPECT_FALSE(report.commandSetKnown);
    EXPECT_EQ(report.chips, (std::vector<OmReportRow>{
                                {L"Manufacturer", {L"00h (Unknown)"}},
                                {L"Device Code", {L"00h"}},
                                {L"Common Flash Interface (CFI) Compliant", {L"No"}},
                            }));
    EXPECT_TRUE(report.cfi.empty());
}

TEST(FlashInfo, ChipsWithDifferentTablesHaveDifferentColumns) {
    std::vector<uint8_t> shortTable = With(AmdTable(), kPrimaryTable, 27);
    shortTable[kPrimarySet] = 0x03;
    const OmFlashReport report = MakeFlashReport(
        OmCommandSet::AmdWord, 1,
        {{0x01, 0x7E, With(AmdTable(), kPrimaryTable, 28)}, {0x01, 0x7F, shortTable}});
    EXPECT_EQ(report.heading.values, (Rows{L"Chip 1 / D7-D0", L"Chip 2 / D15-D8"}));
    EXPECT_EQ(report.commandSet.values, (Rows{L"AMD (Word-by-Word Prog.)"}));
    EXPECT_TRUE(report.commandSetKnown);
    EXPECT_EQ(report.chips[1], (OmReportRow{L"Device Code", {L"7Eh", L"7Fh"}}));
    EXPECT_EQ(report.cfi, (std::vector<OmReportRow>{
                              {L"Primary Command Set", {L"AMD/Fujitsu Std", L"Intel Std"}},
                              {L"Alternative Command Set", {L"N/A", L"N/A"}},
                              {L"Vcc Min Program/Erase Voltage", {L"2.7 V", L""}},
                          }));
}
