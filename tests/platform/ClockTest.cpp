#include "tests/support/VirtualClock.h"

#include <gtest/gtest.h>

TEST(Clock, TheHostsClockMovesForward) {
    OmClock& clock = GetClock();
    const uint64_t before = clock.Milliseconds();
    clock.SleepMilliseconds(5);
    EXPECT_GE(clock.Milliseconds(), before + 4);
    EXPECT_GT(clock.PerformanceFrequency(), 0);
}

TEST(Clock, AVirtualSleepTakesNoTimeAndAdvancesTheClock) {
    VirtualClock virtualClock;
    const int64_t before = GetClock().Seconds();
    GetClock().SleepMilliseconds(120000);
    EXPECT_EQ(GetClock().Seconds(), before + 120);
}
