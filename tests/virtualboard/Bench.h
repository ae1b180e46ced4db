// A built board in EXTEST with an idle bus, and the pod and the bus that drive it.
#pragma once

#include "tests/virtualboard/TestBus.h"
#include "virtualboard/BoardBuilder.h"

namespace vb_test {

struct Bench {
    explicit Bench(const vb::BoardBuilder& builder)
        : built(builder.Build()), board(built.Install()), bus(built, pod) {
        bus.EnterExtest();
    }

    vb::FlashModel& Chip(size_t index = 0) { return board.Flash(index).Model(); }

    // Lets TCK run in Run-Test/Idle; the pod is set to 30 MHz.
    void Wait(uint32_t microseconds) { board.Clock().Tick(uint64_t{microseconds} * 30); }

    vb::BuiltBoard built;
    vb::Board& board;
    TestPod pod;
    TestBus bus;
};

} // namespace vb_test
