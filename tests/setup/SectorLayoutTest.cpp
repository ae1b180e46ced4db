#include "setup/SectorLayout.h"

#include <gtest/gtest.h>

namespace {

// A bottom-boot chip of 64 KiB: 1 x 16 KiB, 2 x 8 KiB, 1 x 32 KiB.
const OmFlashSectorLayout kBootLayout{{{1, 0x4000}, {2, 0x2000}, {1, 0x8000}}};

using Groups = std::vector<OmSectorGroup>;

struct RangeCase {
    uint32_t chips;
    uint32_t from;
    uint32_t to;
    uint32_t first;
    uint32_t count;
};

TEST(SectorLayout, RangeOfSectorsTouchingBytes) {
    const RangeCase cases[] = {
        {1, 0x0000, 0x0000, 0, 1},   {1, 0x0000, 0x3FFF, 0, 1},     {1, 0x3FFF, 0x4000, 0, 2},
        {1, 0x4000, 0x5FFF, 1, 1},   {1, 0x5FFF, 0x6000, 1, 2},     {1, 0x6000, 0x8000, 2, 2},
        {1, 0x0000, 0xFFFF, 0, 4},   {1, 0x0000, 0xFFFFFFFF, 0, 4}, {2, 0x7FFF, 0x8000, 0, 2},
        {2, 0x10000, 0x1FFFF, 3, 1}, {4, 0x0FFFF, 0x10000, 0, 2},   {3, 0xC000, 0x11FFF, 1, 1},
    };
    for (const RangeCase& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.chips << " chips, " << c.from << " to " << c.to);
        uint32_t first = 99;
        uint32_t count = 99;
        kBootLayout.GetSectorRange(c.chips, c.from, c.to, first, count);
        EXPECT_EQ(count, c.count);
        EXPECT_EQ(first, c.first);
    }
}

TEST(SectorLayout, ChipHasAtMostAMillionSectorsAndFourGigabytes) {
    EXPECT_TRUE(OmFlashSectorLayout({{{0x100000, 1}}}).FitsAChip());
    EXPECT_FALSE(OmFlashSectorLayout({{{0x100001, 1}}}).FitsAChip());
    EXPECT_FALSE(OmFlashSectorLayout({{{0x80000, 1}, {0x80001, 2}}}).FitsAChip());
    EXPECT_TRUE(OmFlashSectorLayout({{{0x10000, 0xFFFF}, {1, 0xFFFF}}}).FitsAChip());
    EXPECT_FALSE(OmFlashSectorLayout({{{0x10000, 0x10000}, {1, 1}}}).FitsAChip());
}

TEST(SectorLayout, RangePastTheLayoutIsEmpty) {
    uint32_t first = 0;
    uint32_t count = 99;
    kBootLayout.GetSectorRange(1, 0x10000, 0x20000, first, count);
    EXPECT_EQ(count, 0u);
    count = 99;
    OmFlashSectorLayout().GetSectorRange(1, 0, 0x20000, first, count);
    EXPECT_EQ(count, 0u);
}

TEST(SectorLayout, RangeOfBillionsOfSectorsIsNotCountedOneByOne) {
    const OmFlashSectorLayout layout{{{0xFFFFFFFF, 1}, {0xFFFFFFFF, 0x80000000}}};
    uint32_t first = 0;
    uint32_t count = 0;
    layout.GetSectorRange(1, 16, 0xFFFFFFFF, first, count);
    EXPECT_EQ(first, 16u);
    EXPECT_EQ(count, 0xFFFFFFF0u);
}

TEST(SectorLayout, SectorGivesOffsetAndSizeOfOneChip) {
    struct {
        uint32_t index, offset, size;
    } const cases[] = {
        {0, 0, 0x4000}, {1, 0x4000, 0x2000}, {2, 0x6000, 0x2000}, {3, 0x8000, 0x8000}};

    for (const auto& c : cases) {
        uint32_t offset = 0;
        uint32_t size = 0;
        EXPECT_TRUE(kBootLayout.GetSector(c.index, offset, size));
        EXPECT_EQ(offset, c.offset);
        EXPECT_EQ(size, c.size);
    }
    uint32_t offset = 0;
    uint32_t size = 0;
    EXPECT_FALSE(kBootLayout.GetSector(4, offset, size));
}

TEST(SectorLayout, SectorBeyondTheAddressSpaceDoesNotExist) {
    const OmFlashSectorLayout layout{{{5, 0x40000000}}};
    uint32_t offset = 0;
    uint32_t size = 0;
    EXPECT_TRUE(layout.GetSector(3, offset, size));
    EXPECT_EQ(offset, 0xC0000000u);
    EXPECT_FALSE(layout.GetSector(4, offset, size)); // would read as offset 0
}

