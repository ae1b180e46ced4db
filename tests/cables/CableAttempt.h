// One use of a cable from its creation to its end, as an action of the program makes it.
#pragma once

#include "tests/cables/CableBench.h"

#include <string>

enum class AttemptResult { Done, NotCreated, Thrown };

struct Attempt {
    // Creates the cable, resets the TAP, scans each way, and deletes the cable.
    explicit Attempt(CableBench& bench);

    AttemptResult result = AttemptResult::NotCreated;
    std::wstring thrown;    // text of what was thrown
    bool rightBits = false; // all scans gave what the chain has
    std::wstring log;
};
