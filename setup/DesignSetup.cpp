#include "setup/DesignSetup.h"

#include "platform/Text.h"
#include "setup/IRLengthSolver.h"

#include <utility>

namespace {

constexpr int kShortestIRLength = 2; // IEEE 1149.1, clause 7.1.1

// The length without any guess: from the BSDL data, or as entered; -1 if there is none.
int32_t GetKnownIRLength(const OmChainDevice& device) {
    const int fromBsdl = device.bsdl ? device.bsdl->GetInstructionLength() : -1;
    if (fromBsdl >= kShortestIRLength)
        return fromBsdl;
    return device.IRLen >= kShortestIRLength ? device.IRLen : -1;
}

uint8_t GetSafeValue(const std::vector<OmBsdlCell>& entries) {
    for (const OmBsdlCell& entry : entries) {
        if (entry.Safe != kBitUnknown)
            return entry.Safe;
    }
    return 1;
}

} // namespace

OmChainDevice::OmChainDevice(const OmChainDevice& other)
    : bsdl(other.bsdl ? std::make_unique<OmBsdlData>(*other.bsdl) : nullptr),
      BsdlFile(other.BsdlFile), PinMapping(other.PinMapping), Idcode(other.Idcode),
      resolvedIRLen(other.resolvedIRLen), IRLen(other.IRLen) {}

OmChainDevice& OmChainDevice::operator=(const OmChainDevice& other) {
    return *this = OmChainDevice(other);
}

bool OmChainDevice::operator==(const OmChainDevice& other) const {
    const bool sameData = bsdl && other.bsdl ? *bsdl == *other.bsdl : !bsdl && !other.bsdl;
    return sameData && BsdlFile == other.BsdlFile && PinMapping == other.PinMapping &&
           Idcode == other.Idcode && resolvedIRLen == other.resolvedIRLen && IRLen == other.IRLen;
}

void OmChainDevice::SetBsdl(std::unique_ptr<OmBsdlData> data, const std::string& path) {
    BsdlFile = path;
    bsdl = std::move(data);
    PinMapping.clear();
    if (bsdl && bsdl->pinMappings.size() == 1)
        PinMapping = bsdl->pinMappings.begin()->first;
}

int OmChainDevice::GetIRLength() const {
    const int fromBsdl = bsdl ? bsdl->GetInstructionLength() : -1;
    for (const int length : {fromBsdl, resolvedIRLen, IRLen}) {
        if (length >= kShortestIRLength)
            return length;
    }
    return -1;
}

bool OmChainDevice::GetInstructionCode(const char* name, OmBitVector& code) const {
    if (!bsdl)
        return false;
    const std::vector<std::string> codes = bsdl->GetInstructionCodes(name);
    if (codes.empty())
        return false;
    code = BitsFromText(codes.front());
    return true;
}

void OmChainDevice::GetSafeBsrVector(OmBitVector& vector) const {
    vector.clear();
    if (!bsdl)
        return;
    for (const std::vector<OmBsdlCell>& entries : bsdl->cells)
        vector.push_back(GetSafeValue(entries));
}

bool OmDevicePin::operator==(const OmDevicePin& other) const {
    return Device == other.Device && PortIndex == other.PortIndex &&
           EqualsIgnoringCase(PortName, other.PortName);
}

void OmDesignSetup::SetChainDevices(std::span<const OmBitVector> idcodes,
                                    const OmBitVector& capture) {
    irCapture = capture;
    std::vector<OmChainDevice> chain(idcodes.size());
    for (size_t index = 0; index < chain.size(); ++index)
        chain[index].Idcode = idcodes[index];
    devices = std::move(chain);
    if (!devices.empty())
        ResolveIRLengths({});
}

// The device nearest TDO, which is the last one, comes first in the captured stream.
bool OmDesignSetup::ResolveIRLengths(const OmBitVector& capture) {
    bool anyUnknown = false;
    std::vector<int32_t> lengths;
    for (auto device = devices.rbegin(); device != devices.rend(); ++device) {
        device->resolvedIRLen = -1;
        lengths.push_back(GetKnownIRLength(*device));
        anyUnknown |= lengths.back() < 0;
    }
    const OmBitVector& stream = capture.empty() ? irCapture : capture;
    if (!anyUnknown || stream.empty())
        return false;
    const auto solution = SolveIRLengths(lengths, stream);
    if (!solution)
        return false;
    for (size_t index = 0; index < lengths.size(); ++index) {
        if (lengths[index] < 0)
            devices[devices.size() - 1 - index].resolvedIRLen = (*solution)[index];
    }
    return true;
}

// Port and inversion of the control pins stay, so that a dialog can offer them again.
void OmDesignSetup::ClearFlashPins() {
    for (SignalPin* pin : {&ce, &oe, &we})
        pin->Device = -1;
    addressPins.clear();
    dataPins.clear();
    staticPins.clear();
    ChipCount = -1;
    WordSize = -1;
    AddrCmdShift = -1;
}

std::wstring FormatDeviceName(const std::vector<OmChainDevice>& devices, int index) {
    std::wstring name = OmFormat(L"Dev%d", index + 1);
    if (index < 0 || static_cast<size_t>(index) >= devices.size())
        return name;
    const OmBsdlData* data = devices[static_cast<size_t>(index)].bsdl.get();
    if (data && !data->entity.empty())
        name += L" (" + FromLocal(data->entity) + L")";
    return name;
}