TEST(SectorLayout, OffsetsLeaveOutWhatIsBeyondTheLayout) {
    OmSectorRange offsets{1, 2, 3};
    kBootLayout.ToOffsets({0, 2, 3, 4, 1000}, offsets);
    EXPECT_EQ(offsets, (OmSectorRange{0, 0x6000, 0x8000}));
}

TEST(SectorLayout, CountsSectorsAndBytes) {
    EXPECT_EQ(kBootLayout.GetSectorCount(), 4u);
    EXPECT_EQ(kBootLayout.GetSizeBytes(), 0x10000u);
    EXPECT_TRUE(OmFlashSectorLayout().IsEmpty());
    EXPECT_EQ((OmFlashSectorLayout{{{0xFFFFFFFF, 0xFFFFFFFF}}}.GetSizeBytes()),
              0xFFFFFFFE00000001u);
}

TEST(SectorLayout, DescribesSelectionsAsRunsOfArrayAddresses) {
    const OmFlashSectorLayout small{{{8, 0x1000}}};
    const OmFlashSectorLayout large{{{16, 0x20000000}}};

    struct {
        const OmFlashSectorLayout& layout;
        OmSectorRange indexes;
        uint32_t chips;
        const wchar_t* text;
    } const cases[] = {
        {small, {}, 1, L""},
        {OmFlashSectorLayout(), {1}, 1, L""},
        {small, {0}, 1, L"1 sector: 00000h - 00FFFh"},
        {small, {0, 1, 2, 7}, 1, L"4 sectors: 00000h - 02FFFh, 07000h - 07FFFh"},
        {small, {1, 3, 5}, 2, L"3 sectors: 02000h - 03FFFh, 06000h - 07FFFh, 0A000h - 0BFFFh"},
        {kBootLayout, {0, 1, 2, 3}, 4, L"4 sectors: 00000h - 3FFFFh"},
        {large, {7}, 2, L"1 sector: 1C0000000h - 1FFFFFFFFh"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(c.layout.Describe(c.indexes, c.chips), c.text);
}

TEST(SectorLayout, InsertPutsBeforeThePositionOrAtTheEnd) {
    struct {
        int position;
        Groups expected;
    } const cases[] = {
        {0, {{5, 50}, {1, 10}, {2, 20}}},  {1, {{1, 10}, {5, 50}, {2, 20}}},
        {2, {{1, 10}, {2, 20}, {5, 50}}},  {-1, {{1, 10}, {2, 20}, {5, 50}}},
        {99, {{1, 10}, {2, 20}, {5, 50}}},
    };

    for (const auto& c : cases) {
        OmFlashSectorLayout layout{{{1, 10}, {2, 20}}};
        layout.Insert(5, 50, c.position);
        EXPECT_EQ(layout.groups, c.expected) << "position " << c.position;
    }
}

TEST(SectorLayout, EveryEditJoinsNeighboursOfEqualSize) {
    OmFlashSectorLayout layout{{{1, 10}, {2, 20}}};
    layout.Insert(3, 20, 1);
    EXPECT_EQ(layout.groups, (Groups{{1, 10}, {5, 20}}));

    layout = {{{1, 10}, {2, 20}, {4, 10}}};
    layout.Erase(1);
    EXPECT_EQ(layout.groups, (Groups{{5, 10}}));

    layout = {{{1, 10}, {2, 20}, {4, 10}}};
    layout.SwapWithNext(1);
    EXPECT_EQ(layout.groups, (Groups{{5, 10}, {2, 20}}));
}

TEST(SectorLayout, EditsAtAnIndexBehindTheEndDoNothing) {
    const Groups groups{{1, 10}, {2, 20}};
    OmFlashSectorLayout layout{groups};
    layout.SwapWithNext(1);
    layout.SwapWithNext(2);
    layout.Erase(2);
    EXPECT_EQ(layout.groups, groups);
    layout.SwapWithNext(0);
    EXPECT_EQ(layout.groups, (Groups{{2, 20}, {1, 10}}));
}

TEST(SectorLayout, NormaliseTellsWhetherAnythingMerged) {
    OmFlashSectorLayout layout{{{1, 10}, {2, 10}, {3, 10}, {4, 20}, {5, 20}, {6, 10}}};
    EXPECT_TRUE(layout.Normalise());
    EXPECT_EQ(layout.groups, (Groups{{6, 10}, {9, 20}, {6, 10}}));
    EXPECT_FALSE(layout.Normalise());
}

TEST(SectorLayout, MergedCountDoesNotWrap) {
    OmFlashSectorLayout layout{{{0xFFFFFFFF, 10}, {2, 10}}};
    EXPECT_TRUE(layout.Normalise());
    EXPECT_EQ(layout.groups, (Groups{{0xFFFFFFFF, 10}}));
}

} // namespace
