#include "dialogs/SectorTexts.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<std::wstring>;

// 32 KiB: 2 x 8 KiB, then 1 x 16 KiB.
const OmFlashSectorLayout kSmall{{{2, 0x2000}, {1, 0x4000}}};

std::wstring GetLine(const std::wstring& text, unsigned number) {
    size_t start = 0;
    while (number-- > 0)
        start = text.find(L'\n', start) + 1;
    return text.substr(start, text.find(L'\n', start) - start);
}

} // namespace

TEST(SectorTexts, GroupTellsCountAndSize) {
    EXPECT_EQ(FormatSectorGroup({4, 8192}), L"4 x 8192 Bytes");
    EXPECT_EQ(FormatSectorGroup({0xFFFFFFFF, 0xFFFFFFFF}), L"4294967295 x 4294967295 Bytes");
}

TEST(SectorTexts, RowsOfOneChip) {
    EXPECT_EQ(FormatSectorRows(kSmall, 1),
              (Rows{L" 1) 0000h - 1FFFh, 8192", L" 2) 2000h - 3FFFh, 8192",
                    L" 3) 4000h - 7FFFh, 16384"}));
}

TEST(SectorTexts, RowsOfTwoChipsCoverTwiceTheAddresses) {
    const OmFlashSectorLayout layout{{{2, 65536}}};
    EXPECT_EQ(FormatSectorRows(layout, 2),
              (Rows{L" 1) 00000h - 1FFFFh, 2 x 65536", L" 2) 20000h - 3FFFFh, 2 x 65536"}));
}

TEST(SectorTexts, DigitsFollowTheLastAddress) {
    EXPECT_EQ(FormatSectorRows({{{1, 16}}}, 1), (Rows{L" 1) 0h - Fh, 16"}));
    EXPECT_EQ(FormatSectorRows({{{1, 17}}}, 1), (Rows{L" 1) 00h - 10h, 17"}));
    EXPECT_EQ(FormatSectorRows({{{1, 1}}}, 1), (Rows{L" 1) 0h - 0h, 1"}));
}

TEST(SectorTexts, TableOfNoSectors) {
    EXPECT_EQ(FormatSectorTable({}), L"       (no sectors defined)");
}

TEST(SectorTexts, TableHasTotalRuleAndRows) {
    EXPECT_EQ(FormatSectorTable(kSmall), L"       3 sectors total\n"
                                         L"       ---------------  \n"
                                         L" 1) 0000h - 1FFFh, 8192\n"
                                         L" 2) 2000h - 3FFFh, 8192\n"
                                         L" 3) 4000h - 7FFFh, 16384\n");
}

TEST(SectorTexts, RuleFitsTheNumberOfSectors) {
    const struct {
        uint32_t count;
        const wchar_t* rule;
    } cases[] = {
        {9, L"       ---------------  "},
        {10, L"       ---------------- "},
        {99, L"       ---------------- "},
        {100, L"       -----------------"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(GetLine(FormatSectorTable({{{c.count, 1024}}}), 1), c.rule) << c.count;
}

TEST(SectorTexts, AbsurdLayoutIsListedInPart) {
    const OmFlashSectorLayout layout{{{1000000000, 4096}, {1000000000, 0xFFFFFFFF}}};
    EXPECT_EQ(FormatSectorRows(layout, 4).size(), 8192u);
    EXPECT_EQ(FormatUnlistedNote(layout), L"Only the first 8192 of 2000000000 sectors are listed.");
    const std::wstring table = FormatSectorTable(layout);
    EXPECT_EQ(GetLine(table, 0), L"       2000000000 sectors total");
    EXPECT_EQ(GetLine(table, 2 + 8191), L"8192) 0000000001FFF000h - 0000000001FFFFFFh, 4096");
    EXPECT_EQ(GetLine(table, 2 + 8192), L"Only the first 8192 of 2000000000 sectors are listed.");
}

TEST(SectorTexts, CompleteListNeedsNoNote) {
    EXPECT_EQ(FormatUnlistedNote({{{8192, 1}}}), L"");
    EXPECT_EQ(FormatUnlistedNote({{{8193, 1}}}),
              L"Only the first 8192 of 8193 sectors are listed.");
}

TEST(SectorTexts, LastAddressOfTheGreatestSectorIsNotCut) {
    EXPECT_EQ(FormatSectorRows({{{1, 0xFFFFFFFF}}}, 4),
              (Rows{L" 1) 000000000h - 3FFFFFFFBh, 4 x 4294967295"}));
}

TEST(SectorTexts, SelectedCountHasASingular) {
    EXPECT_EQ(FormatSelectedCount(0), L"0 sectors selected");
    EXPECT_EQ(FormatSelectedCount(1), L"1 sector selected");
    EXPECT_EQ(FormatSelectedCount(25), L"25 sectors selected");
}
