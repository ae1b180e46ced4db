#include "flash/WaitTuner.h"

#include <algorithm>

namespace {

// With times that vary threefold, one item in thirteen takes longer than the slowest of twelve: the
// margin covers these.
constexpr int kSamples = 12;

} // namespace

OmWaitTuner::OmWaitTuner(int longest, int known, int typical)
    : longest_(longest), wait_(std::clamp(known > 0 ? known : typical, 0, longest)),
      isKnown_(known > 0), fastest_(longest) {}

void OmWaitTuner::Took(int tooShort, int enough) {
    fastest_ = std::min(fastest_, enough);
    const bool needsNoMore = enough == 0 || isKnown_;
    if (!measures_ && needsNoMore)
        Prove(enough);
    else if (tooShort >= 0 || enough == 0)
        AddSample(tooShort, enough);
    else
        wait_ = enough / 2; // it may have been done long before
    measures_ = true;
}

void OmWaitTuner::NoteTooShort(int wait) {
    tooShort_ = std::max(tooShort_, wait);
    slowest_ = std::max(slowest_, wait);
}

void OmWaitTuner::TookLonger(int tooShort) {
    NoteTooShort(tooShort);
    measures_ = true;
    if (tooShort >= longest_)
        Prove(longest_);
    else
        wait_ = std::max(wait_, tooShort);
}

// The next item is first looked at well before it can be done. Looks are two scans apart: every
// other item is looked at in between.
void OmWaitTuner::AddSample(int tooShort, int enough) {
    NoteTooShort(tooShort);
    slowest_ = std::max(slowest_, enough);
    ++samples_;
    if (samples_ >= kSamples)
        Prove(std::max(MeasuredWait(), atLeast_));
    else
        wait_ = std::max(tooShort, 0) / 3 * 2 + samples_ % 2;
}

// Items that all could have taken the same time leave a small margin, for heat and age.
int OmWaitTuner::MeasuredWait() const {
    if (tooShort_ < fastest_)
        return fastest_ + fastest_ / 16;
    return slowest_ + std::max((slowest_ - fastest_) / 2, slowest_ / 16);
}

void OmWaitTuner::Prove(int wait) {
    wait_ = std::min(wait, longest_);
    isProven_ = true;
}

void OmWaitTuner::WasTooShort() {
    atLeast_ = wait_ + wait_ / 4 + 1;
    isProven_ = wait_ >= longest_;
    measures_ = true;
    samples_ = 0;
}
