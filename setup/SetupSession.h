// A setup while it is being edited: the setup itself, the pins of its chain, the pins in conflict,
// and the way back. Shared by the pages of the setup dialog; no windows here.
#pragma once

#include "setup/DevicePins.h"
#include "setup/PinConflicts.h"
#include "setup/PinReferences.h"
#include "setup/SetupHistory.h"

#include <functional>
#include <memory>
#include <span>
#include <string>

class OmSetupSession {
  public:
    // `edited` is not owned and must outlive this.
    explicit OmSetupSession(OmDesignSetup& edited) : setup(edited), pins(edited.devices) {}

    // Begins anew with what the setup holds now. Pins that its chain cannot resolve are dropped.
    void Start();

    // Before and after a change of anything but the chain.
    void BeginChange();
    void EndChange();

    // Changes of the chain. Each asks if pins would be lost, and answers whether it was made.
    bool AssignBsdl(int device, std::unique_ptr<OmBsdlData> data, const std::string& path);
    bool ReplaceChain(std::span<const OmBitVector> idcodes, const OmBitVector& capture);

    // These cost no pin its meaning.
    void ChoosePinMapping(int device, const std::string& name);
    void EnterIrLength(int device, int length);

    // Takes the last change back; false if there is none.
    bool Undo();

    bool CanUndo() const { return !history_.IsEmpty(); }

    OmDesignSetup& setup;
    OmChainPins pins;
    OmPinConflicts conflicts;
    bool sectorsFromFlash = false; // the user says so; the groups are kept until the end

    // What the windows do after a change. `onChainChanged` is told which pins were dropped.
    std::function<void()> onPinsChanged = [] {};
    std::function<void(const OmDroppedPins&)> onChainChanged = [](const OmDroppedPins&) {};

  private:
    void BeginChainChange();
    void EndChainChange();

    OmSetupHistory history_;
};
