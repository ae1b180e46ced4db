// Time under the test's control: a sleep advances it, nothing waits.
#pragma once

#include "platform/Clock.h"

class VirtualClock : public OmClock {
  public:
    VirtualClock() : previous_(SetClock(this)) {}

    ~VirtualClock() override { SetClock(previous_); }

    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    uint64_t Milliseconds() override { return Tick() / 1000; }

    int64_t Seconds() override { return startSeconds + static_cast<int64_t>(Tick() / 1000000); }

    void SleepMilliseconds(unsigned milliseconds) override {
        sleptMilliseconds += milliseconds;
        microseconds += uint64_t{milliseconds} * 1000;
    }

    int64_t PerformanceCounter() override { return static_cast<int64_t>(Tick()); }

    int64_t PerformanceFrequency() override { return 1000000; }

    void AdvanceMilliseconds(uint64_t milliseconds) { microseconds += milliseconds * 1000; }

    uint64_t microseconds = 0;
    uint64_t stepMicroseconds = 0; // added by each look at the clock
    int64_t startSeconds = 1000000000;
    uint64_t sleptMilliseconds = 0;

  private:
    uint64_t Tick() { return microseconds += stepMicroseconds; }

    OmClock* previous_;
};
