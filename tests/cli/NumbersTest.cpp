#include "cli/Numbers.h"

#include <gtest/gtest.h>

namespace {

constexpr auto kNone32 = std::optional<uint32_t>();

TEST(CliNumbers, OffsetsAreHexadecimalUnlessTheyHaveAUnit) {
    struct {
        const char* text;
        std::optional<uint32_t> expected;
    } const cases[] = {
        {"0", 0},
        {"10", 0x10},
        {"0x10", 0x10},
        {"0X1f", 0x1F},
        {"FFFFFFFF", 0xFFFFFFFF},
        {"64K", 65536},
        {"2M", 2097152},
        {"4k", 4096},
        {"4095M", 4293918720},
        {"100000000", kNone32},
        {"4096M", kNone32},
        {"", kNone32},
        {"0x", kNone32},
        {"K", kNone32},
        {"10h", kNone32},
        {"-1", kNone32},
        {" 1", kNone32},
        {"1 ", kNone32},
        {"FK", kNone32},
        {"0xx1", kNone32},
    };

    for (const auto& c : cases)
        EXPECT_EQ(ParseOffset(c.text), c.expected) << c.text;
}

TEST(CliNumbers, SizesAreDecimalAndAtLeastOne) {
    struct {
        const char* text;
        std::optional<uint32_t> expected;
    } const cases[] = {
        {"10", 10},
        {"0x10", 16},
        {"64K", 65536},
        {"1M", 1048576},
        {"1", 1},
        {"0", kNone32},
        {"0K", kNone32},
        {"1F", kNone32},
        {"1.5M", kNone32},
        {"", kNone32},
        {"4294967295", 4294967295},
        {"4294967296", kNone32},
        {"99999999999999999999", kNone32},
    };

    for (const auto& c : cases)
        EXPECT_EQ(ParseSize(c.text), c.expected) << c.text;
}

TEST(CliNumbers, FrequenciesTakeDecimalUnitsAndFractions) {
    constexpr auto kNone = std::optional<int32_t>();

    struct {
        const char* text;
        std::optional<int32_t> expected;
    } const cases[] = {
        {"6000000", 6000000}, {"6M", 6000000},   {"1.5M", 1500000},     {"200k", 200000},
        {"200K", 200000},     {"30M", 30000000}, {"1000M", 1000000000}, {"0", kNone},
        {"-1", kNone},        {"", kNone},       {"M", kNone},          {"1e6", kNone},
        {"nan", kNone},       {"inf", kNone},    {"6 M", kNone},        {"1001M", kNone},
        {"0.1", kNone},
    };

    for (const auto& c : cases)
        EXPECT_EQ(ParseFrequency(c.text), c.expected) << c.text;
}

TEST(CliNumbers, SectorListsAreNumbersAndRuns) {
    using Runs = std::vector<OmSectorRun>;

    struct {
        const char* text;
        std::optional<Runs> expected;
    } const cases[] = {
        {"0", Runs{{0, 0}}},
        {"0-3,7", Runs{{0, 3}, {7, 7}}},
        {"7,0-3", Runs{{7, 7}, {0, 3}}},
        {"4294967295", Runs{{4294967295, 4294967295}}},
        {"", std::nullopt},
        {",", std::nullopt},
        {"1,", std::nullopt},
        {"3-1", std::nullopt},
        {"1-", std::nullopt},
        {"-1", std::nullopt},
        {"1-2-3", std::nullopt},
        {"0x1", std::nullopt},
        {"4294967296", std::nullopt},
    };

    for (const auto& c : cases)
        EXPECT_TRUE(ParseSectorList(c.text) == c.expected) << c.text;
}

} // namespace
