// Time that passes without waiting, and a check that the program does not wait for ever.
#pragma once

#include "fuzz/Check.h"
#include "tests/support/VirtualClock.h"

// A run has one opening and at most some dozen scans, most of them of a dozen passes; a read gives
// up after a third of a second.
class Patience : public VirtualClock {
  public:
    ~Patience() override {
        constexpr uint64_t kPatience = 300000;
        Check(sleptMilliseconds <= kPatience, "no call waits for ever");
    }
};
