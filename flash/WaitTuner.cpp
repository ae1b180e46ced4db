#include "flash/WaitTuner.h"

#include <algorithm>

namespace {

int AfterSuccess(OmWaitTuner& tuner, int current) {
    if (tuner.good == -1 || current < tuner.good)
        tuner.good = current;
    const int gap = tuner.good - tuner.failed - 1; // values not tried yet
    if (gap == 1)
        return tuner.failed + 1;
    if (gap >= 2)
        return gap / 2 + tuner.failed;
    return current;
}

int Longer(int current) {
    if (current == 0)
        return 1;
    return current <= 8 ? 4 * current : 2 * current;
}

int AfterFailure(OmWaitTuner& tuner, int current) {
    if (current > tuner.failed) {
        tuner.failed = current;
        if (current >= tuner.good)
            tuner.good = -1;
    }
    const int next = tuner.good != -1 ? tuner.good : Longer(current);
    return std::min(next, tuner.maximum);
}

} // namespace

int NextWaitScans(OmWaitTuner& tuner, bool success, int current) {
    return success ? AfterSuccess(tuner, current) : AfterFailure(tuner, current);
}
