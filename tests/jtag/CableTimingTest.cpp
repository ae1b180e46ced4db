#include "jtag/CableTiming.h"

#include "tests/support/VirtualClock.h"

#include <deque>
#include <gtest/gtest.h>

namespace {

// A counter that gives these values and then goes on in steps of one.
class ScriptedCounter : public VirtualClock {
  public:
    int64_t PerformanceFrequency() override { return frequency; }

    int64_t PerformanceCounter() override {
        ++looks;
        if (!values.empty()) {
            last = values.front();
            values.pop_front();
        } else {
            ++last;
        }
        return last;
    }

    int64_t frequency = 1000000;
    std::deque<int64_t> values;
    int64_t last = 0;
    int looks = 0;
};

struct WaitCase {
    double microseconds;
    int looks; // at the counter, the first one included
};

} // namespace

TEST(CableTiming, MeasuresWhatALookAtTheCounterCosts) {
    VirtualClock clock;
    clock.stepMicroseconds = 2;
    const OmCableTiming timing;
    EXPECT_EQ(timing.ticksPerMicrosecond, 1.0);
    EXPECT_EQ(timing.callOverhead, 2.0);
}

TEST(CableTiming, OverheadOfThreeMicrosecondsOrMoreIsNotBelieved) {
    VirtualClock clock;
    clock.stepMicroseconds = 3;
    EXPECT_EQ(OmCableTiming().callOverhead, 0.0);
}

TEST(CableTiming, TakesTheSmallestDifferenceThatIsNotNegative) {
    ScriptedCounter clock;
    clock.frequency = 4000000;
    // A start, one hundred pairs: two apart, then one that runs backward, then seven apart.
    clock.values = {0, 10, 12, 20, 15};
    for (int64_t pass = 0; pass < 98; ++pass) {
        clock.values.push_back(100 + 20 * pass);
        clock.values.push_back(107 + 20 * pass);
    }
    const OmCableTiming timing;
    EXPECT_EQ(timing.ticksPerMicrosecond, 4.0);
    EXPECT_EQ(timing.callOverhead, 0.5);
}

TEST(CableTiming, WithoutACounterAWaitReturnsAtOnce) {
    ScriptedCounter clock;
    clock.frequency = 0;
    const OmCableTiming timing;
    EXPECT_EQ(timing.ticksPerMicrosecond, -1.0);
    EXPECT_EQ(timing.callOverhead, 0.0);
    timing.Wait(1000000);
    EXPECT_EQ(clock.looks, 0);
}

TEST(CableTiming, CounterThatStandsStillCountsAsNone) {
    VirtualClock clock; // no step: every look gives the same
    const OmCableTiming timing;
    EXPECT_EQ(timing.ticksPerMicrosecond, -1.0);
    timing.Wait(1000000);
}

TEST(CableTiming, WaitsTheDelayLessTheOverheadRoundedUpToATick) {
    ScriptedCounter clock; // one tick a microsecond, an overhead of one
    const OmCableTiming timing;
    ASSERT_EQ(timing.callOverhead, 1.0);
    const WaitCase cases[] = {
        {0.75, 1}, // less than the overhead: not even the remainder
        {1.0, 2},  // deadline at the start itself
        {1.1, 2},  // one tick later
        {2.5, 3},  // 1.5 rounded up to 2
        {101.0, 101},
    };
    for (const WaitCase& row : cases) {
        clock.looks = 0;
        timing.Wait(row.microseconds);
        EXPECT_EQ(clock.looks, row.looks) << row.microseconds;
    }
}

TEST(CableTiming, WaitsAcrossTheSignOfTheLowWord) {
    ScriptedCounter clock;
    const OmCableTiming timing;
    clock.last = 0x7FFFFFFE;
    clock.looks = 0;
    timing.Wait(5.0);
    EXPECT_EQ(clock.looks, 5);
    clock.last = 0xFFFFFFFE;
    clock.looks = 0;
    timing.Wait(5.0);
    EXPECT_EQ(clock.looks, 5);
}
