#include "cli/FlashReportText.h"

#include <gtest/gtest.h>

namespace {

OmFlashReport TwoChips() {
    OmFlashReport report;
    report.heading = {L"Parameter", {L"Chip 1", L"Chip 2"}};
    report.commandSet = {L"Set", {L"a name longer than a column"}};
    report.commandSetKnown = true;
    report.chips = {{L"Code", {L"22h", L"7Eh"}}};
    report.cfiTitle = L"Table";
    return report;
}

TEST(FlashReportText, RowsAreLinesAndValuesStandInColumns) {
    EXPECT_EQ(MakeFlashReportText(TwoChips()), L"Parameter  Chip 1  Chip 2\n"
                                               L"Set        a name longer than a column\n"
                                               L"Code       22h     7Eh\n");
}

TEST(FlashReportText, TableFollowsBehindItsTitleInTheSameColumns) {
    OmFlashReport report = TwoChips();
    report.cfi = {{L"Sectors", {L"8 x 8192,\n4 x 65536", L""}}};
    EXPECT_EQ(MakeFlashReportText(report), L"Parameter  Chip 1               Chip 2\n"
                                           L"Set        a name longer than a column\n"
                                           L"Code       22h                  7Eh\n"
                                           L"\n"
                                           L"Table\n"
                                           L"Sectors    8 x 8192, 4 x 65536  \n");
}

// Unlike in a page, nothing in a text is markup.
TEST(FlashReportText, NamesStandAsTheyAre) {
    OmFlashReport report = TwoChips();
    report.chips = {{L"Maker", {L"01h (A & <B>)", L"2"}}};
    EXPECT_NE(MakeFlashReportText(report).find(L"Maker      01h (A & <B>)  2\n"),
              std::wstring::npos);
}

} // namespace
