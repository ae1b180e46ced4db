// The search for the wait, in idle scans, between a program command and the read of its status. It
// is fed with how single items went and says when a wait is proven, so that many items can be sent
// in one go.
//
// A wait that an action before has proven, or one of no scans at all, is proven by one item. Any
// other is measured: so many items, each looked at several times, tell how far the times of the
// flash lie apart, and the proven wait gets a margin by that. Too short a wait loses nothing, since
// each item's status is judged; it costs a recovery.
#pragma once

class OmWaitTuner {
  public:
    // `longest`: nothing is waited for beyond it. `known`: what an action before has proven, 0 for
    // nothing. `typical`: where to start else, from what the flash says of itself.
    OmWaitTuner(int longest, int known, int typical);

    // For the next pass.
    int Wait() const { return wait_; }

    int Longest() const { return longest_; }

    bool IsProven() const { return isProven_; }

    // True if the next item should be looked at several times.
    bool Measures() const { return measures_ && !isProven_; }

    // An item alone was done after a wait of `enough` and not yet after one of `tooShort`, -1 if it
    // was not looked at earlier.
    void Took(int tooShort, int enough);

    // An item alone was not done after a wait of `tooShort`, but later.
    void TookLonger(int tooShort);

    // The proven wait has been too short for an item among others: it is measured anew, and will be
    // longer.
    void WasTooShort();

  private:
    void AddSample(int tooShort, int enough);
    void NoteTooShort(int wait);
    void Prove(int wait);
    int MeasuredWait() const;

    int longest_;
    int wait_;
    bool isKnown_; // an action before has proven it
    bool isProven_ = false;
    bool measures_ = false;
    int atLeast_ = 0;

    // --- of the items alone
    int samples_ = 0;   // that were seen getting done
    int fastest_;       // the shortest wait that was enough for one
    int slowest_ = 0;   // the longest that one needed, as far as seen
    int tooShort_ = -1; // the longest that was too short for one
};
