#include "setup/SetupSession.h"

void OmSetupSession::Start() {
    history_.Clear();
    pins.Forget();
    sectorsFromFlash = setup.sectors.IsEmpty();
    DropInvalidPins(setup);
    conflicts = FindPinConflicts(setup);
}

void OmSetupSession::BeginChange() {
    history_.Record(setup, sectorsFromFlash, OmChangeScope::Pins);
}

void OmSetupSession::EndChange() {
    conflicts = FindPinConflicts(setup);
    onPinsChanged();
}

void OmSetupSession::BeginChainChange() {
    history_.Record(setup, sectorsFromFlash, OmChangeScope::Everything);
}

void OmSetupSession::EndChainChange() {
    pins.Forget();
    const OmDroppedPins dropped = DropInvalidPins(setup);
    conflicts = FindPinConflicts(setup);
    onChainChanged(dropped);
}

// A length that was entered belongs to the device as it was.
bool OmSetupSession::AssignBsdl(int device, std::unique_ptr<OmBsdlData> data,
                                const std::string& path) {
    const auto index = static_cast<unsigned>(device);
    OmDesignSetup trial = setup;
    trial.GetDevice(index).SetBsdl(data ? std::make_unique<OmBsdlData>(*data) : nullptr, path);
    if (!ConfirmNewBsdl(DropInvalidPins(trial)))
        return false;
    BeginChainChange();
    setup.GetDevice(index).SetBsdl(std::move(data), path);
    setup.GetDevice(index).IRLen = -1;
    setup.ResolveIRLengths({});
    EndChainChange();
    return true;
}

bool OmSetupSession::ReplaceChain(std::span<const OmBitVector> idcodes,
                                  const OmBitVector& capture) {
    OmDesignSetup trial = setup;
    trial.SetChainDevices(idcodes, capture);
    if (!ConfirmNewChain(DropInvalidPins(trial)))
        return false;
    BeginChainChange();
    setup.SetChainDevices(idcodes, capture);
    EndChainChange();
    return true;
}

void OmSetupSession::ChoosePinMapping(int device, const std::string& name) {
    std::string& mapping = setup.GetDevice(static_cast<unsigned>(device)).PinMapping;
    if (mapping == name)
        return;
    BeginChainChange();
    mapping = name;
    EndChainChange();
}

void OmSetupSession::EnterIrLength(int device, int length) {
    int32_t& entered = setup.GetDevice(static_cast<unsigned>(device)).IRLen;
    if (entered == length)
        return;
    BeginChainChange();
    entered = length;
    setup.ResolveIRLengths({});
    EndChainChange();
}

bool OmSetupSession::Undo() {
    const std::optional<OmChangeScope> scope = history_.Undo(setup, sectorsFromFlash);
    if (!scope)
        return false;
    conflicts = FindPinConflicts(setup);
    if (*scope == OmChangeScope::Everything) {
        pins.Forget();
        onChainChanged({});
    } else {
        onPinsChanged();
    }
    return true;
}
