#include "flash/WaitTuner.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// The waits tried for a flash that needs `need` scans.
std::vector<int> Search(int need, int maximum, size_t passes) {
    OmWaitTuner tuner;
    tuner.maximum = maximum;
    std::vector<int> waits{0};
    while (waits.size() < passes)
        waits.push_back(NextWaitScans(tuner, waits.back() >= need, waits.back()));
    return waits;
}

} // namespace

TEST(WaitTuner, SettlesOnTheShortestWaitThatSuffices) {
    const struct {
        int need;
        int maximum;
        std::vector<int> waits;
    } cases[] = {
        {0, 1000, {0, 0, 0}},
        {1, 1000, {0, 1, 1, 1}},
        {5, 1000, {0, 1, 4, 16, 9, 6, 5, 5, 5}},
        {37, 1000, {0, 1, 4, 16, 32, 64, 47, 39, 35, 39, 36, 39, 37, 37, 37}},
        {1000, 20, {0, 1, 4, 16, 20, 20, 20}},
        {20, 20, {0, 1, 4, 16, 20, 17, 20, 18, 20, 19, 20, 20}},
        {1000, 1, {0, 1, 1, 1}},
    };

    for (const auto& row : cases)
        EXPECT_EQ(Search(row.need, row.maximum, row.waits.size()), row.waits)
            << row.need << " of at most " << row.maximum;
}

TEST(WaitTuner, GrowsFourfoldUpToEightAndTwofoldFromNine) {
    const struct {
        int current;
        int next;
    } cases[] = {{0, 1}, {1, 4}, {2, 8}, {8, 32}, {9, 18}, {64, 128}, {6000, 10000}};

    for (const auto& row : cases) {
        OmWaitTuner tuner{10000, -1, -1};
        EXPECT_EQ(NextWaitScans(tuner, false, row.current), row.next) << row.current;
        EXPECT_EQ(tuner.failed, row.current);
    }
}

TEST(WaitTuner, FailureBelowAKnownGoodValueGoesBackToIt) {
    OmWaitTuner tuner{1000, 4, 16};
    EXPECT_EQ(NextWaitScans(tuner, false, 9), 16);
    EXPECT_EQ(tuner.failed, 9);
    EXPECT_EQ(tuner.good, 16);
}

TEST(WaitTuner, FailureAtTheGoodValueForgetsIt) {
    OmWaitTuner tuner{1000, 8, 9};
    EXPECT_EQ(NextWaitScans(tuner, false, 9), 18);
    EXPECT_EQ(tuner.failed, 9);
    EXPECT_EQ(tuner.good, -1);
}

TEST(WaitTuner, SuccessBelowAFailedValueStays) {
    OmWaitTuner tuner{1000, 20, -1};
    EXPECT_EQ(NextWaitScans(tuner, true, 7), 7);
    EXPECT_EQ(tuner.good, 7);
}
