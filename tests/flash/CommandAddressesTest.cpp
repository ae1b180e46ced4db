#include "flash/CommandAddresses.h"

#include "flash/CommandSet.h"

#include <gtest/gtest.h>

TEST(CommandAddresses, FollowTheShift) {
    const struct {
        int shift;
        OmCommandAddresses addresses;
    } cases[] = {
        {0, {0x55555555, 0xAAAAAAAA, 1, 0x55, 0}},  {1, {0xAAAAAAAA, 0x55555554, 2, 0xAA, 1}},
        {2, {0x55555554, 0xAAAAAAA8, 4, 0x154, 2}}, {-1, {0x55555555, 0xAAAAAAAA, 1, 0x55, 0}},
        {3, {0x55555555, 0xAAAAAAAA, 1, 0x55, 0}},
    };

    for (const auto& row : cases) {
        const OmCommandAddresses& found = GetCommandAddresses(row.shift);
        EXPECT_EQ(found.unlock1, row.addresses.unlock1) << row.shift;
        EXPECT_EQ(found.unlock2, row.addresses.unlock2) << row.shift;
        EXPECT_EQ(found.identifier, row.addresses.identifier) << row.shift;
        EXPECT_EQ(found.cfiEntry, row.addresses.cfiEntry) << row.shift;
        EXPECT_EQ(found.shift, row.addresses.shift) << row.shift;
    }
}

TEST(CommandSet, NamesAreThoseTheUserChoosesFrom) {
    EXPECT_EQ(GetCommandSetName(OmCommandSet::Unknown), L"Unknown");
    EXPECT_EQ(GetCommandSetName(OmCommandSet::IntelStandard), L"Intel Std (Word-by-Word Prog.)");
    EXPECT_EQ(GetCommandSetName(OmCommandSet::IntelExtended), L"Intel Ext (Buffered Prog.)");
    EXPECT_EQ(GetCommandSetName(OmCommandSet::AmdWord), L"AMD (Word-by-Word Prog.)");
    EXPECT_EQ(GetCommandSetName(OmCommandSet::AmdBuffered), L"AMD (Buffered Prog.)");
}
