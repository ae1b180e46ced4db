// What a target states about the program; a breach ends the run, and libFuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

inline void Check(bool holds, const char* statement) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", statement);
    std::abort();
}
