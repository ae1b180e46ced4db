#include "flash/ChainLayout.h"

#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

TEST(ChainLayout, RunsFromTheDeviceNearestTdoAndGivesUnusedOnesOneElement) {
    const std::vector<OmChainDevice> chain{
        MakeDevice("first", 3, {{0, "A", "OUTPUT2", "0"}, {1, "B", "OUTPUT2", "0"}}),
        OmChainDevice(), // unused: needs no BSDL data
        MakeDevice("last", 2, {{0, "C", "OUTPUT2", "0"}, {1, "D", "OUTPUT2", "1"}}),
    };
    const OmChainLayout layout = BuildChainLayout(chain, {true, false, true});
    EXPECT_EQ(layout.deviceCount, 3u);
    EXPECT_EQ(layout.offsets, (std::vector<uint32_t>{3, 2, 0}));
    // last: 0 1, BYPASS: 1, first: 0 0, and 1 for a cell without an entry
    EXPECT_EQ(BitsToText(layout.defaultImage, OmBitOrder::LowestFirst), "011001");
    EXPECT_EQ(layout.usedDevices, (std::vector<bool>{true, false, true}));
}

TEST(ChainLayout, CellTakesTheFirstSafeValueThatIsKnownOrOne) {
    const std::vector<OmChainDevice> chain{MakeDevice("dev", 3,
                                                      {{0, "A", "INPUT", "X"},
                                                       {0, "A", "OUTPUT2", "0"},
                                                       {1, "B", "INPUT", "X"},
                                                       {2, "C", "INPUT", "0"},
                                                       {2, "C", "OUTPUT2", "1"}})};
    EXPECT_EQ(BitsToText(BuildChainLayout(chain, {true}).defaultImage, OmBitOrder::LowestFirst),
              "010");
}

TEST(ChainLayout, EmptyChainHasAnEmptyImage) {
    EXPECT_TRUE(BuildChainLayout({}, {}).defaultImage.empty());
}
