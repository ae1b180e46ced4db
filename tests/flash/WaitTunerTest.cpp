#include "flash/WaitTuner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>

namespace {

constexpr int kLongest = 4000;

// Items alone, as the loop sends them: one look, or looks from two scans to a sixteenth of the time
// apart.
void SendItem(OmWaitTuner& tuner, int need) {
    int tooShort = -1;
    int look = tuner.Wait();
    for (int looks = tuner.Measures() ? 16 : 1; looks > 0; --looks) {
        if (look >= need)
            return tuner.Took(tooShort, look);
        tooShort = look;
        look += look / 16 + 2;
    }
    tuner.TookLonger(tooShort);
}

// The items it takes until a wait is proven.
int ItemsUntilProven(OmWaitTuner& tuner, const std::function<int()>& need) {
    int items = 0;
    for (; !tuner.IsProven() && items < 1000; ++items)
        SendItem(tuner, need());
    return items;
}

} // namespace

TEST(WaitTuner, FlashThatNeedsNoWaitIsProvenByOneItem) {
    OmWaitTuner tuner(kLongest, 0, 0);
    EXPECT_EQ(tuner.Wait(), 0);
    EXPECT_FALSE(tuner.Measures());
    tuner.Took(-1, 0);
    EXPECT_TRUE(tuner.IsProven());
    EXPECT_EQ(tuner.Wait(), 0);
}

TEST(WaitTuner, KnownWaitIsProvenByOneItemAndStays) {
    OmWaitTuner tuner(kLongest, 37, 500);
    EXPECT_EQ(tuner.Wait(), 37);
    tuner.Took(-1, 37);
    EXPECT_TRUE(tuner.IsProven());
    EXPECT_EQ(tuner.Wait(), 37);
}

TEST(WaitTuner, WaitsAreCutToTheLongest) {
    EXPECT_EQ(OmWaitTuner(20, 5000, 0).Wait(), 20);
    EXPECT_EQ(OmWaitTuner(20, 0, 5000).Wait(), 20);
}

// Short waits are found to the scan; longer ones get a margin of a sixteenth at most.
TEST(WaitTuner, ConstantTimeIsFoundWithASmallMargin) {
    const struct {
        int need;
        int typical;
        int least;
        int most;
    } cases[] = {{1, 0, 1, 1},         {5, 0, 5, 5},          {12, 0, 12, 12},
                 {37, 0, 37, 42},      {300, 0, 300, 340},    {538, 0, 538, 600},
                 {538, 300, 538, 600}, {538, 2000, 538, 600}, {3000, 0, 3000, 3330},
                 {2, 3000, 2, 2}};

    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.need << " from " << row.typical);
        OmWaitTuner tuner(kLongest, 0, row.typical);
        EXPECT_LE(ItemsUntilProven(tuner, [&] { return row.need; }), 28);
        EXPECT_GE(tuner.Wait(), row.least);
        EXPECT_LE(tuner.Wait(), row.most);
    }
}

// Times from a third to all of the maximum: a wait that is too short for one item in a hundred
// costs recoveries, and loses nothing.
TEST(WaitTuner, TimesThatVaryGetAMargin) {
    uint32_t state = 1;
    int tooShort = 0;
    for (int run = 0; run < 1000; ++run) {
        OmWaitTuner tuner(kLongest, 0, 150);
        const auto need = [&] {
            state = state * 1664525 + 1013904223; // Numerical Recipes' generator
            return 100 + static_cast<int>((state >> 16) % 201);
        };
        EXPECT_LE(ItemsUntilProven(tuner, need), 90);
        EXPECT_LE(tuner.Wait(), 440);
        tooShort += tuner.Wait() < 297 ? 1 : 0;
    }
    EXPECT_LE(tooShort, 20);
}

TEST(WaitTuner, FlashSlowerThanTheLongestWaitGetsTheLongest) {
    OmWaitTuner tuner(20, 0, 0);
    EXPECT_LE(ItemsUntilProven(tuner, [] { return 1000; }), 4);
    EXPECT_EQ(tuner.Wait(), 20);
}

TEST(WaitTuner, WaitThatWasTooShortIsMeasuredAnewAndGetsLonger) {
    OmWaitTuner tuner(kLongest, 40, 0);
    tuner.Took(-1, 40);
    tuner.WasTooShort();
    EXPECT_FALSE(tuner.IsProven());
    ItemsUntilProven(tuner, [] { return 40; });
    EXPECT_EQ(tuner.Wait(), 51);
    EXPECT_TRUE(tuner.IsProven());
}

TEST(WaitTuner, LongestWaitThatWasTooShortStays) {
    OmWaitTuner tuner(40, 40, 0);
    tuner.Took(-1, 40);
    tuner.WasTooShort();
    EXPECT_TRUE(tuner.IsProven());
    EXPECT_EQ(tuner.Wait(), 40);
}
