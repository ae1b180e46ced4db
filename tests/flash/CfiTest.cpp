#include "flash/Cfi.h"

#include "tests/flash/FlashBench.h"

#include <gtest/gtest.h>

namespace {

struct Region {
    uint16_t count; // as in the table: minus 1
    uint16_t size;  // in 256 bytes
};

struct Table {
    uint16_t primary = 2;
    uint16_t primaryTable = 0x40;
    uint16_t alternative = 0;
    uint16_t alternativeTable = 0;
    uint16_t bufferExponent = 5;
    std::vector<Region> regions = {};

    OmCfiBuffer Bytes() const {
        OmCfiBuffer bytes(29);
        bytes[0] = 'Q';
        bytes[1] = 'R';
        bytes[2] = 'Y';
        const std::pair<size_t, uint16_t> words[] = {{3, primary},
                                                     {5, primaryTable},
                                                     {7, alternative},
                                                     {9, alternativeTable},
                                                     {26, bufferExponent}};
        for (const auto& [index, value] : words) {
            bytes[index] = static_cast<uint8_t>(value);
            bytes[index + 1] = static_cast<uint8_t>(value >> 8);
        }
        bytes[28] = static_cast<uint8_t>(regions.size());
        for (const Region& region : regions)
            for (const uint16_t value : {region.count, region.size}) {
                bytes.push_back(static_cast<uint8_t>(value));
                bytes.push_back(static_cast<uint8_t>(value >> 8));
            }
        return bytes;
    }
};

// A chip in query mode on the lane `shift` bits up: query byte n at address n << addressShift.
std::function<uint32_t(const BenchPins&)> QueryMode(const OmCfiBuffer& bytes, int addressShift,
                                                    int laneShift) {
    return [=](const BenchPins& pins) {
        const uint32_t n = pins.address >> addressShift;
        const bool inTable = n >= 0x10 && n - 0x10 < bytes.size();
        return uint32_t{inTable ? bytes[n - 0x10] : uint8_t{0xEE}} << laneShift;
    };
}

OmFlashSectorLayout Layout(std::initializer_list<OmSectorGroup> groups) {
    OmFlashSectorLayout layout;
    layout.groups = groups;
    return layout;
}

} // namespace

