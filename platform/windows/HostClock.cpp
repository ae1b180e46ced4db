#include "platform/Clock.h"
#include "platform/Host.h"

#include <ctime>
#include <windows.h>

namespace {

class HostClock : public OmClock {
  public:
    uint64_t Milliseconds() override { return GetTickCount64(); }

    int64_t Seconds() override { return std::time(nullptr); }

    void SleepMilliseconds(unsigned milliseconds) override { Sleep(milliseconds); }

    int64_t PerformanceCounter() override {
        LARGE_INTEGER counter;
        QueryPerformanceCounter(&counter);
        return counter.QuadPart;
    }

    int64_t PerformanceFrequency() override {
        LARGE_INTEGER frequency;
        QueryPerformanceFrequency(&frequency);
        return frequency.QuadPart;
    }
};

} // namespace

OmClock& GetHostClock() {
    static HostClock clock;
    return clock;
}
