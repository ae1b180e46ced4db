#include "platform/Clock.h"
#include "platform/Host.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace {

class HostClock : public OmClock {
  public:
    uint64_t Milliseconds() override {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    }

    int64_t Seconds() override { return std::time(nullptr); }

    void SleepMilliseconds(unsigned milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    int64_t PerformanceCounter() override {
        return std::chrono::steady_clock::now().time_since_epoch().count();
    }

    int64_t PerformanceFrequency() override {
        using Period = std::chrono::steady_clock::period;
        return Period::den / Period::num;
    }
};

} // namespace

OmClock& GetHostClock() {
    static HostClock clock;
    return clock;
}