TEST(Cfi, ReadingPutsTheQueryCommandOnOneChipsLaneAndPipelinesTheBytes) {
    FlashBench bench({.addressPins = 12, .chips = 2, .wordSize = 1, .shift = 1});
    const OmCfiBuffer bytes = Table{.regions = {{3, 0x100}}}.Bytes();
    bench.cable.flash = QueryMode(bytes, 1, 8);
    OmCfiBuffer out{1, 2, 3};
    ReadCfi(bench.bus, 1, out);
    EXPECT_EQ(out, bytes);
    const std::vector<size_t> runs{34, 5, 3, 3, 1};
    EXPECT_EQ(bench.cable.runSizes, runs);
    const std::string log = bench.TakeLog();
    EXPECT_TRUE(log.starts_with(R"(
write and read
  0AA ZZZZ 0 1 1
  0AA 9800 0 1 0
  020 9800 0 1 1
  020 ZZZZ 0 1 1
  020 ZZZZ 0 0 1
  022 ZZZZ 0 0 1 r
  024 ZZZZ 0 0 1 r
)")) << log;
    EXPECT_TRUE(log.ends_with(R"(
  058 ZZZZ 0 0 1 r
  058 ZZZZ 0 0 1 r
write and read
  05A ZZZZ 0 0 1
  05C ZZZZ 0 0 1 r
  05E ZZZZ 0 0 1 r
  060 ZZZZ 0 0 1 r
  060 ZZZZ 0 0 1 r
write and read
  AAA ZZZZ 0 1 1
  AAA F0F0 0 1 0
  AAA F0F0 0 1 1 r
write and read
  000 ZZZZ 0 1 1
  000 FFFF 0 1 0
  000 FFFF 0 1 1 r
write and read
  000 ZZZZ 1 1 1 r
)")) << log;
}

TEST(Cfi, ChipWithoutQueryLettersHasNoTable) {
    for (const size_t letter : {0, 1, 2}) {
        FlashBench bench;
        OmCfiBuffer bytes = Table{.regions = {{3, 0x100}}}.Bytes();
        bytes[letter] = 'x';
        bench.cable.flash = QueryMode(bytes, 0, 0);
        OmCfiBuffer out;
        ReadCfi(bench.bus, 0, out);
        EXPECT_TRUE(out.empty());
        EXPECT_EQ(bench.cable.runSizes, (std::vector<size_t>{34, 3, 3, 1}));
    }
}

TEST(Cfi, TableWithoutRegionsIsReadInOneRun) {
    FlashBench bench;
    const OmCfiBuffer bytes = Table().Bytes();
    bench.cable.flash = QueryMode(bytes, 0, 0);
    OmCfiBuffer out;
    ReadCfi(bench.bus, 0, out);
    EXPECT_EQ(out, bytes);
    EXPECT_EQ(bench.cable.runSizes, (std::vector<size_t>{34, 3, 3, 1}));
}

TEST(Cfi, OnlyTheLowByteOfALaneCounts) {
    FlashBench bench;
    const OmCfiBuffer bytes = Table().Bytes();
    bench.cable.flash = [query = QueryMode(bytes, 0, 0)](const BenchPins& pins) {
        return query(pins) | 0x5A00;
    };
    OmCfiBuffer out;
    ReadCfi(bench.bus, 0, out);
    EXPECT_EQ(out, bytes);
}

TEST(Cfi, TableEndsAtTheFirstExtendedTableThatIsThere) {
    const struct {
        uint16_t primary;
        uint16_t alternative;
        uint32_t end;
    } cases[] = {{0x40, 0, 0x40},     {0x40, 0x31, 0x31}, {0x31, 0x40, 0x31}, {27, 0, 27},
                 {26, 0, 0xFFFFFFFF}, {0, 0, 0xFFFFFFFF}, {26, 0x40, 0x40}};

    for (const auto& row : cases)
        EXPECT_EQ(
            GetCfiTableEnd(
                Table{.primaryTable = row.primary, .alternativeTable = row.alternative}.Bytes()),
            row.end);
}

TEST(Cfi, CommandSetIsWhatAllChipsAgreeOn) {
    using Set = OmCommandSet;
    const OmCfiBuffer amd = Table{.primary = 2}.Bytes();
    const OmCfiBuffer intelExt = Table{.primary = 1, .bufferExponent = 6}.Bytes();
    const OmCfiBuffer intelStd = Table{.primary = 3, .bufferExponent = 6}.Bytes();
    const OmCfiBuffer none;

    const struct {
        const char* what;
        std::vector<OmCfiBuffer> chips;
        OmCfiFindings findings;
    } cases[] = {
        {"AMD buffered", {amd}, {Set::AmdBuffered, 32}},
        {"Intel buffered", {intelExt}, {Set::IntelExtended, 64}},
        {"Intel standard has no buffer", {intelStd}, {Set::IntelStandard, 0}},
        {"AMD, no buffer", {Table{.bufferExponent = 0}.Bytes()}, {Set::AmdWord, 0}},
        {"Intel, no buffer",
         {Table{.primary = 1, .bufferExponent = 0}.Bytes()},
         {Set::IntelStandard, 0}},
        {"buffer exponent out of range", {Table{.bufferExponent = 32}.Bytes()}, {Set::AmdWord, 0}},
        {"largest buffer", {Table{.bufferExponent = 31}.Bytes()}, {Set::AmdBuffered, 0x80000000}},
        {"the smallest buffer counts",
         {amd, Table{.bufferExponent = 3}.Bytes()},
         {Set::AmdBuffered, 8}},
        {"table too short for the buffer size",
         {Table{.primaryTable = 43}.Bytes()},
         {Set::AmdWord, 0}},
        {"table just long enough", {Table{.primaryTable = 44}.Bytes()}, {Set::AmdBuffered, 32}},
        {"no extended table at all", {Table{.primaryTable = 0}.Bytes()}, {Set::AmdBuffered, 32}},
        {"alternative set",
         {Table{.primary = 0x100, .alternative = 2}.Bytes()},
         {Set::AmdBuffered, 32}},
        {"Intel goes before AMD",
         {Table{.primary = 2, .alternative = 1}.Bytes()},
         {Set::IntelExtended, 32}},
        {"unknown set", {Table{.primary = 0x100}.Bytes()}, {Set::Unknown, 0}},
        {"chips differ", {amd, intelExt}, {Set::Unknown, 0}},
        {"Intel chips of both kinds", {intelExt, intelStd}, {Set::IntelStandard, 0}},
        {"second chip without a table", {amd, none}, {Set::Unknown, 0}},
        {"first chip without a table", {none, amd}, {Set::Unknown, 0}},
        {"no table", {none}, {Set::Unknown, 0}},
    };

    for (const auto& row : cases) {
        const OmCfiFindings found = FindCommandSetInCfi(row.chips);
        EXPECT_EQ(found.commandSet, row.findings.commandSet) << row.what;
        EXPECT_EQ(found.bufferBytes, row.findings.bufferBytes) << row.what;
    }
}

TEST(Cfi, SectorsAreTakenIfAllChipsGiveTheSame) {
    const OmCfiBuffer boot = Table{.regions = {{7, 0x20}, {126, 0x100}}}.Bytes();
    const OmCfiBuffer uniform = Table{.regions = {{127, 0x100}}}.Bytes();
    const OmCfiBuffer bulk = Table{}.Bytes(); // no region: erases as a whole
    const OmCfiBuffer none;
    std::vector<Region> many; // 16 million sectors of 128 and 256 bytes
    for (uint16_t region = 0; region < 255; ++region)
        many.push_back({0xFFFF, static_cast<uint16_t>(region % 2)});
    const OmCfiBuffer manySectors = Table{.primaryTable = 0x500, .regions = many}.Bytes();

    const struct {
        const char* what;
        std::vector<OmCfiBuffer> chips;
        bool found;
        OmFlashSectorLayout layout;
    } cases[] = {
        {"boot sectors", {boot}, true, Layout({{8, 0x2000}, {127, 0x10000}})},
        {"two chips", {uniform, uniform}, true, Layout({{128, 0x10000}})},
        {"two chips that differ", {uniform, boot}, false, {}},
        {"second without a table", {uniform, none}, false, {}},
        {"first without a table", {none, uniform}, false, {}},
        {"no table", {none}, false, {}},
        {"no regions", {bulk}, true, {}},
        {"no regions on both", {bulk, bulk}, true, {}},
        {"no regions on one", {bulk, uniform}, false, {}},
        {"size field 0", {Table{.regions = {{0, 0}}}.Bytes()}, true, Layout({{1, 128}})},
        {"largest counts",
         {Table{.regions = {{0xFFFF, 0xFF}}}.Bytes()},
         true,
         Layout({{0x10000, 0xFF00}})},
        {"largest sizes",
         {Table{.regions = {{0xFF, 0xFFFF}}}.Bytes()},
         true,
         Layout({{0x100, 0xFFFF00}})},
        {"more than 32 bits of addresses reach",
         {Table{.regions = {{0xFFFF, 0x101}}}.Bytes()},
         false,
         {}},
        {"more sectors than could be listed", {manySectors}, false, {}},
        {"table too short for its regions",
         {Table{.primaryTable = 0x34, .regions = {{7, 0x20}, {126, 0x100}}}.Bytes()},
         false,
         {}},
        {"table just long enough",
         {Table{.primaryTable = 0x35, .regions = {{7, 0x20}, {126, 0x100}}}.Bytes()},
         true,
         Layout({{8, 0x2000}, {127, 0x10000}})},
        {"table too short for the number of regions",
         {Table{.primaryTable = 44}.Bytes()},
         false,
         {}},
    };

    for (const auto& row : cases) {
        OmFlashSectorLayout layout;
        EXPECT_EQ(FindSectorsInCfi(row.chips, layout), row.found) << row.what;
        EXPECT_TRUE(layout == row.layout) << row.what;
    }
}

TEST(Cfi, ValuesAreLowByteFirstAndZeroBeyondTheEnd) {
    const OmCfiBuffer bytes{0x11, 0x22, 0x33};
    EXPECT_EQ(GetCfiValue(bytes, 0), 0x2211u);
    EXPECT_EQ(GetCfiValue(bytes, 1), 0x3322u);
    EXPECT_EQ(GetCfiValue(bytes, 2), 0u);
    EXPECT_EQ(GetCfiValue({}, 26), 0u);
}
