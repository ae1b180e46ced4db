#include "tests/cables/CableBench.h"

#include "virtualboard/CurrentBoard.h"
#include "virtualboard/UsbHost.h"

#include <array>
#include <deque>

namespace {

// TMS values that lead from one state to another, the fewest there are.
std::vector<bool> ShortestWalk(vb::TapState from, vb::TapState to) {
    std::array<std::optional<std::vector<bool>>, vb::kTapStateCount> walks;
    walks[static_cast<size_t>(from)].emplace();
    std::deque<vb::TapState> waiting{from};
    while (!walks[static_cast<size_t>(to)]) {
        const vb::TapState state = waiting.front();
        waiting.pop_front();
        for (const bool tms : {false, true}) {
            auto& walk = walks[static_cast<size_t>(vb::NextTapState(state, tms))];
            if (walk)
                continue;
            walk = walks[static_cast<size_t>(state)];
            walk->push_back(tms);
            waiting.push_back(vb::NextTapState(state, tms));
        }
    }
    return *walks[static_cast<size_t>(to)];
}

} // namespace

vb::BoardBuilder ThreeDevices() {
    return vb::BoardBuilder().UnusedBefore(1).Devices(2);
}

CableBench::CableBench(const CableCase& which, const vb::BoardBuilder& builder)
    : cable(which), board(&WithEveryPod(builder).Build().Install()), settings(SettingsFor(which)) {
    if (which.parallelPod)
        port.emplace(*board, which.parallelPod);
}

CableBench::~CableBench() {
    vb::InstallBoard(nullptr);
}

void CableBench::ForceState(vb::TapState state) {
    for (const bool tms : ShortestWalk(Chain().State(), state))
        Chain().Clock(tms, true);
}

uint64_t CableBench::Reads() {
    return port ? (*port)->port.Reads() : board->PodTraffic().readCalls;
}

int CableBench::OpenHandles() {
    int open = loader.loaded + (port ? (*port)->openHandles : 0);
    vb::UsbHost* host = vb::CurrentUsbHost();
    for (size_t i = 0; i < host->DeviceCount(); ++i)
        open += host->Device(i).open ? 1 : 0;
    return open;
}
