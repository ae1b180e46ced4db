// The search for the shortest wait, in scans, between a program command and the read of its status.
// It grows fast until a pass succeeds, bisects downward from there, and goes back to the last good
// value when a shorter one fails.
#pragma once

#include <cstdint>

struct OmWaitTuner {
    int32_t maximum = 0;
    int32_t failed = -1; // the highest wait known to be too short, -1 for none
    int32_t good = -1;   // the lowest wait known to suffice, -1 for none
};

// The wait for the next pass, after one with `current` that succeeded or failed.
int NextWaitScans(OmWaitTuner& tuner, bool success, int current);
