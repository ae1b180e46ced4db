#include "setup/FlashArrayChoices.h"

#include "setup/SectorLayout.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> Widths(int bytes) {
    const auto labels = GetMaxWidthLabels(bytes);
    return {labels.begin(), labels.end()};
}

} // namespace

TEST(FlashArrayChoices, OrganisationsStandForChipsAndBytes) {
    const struct {
        const char* label;
        int chips;
        int bytes;
    } rows[] = {
        {"8-bit  (1 chip x 8-bit)", 1, 1},   {"16-bit  (1 chip x 16-bit)", 1, 2},
        {"16-bit  (2 chips x 8-bit)", 2, 1}, {"24-bit  (3 chips x 8-bit)", 3, 1},
        {"32-bit  (1 chip x 32-bit)", 1, 4}, {"32-bit  (2 chips x 16-bit)", 2, 2},
        {"32-bit  (4 chips x 8-bit)", 4, 1},
    };

    ASSERT_EQ(GetBusOrganisations().size(), 7u);
    for (size_t row = 0; row < 7; ++row) {
        EXPECT_STREQ(GetBusOrganisations()[row].label, rows[row].label);
        EXPECT_EQ(GetBusOrganisations()[row].chipCount, rows[row].chips);
        EXPECT_EQ(GetBusOrganisations()[row].wordSize, rows[row].bytes);
        EXPECT_EQ(FindBusOrganisation(rows[row].chips, rows[row].bytes), static_cast<int>(row));
    }
    EXPECT_EQ(FindBusOrganisation(-1, -1), -1);
    EXPECT_EQ(FindBusOrganisation(4, 2), -1);
}

TEST(FlashArrayChoices, WidthsDependOnTheBytes) {
    using Labels = std::vector<std::string>;
    EXPECT_EQ(Widths(1),
              (Labels{"8-bit only capable", "16-bit capable operating in 8-bit mode (BYTE# is low)",
                      "32-bit capable operating in 8-bit mode (BYTE# is low)"}));
    EXPECT_EQ(Widths(2), (Labels{"16-bit maximum capable",
                                 "32-bit capable operating in 16-bit mode (WORD# is low)"}));
    EXPECT_EQ(Widths(4), (Labels{"32-bit"}));
    EXPECT_EQ(Widths(-1), Labels());
}

TEST(FlashArrayChoices, CommandSetsStandInTheOrderInWhichTheyAreStored) {
    const auto labels = GetCommandSetLabels();
    EXPECT_EQ(
        (std::vector<std::string>{labels.begin(), labels.end()}),
        (std::vector<std::string>{"Auto-Detect (Recommended)", "Intel Std (Word-by-Word Prog.)",
                                  "AMD (Word-by-Word Prog.)"}));
}

TEST(FlashArrayChoices, SectorSummary) {
    EXPECT_EQ(DescribeSectorGroups({}), L"(no sectors defined)");
    EXPECT_EQ(DescribeSectorGroups({{{8, 8192}}}), L"8 x 8192.");
    EXPECT_EQ(DescribeSectorGroups({{{8, 8192}, {127, 65536}}}), L"8 x 8192, 127 x 65536.");
}
