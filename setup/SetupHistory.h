// The last changes of a setup that is being edited, to be taken back one by one.
#pragma once

#include "setup/DesignSetup.h"

#include <deque>
#include <optional>
#include <vector>

// What a change may touch: the chain with its BSDL data is large, and most changes leave it alone.
enum class OmChangeScope { Pins, Everything };

class OmSetupHistory {
  public:
    static constexpr size_t kMaxSteps = 50;

    // Keeps the state before a change. `sectorsFromFlash` goes with the setup, for it stands in
    // none of its fields while the setup is edited.
    void Record(const OmDesignSetup& setup, bool sectorsFromFlash, OmChangeScope scope);

    bool IsEmpty() const { return steps_.empty(); }

    // Restores the state before the last change, and forgets the change. The scope tells what was
    // touched; nothing, and the setup as it was, if there is no change left.
    std::optional<OmChangeScope> Undo(OmDesignSetup& setup, bool& sectorsFromFlash);

    void Clear() { steps_.clear(); }

  private:
    struct Chain {
        std::vector<OmChainDevice> devices;
        OmBitVector irCapture;
    };

    struct Step {
        OmFlashPins pins;
        int32_t cmdSet;
        bool useBufferedProg;
        bool dontCheckStatus;
        bool useUnlockBypass;
        OmFlashSectorLayout sectors;
        bool sectorsFromFlash;
        std::optional<Chain> chain; // only if the change touches it
    };

    std::deque<Step> steps_; // oldest first
};
