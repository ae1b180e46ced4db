#include "cli/Interrupt.h"

#include <atomic>
#include <csignal>

namespace {

std::atomic<bool> interruptedFlag = false;
static_assert(std::atomic<bool>::is_always_lock_free); // a signal handler may touch it

void OnSignal(int signal) {
    interruptedFlag = true;
    std::signal(signal, SIG_DFL);
}

} // namespace

void InstallInterrupt() {
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
#ifndef _WIN32
    // The terminal is closed; under nohup the program goes on.
    if (std::signal(SIGHUP, OnSignal) == SIG_IGN)
        std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

bool IsInterrupted() {
    return interruptedFlag;
}

void SetInterrupted(bool interrupted) {
    interruptedFlag = interrupted;
}
