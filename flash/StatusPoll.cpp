#include "flash/StatusPoll.h"

#include "flash/Progress.h"
#include "platform/Clock.h"

#include <cstdint>

OmFlashResult OmStatusPoll::Wait(OmProgressCallback& callback, unsigned limitSeconds) {
    // The tick count and not the calendar: setting the host's clock must not end the wait.
    const uint64_t start = GetClock().Milliseconds();
    while (!Poll()) {
        if (!callback.OnProgress(-1, nullptr))
            return OmFlashResult::Stopped;
        if (GetClock().Milliseconds() - start >= uint64_t{limitSeconds} * 1000)
            return OmFlashResult::TimeOut;
    }
    return found;
}
