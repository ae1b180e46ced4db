#include "setup/SetupHistory.h"

#include <utility>

void OmSetupHistory::Record(const OmDesignSetup& setup, bool sectorsFromFlash,
                            OmChangeScope scope) {
    Step step{setup,
              setup.CmdSet,
              setup.UseBufferedProg,
              setup.DontCheckStatus,
              setup.UseUnlockBypass,
              setup.sectors,
              sectorsFromFlash,
              std::nullopt};
    if (scope == OmChangeScope::Everything)
        step.chain = Chain{setup.devices, setup.irCapture};
    steps_.push_back(std::move(step));
    if (steps_.size() > kMaxSteps)
        steps_.pop_front();
}

std::optional<OmChangeScope> OmSetupHistory::Undo(OmDesignSetup& setup, bool& sectorsFromFlash) {
    if (steps_.empty())
        return std::nullopt;
    Step step = std::move(steps_.back());
    steps_.pop_back();
    static_cast<OmFlashPins&>(setup) = std::move(step.pins);
    setup.CmdSet = step.cmdSet;
    setup.UseBufferedProg = step.useBufferedProg;
    setup.DontCheckStatus = step.dontCheckStatus;
    setup.UseUnlockBypass = step.useUnlockBypass;
    setup.sectors = std::move(step.sectors);
    sectorsFromFlash = step.sectorsFromFlash;
    if (!step.chain)
        return OmChangeScope::Pins;
    setup.devices = std::move(step.chain->devices);
    setup.irCapture = std::move(step.chain->irCapture);
    return OmChangeScope::Everything;
}
