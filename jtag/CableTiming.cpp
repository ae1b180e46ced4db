#include "jtag/CableTiming.h"

#include "platform/Clock.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr int kPasses = 100;

// Above this the figure says more about the load of the machine than about the call.
constexpr double kBelievableOverhead = 3.0;

} // namespace

OmCableTiming::OmCableTiming() {
    const int64_t frequency = GetClock().PerformanceFrequency();
    if (frequency <= 0)
        return;
    ticksPerMicrosecond = static_cast<double>(frequency) / 1000000;
    bool moves = false;
    callOverhead = MeasureOverhead(moves);
    if (!moves)
        ticksPerMicrosecond = -1.0; // a counter that stands still would never reach a deadline
}

double OmCableTiming::MeasureOverhead(bool& moves) const {
    OmClock& clock = GetClock();
    const int64_t start = clock.PerformanceCounter();
    int64_t smallest = 0x7FFFFFFF;
    int64_t second = start;
    for (int pass = 0; pass < kPasses; ++pass) {
        const int64_t first = clock.PerformanceCounter();
        second = clock.PerformanceCounter();
        if (second >= first)
            smallest = std::min(smallest, second - first);
    }
    moves = second != start;
    const double overhead = static_cast<double>(smallest) / ticksPerMicrosecond;
    return overhead < kBelievableOverhead ? overhead : 0.0;
}

void OmCableTiming::Wait(double microseconds) const {
    if (ticksPerMicrosecond <= 0)
        return;
    OmClock& clock = GetClock();
    const int64_t start = clock.PerformanceCounter();
    if (callOverhead > microseconds)
        return;
    const double ticks = std::ceil((microseconds - callOverhead) * ticksPerMicrosecond);
    const int64_t deadline = start + static_cast<int64_t>(ticks);
    while (clock.PerformanceCounter() < deadline) {
    }
}
