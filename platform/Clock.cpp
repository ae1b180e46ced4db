#include "platform/Clock.h"

#include "platform/Host.h"

namespace {

OmClock* installed = nullptr;

} // namespace

OmClock& GetClock() {
    return installed ? *installed : GetHostClock();
}

OmClock* SetClock(OmClock* clock) {
    OmClock* previous = installed;
    installed = clock;
    return previous;
}
