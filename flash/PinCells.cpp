#include "flash/PinCells.h"

#include "bsdl/PortName.h"
#include "platform/Text.h"

namespace {

OmCellRef MakeCellRef(uint32_t cellNumber, uint32_t entryIndex, const OmBsdlCell& entry) {
    using Function = OmBsdlCellFunction;
    const Function function = entry.Function;
    const bool releasable = function == Function::Output3 || function == Function::Bidir;
    OmCellRef ref;
    ref.cellNumber = cellNumber;
    ref.entryIndex = entryIndex;
    ref.controlCell = entry.ControlCell;
    ref.disableValue = entry.DisableValue;
    ref.enableValue = entry.DisableValue == 1 ? 0 : 1;
    ref.drives = releasable || function == Function::Output2;
    ref.releases = releasable && entry.ControlCell >= 0;
    ref.senses = function == Function::Input || function == Function::Internal ||
                 function == Function::Clock || function == Function::ObserveOnly;
    ref.sensesReleased = function == Function::Bidir && entry.ControlCell >= 0;
    return ref;
}

bool IsOfPort(const OmBsdlCell& entry, const OmDevicePin& signal) {
    if (entry.Port == "*")
        return false; // belongs to no port
    std::string name;
    int index = -1;
    SplitPortName(entry.Port, name, index);
    return index == signal.PortIndex && EqualsIgnoringCase(name, signal.PortName);
}

bool IsInChain(const OmDevicePin& pin, const std::vector<OmChainDevice>& chain) {
    return pin.IsConnected() && static_cast<size_t>(pin.Device) < chain.size();
}

} // namespace

bool FindPinCells(OmPinCellList& pin, const OmDevicePin& signal,
                  const std::vector<OmChainDevice>& chain) {
    pin.cells.clear();
    pin.bsdl = IsInChain(signal, chain) ? chain[signal.Device].bsdl.get() : nullptr;
    if (pin.bsdl == nullptr)
        return false;
    for (uint32_t number = 0; number < pin.bsdl->cells.size(); ++number) {
        const std::vector<OmBsdlCell>& entries = pin.bsdl->cells[number];
        for (uint32_t index = 0; index < entries.size(); ++index)
            if (IsOfPort(entries[index], signal))
                pin.cells.push_back(MakeCellRef(number, index, entries[index]));
    }
    return !pin.cells.empty();
}

std::wstring FormatPinName(const std::vector<OmChainDevice>& chain, const OmDevicePin& pin) {
    if (!IsInChain(pin, chain))
        return L"<invalid_signal>";
    std::wstring text = FormatDeviceName(chain, pin.Device) + L" " + FromLocal(pin.PortName);
    if (pin.PortIndex >= 0)
        text += OmFormat(L"(%d)", pin.PortIndex);
    return text;
}

void SetPinValue(const OmPinCellList& pin, uint8_t value, OmBitVector& image, uint32_t base) {
    const bool release = value == kBitReleased;
    for (const OmCellRef& cell : pin.cells) {
        if (cell.releases)
            image[base + cell.controlCell] = release ? cell.disableValue : cell.enableValue;
        if (cell.drives && !release)
            image[base + cell.cellNumber] = value;
    }
}

uint8_t GetPinValue(const OmPinCellList& pin, const OmBitVector& image, uint32_t base) {
    uint8_t value = kBitUnknown;
    for (const OmCellRef& cell : pin.cells) {
        const bool readable = cell.senses || (cell.sensesReleased &&
                                              image[base + cell.controlCell] == cell.disableValue);
        if (readable)
            value = image[base + cell.cellNumber];
    }
    return value;
}
