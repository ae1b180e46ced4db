#include "setup/PinReferences.h"

#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "setup/DevicePins.h"
#include "setup/SignalRows.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace {

// Looks ports up by name. A setup may hold thousands of pins, and a device as many ports.
class PortFinder {
  public:
    explicit PortFinder(const std::vector<OmChainDevice>& devices) : devices_(devices) {}

    bool Knows(const OmDevicePin& pin) {
        if (static_cast<size_t>(pin.Device) >= devices_.size())
            return false;
        const OmBsdlData* bsdl = devices_[static_cast<size_t>(pin.Device)].bsdl.get();
        if (bsdl == nullptr)
            return false;
        const Ports& ports = GetPorts(pin.Device, *bsdl);
        const auto found = ports.find(MakePinKey(pin.PortName, -1));
        return found != ports.end() && HasBit(*found->second, pin.PortIndex);
    }

  private:
    using Ports = std::unordered_map<std::string, const OmBsdlPort*>;

    const Ports& GetPorts(int32_t device, const OmBsdlData& bsdl) {
        const auto [place, isNew] = byDevice_.try_emplace(device);
        if (isNew)
            for (const OmBsdlPort& port : bsdl.ports)
                place->second.emplace(MakePinKey(port.Name, -1), &port);
        return place->second;
    }

    static bool HasBit(const OmBsdlPort& port, int32_t bit) {
        return bit >= std::min(port.I1, port.I2) && bit <= std::max(port.I1, port.I2);
    }

    const std::vector<OmChainDevice>& devices_;
    std::map<int32_t, Ports> byDevice_;
};

class BadDevices {
  public:
    explicit BadDevices(const std::vector<OmChainDevice>& devices) : ports_(devices) {}

    void Check(const OmDevicePin& pin) {
        if (pin.IsConnected() && !ports_.Knows(pin))
            devices_.insert(pin.Device);
    }

    bool Contains(const OmDevicePin& pin) const { return devices_.contains(pin.Device); }

    bool Any() const { return !devices_.empty(); }

  private:
    PortFinder ports_;
    std::set<int32_t> devices_;
};

bool DropSignals(OmDesignSetup& setup) {
    BadDevices bad(setup.devices);
    for (int row = 0; row < kSignalRowCount; ++row)
        bad.Check(GetSignalPin(setup, row));
    for (int row = 0; row < kSignalRowCount; ++row)
        if (bad.Contains(GetSignalPin(setup, row)))
            GetSignalPin(setup, row).Device = -1;
    return bad.Any();
}

bool DropStatics(OmDesignSetup& setup) {
    BadDevices bad(setup.devices);
    for (const StaticPin& pin : setup.staticPins)
        bad.Check(pin);
    std::erase_if(setup.staticPins, [&bad](const StaticPin& pin) { return bad.Contains(pin); });
    return bad.Any();
}

std::wstring NameTabs(const OmDroppedPins& dropped) {
    if (dropped.signals && dropped.statics)
        return Translated("'Signal pins' and 'Static pins' tabs.\n");
    return dropped.signals ? Translated("'Signal pins' tab.\n")
                           : Translated("'Static pins' tab.\n");
}

bool Confirm(const OmDroppedPins& dropped, const std::wstring& loss, const std::wstring& question) {
    return !dropped.Any() ||
           ShowMessage(loss + NameTabs(dropped) + question, kLossQuestionBox) == OmAnswer::Yes;
}

} // namespace

OmDroppedPins DropInvalidPins(OmDesignSetup& setup) {
    PadBusPins(setup);
    OmDroppedPins dropped;
    dropped.signals = DropSignals(setup);
    dropped.statics = DropStatics(setup);
    return dropped;
}

bool ConfirmNewBsdl(const OmDroppedPins& dropped) {
    return Confirm(dropped,
                   Translated("Selecting a new BSDL file for the device will reset the device pins "
                              "settings on the "),
                   Translated("Do you wish to continue applying the new BSDL file?"));
}

bool ConfirmNewChain(const OmDroppedPins& dropped) {
    return Confirm(
        dropped, Translated("Changing the JTAG chain configuration will reset settings on the "),
        Translated("Do you wish to continue applying the new JTAG chain configuration?"));
}
