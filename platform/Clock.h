// Time as the program sees it. Everything that waits or measures goes through here, so that tests
// run in virtual time.
#pragma once

#include <cstdint>

class OmClock {
  public:
    virtual ~OmClock() = default;

    // A tick count in milliseconds from an arbitrary start; never runs backward on a real host.
    virtual uint64_t Milliseconds() = 0;
    // Local calendar time in seconds since 1970.
    virtual int64_t Seconds() = 0;
    virtual void SleepMilliseconds(unsigned milliseconds) = 0;
    // High-resolution counter and its ticks per second (constant, above 0).
    virtual int64_t PerformanceCounter() = 0;
    virtual int64_t PerformanceFrequency() = 0;
};

OmClock& GetClock();

// Installs `clock` (not owned; null restores the host's clock); returns the one installed before,
// null for the host's.
OmClock* SetClock(OmClock* clock);
