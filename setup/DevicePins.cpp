#include "setup/DevicePins.h"

#include "bsdl/PortName.h"
#include "platform/Text.h"

#include <algorithm>
#include <cctype>
#include <cwctype>

namespace {

// A range may come from a damaged file; no device has as many pins.
constexpr size_t kMaxPins = 65536;

std::wstring ToLower(std::wstring text) {
    std::ranges::transform(text, text.begin(), [](wchar_t c) { return std::towlower(c); });
    return text;
}

std::wstring TrimBlanks(const std::wstring& text) {
    const size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos)
        return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

// "data(3)" and "data 3" are both "data3".
std::wstring Loosen(const std::wstring& text) {
    std::wstring loose;
    std::ranges::copy_if(text, std::back_inserter(loose), [](wchar_t c) {
        return c != L'(' && c != L')' && c != L' ' && c != L'[' && c != L']';
    });
    return loose;
}

bool Drives(OmBsdlCellFunction function) {
    return function == OmBsdlCellFunction::Output2 || function == OmBsdlCellFunction::Output3 ||
           function == OmBsdlCellFunction::Bidir;
}

// As the captured image is read: the driver's own cell says nothing of the pin, but a bidirectional
// one does while its driver is off.
bool Senses(const OmBsdlCell& cell) {
    using Function = OmBsdlCellFunction;
    return cell.Function == Function::Input || cell.Function == Function::Internal ||
           cell.Function == Function::Clock || cell.Function == Function::ObserveOnly ||
           (cell.Function == Function::Bidir && cell.ControlCell >= 0);
}

} // namespace

std::wstring FormatPinText(const std::string& packagePin, const std::string& portName,
                           int32_t portIndex) {
    std::wstring text = FromLocal(portName);
    if (portIndex >= 0)
        text += OmFormat(L"(%d)", portIndex);
    return packagePin.empty() ? text : FromLocal(packagePin) + L" / " + text;
}

std::string MakePinKey(std::string_view portName, int32_t portIndex) {
    std::string key(portName);
    std::ranges::transform(key, key.begin(), [](unsigned char c) {
        return static_cast<char>(c < 0x80 ? std::toupper(c) : c);
    });
    return key + '(' + std::to_string(portIndex);
}

OmDevicePins::OmDevicePins(const OmChainDevice& device) {
    if (!device.bsdl)
        return;
    for (const OmBsdlPort& port : device.bsdl->ports)
        AddPort(port);
    ReadPackagePins(device);
    ReadAbilities(*device.bsdl);
    Spell();
}

void OmDevicePins::AddPort(const OmBsdlPort& port) {
    if (port.Direction == OmBsdlPortDirection::Linkage)
        return; // power and the like: no boundary cell ever belongs to it
    if (port.I1 < 0 || port.I2 < 0) {
        AddPin(port.Name, -1);
        return;
    }
    const int32_t step = port.I1 <= port.I2 ? 1 : -1;
    for (int32_t bit = port.I1; bit != port.I2 && choices_.size() < kMaxPins; bit += step)
        AddPin(port.Name, bit);
    AddPin(port.Name, port.I2);
}

void OmDevicePins::AddPin(const std::string& portName, int32_t portIndex) {
    if (choices_.size() >= kMaxPins)
        return;
    indexes_.emplace(MakePinKey(portName, portIndex), choices_.size());
    OmPinChoice& choice = choices_.emplace_back();
    choice.portName = portName;
    choice.portIndex = portIndex;
}

void OmDevicePins::ReadPackagePins(const OmChainDevice& device) {
    const OmBsdlData::PinMapping* mapping = device.bsdl->FindPinMapping(device.PinMapping);
    if (mapping == nullptr)
        return;
    for (const OmBsdlPinMapEntry& entry : *mapping) {
        const auto found = indexes_.find(MakePinKey(entry.Port, entry.Index));
        if (found != indexes_.end() && choices_[found->second].packagePin.empty())
            choices_[found->second].packagePin = entry.Pin;
    }
}

void OmDevicePins::ReadAbilities(const OmBsdlData& bsdl) {
    std::string name;
    int index = -1;
    for (const std::vector<OmBsdlCell>& entries : bsdl.cells)
        for (const OmBsdlCell& cell : entries) {
            SplitPortName(cell.Port, name, index);
            const auto found = indexes_.find(MakePinKey(name, index));
            if (found == indexes_.end())
                continue;
            OmPinChoice& choice = choices_[found->second];
            choice.canDrive |= Drives(cell.Function);
            choice.canSense |= Senses(cell);
        }
}

void OmDevicePins::Spell() {
    spellings_.reserve(choices_.size());
    for (OmPinChoice& choice : choices_) {
        choice.text = FormatPinText(choice.packagePin, choice.portName, choice.portIndex);
        Spellings spellings;
        spellings.package = ToLower(FromLocal(choice.packagePin));
        spellings.port = ToLower(FormatPinText({}, choice.portName, choice.portIndex));
        spellings.loosePort = Loosen(spellings.port);
        spellings.whole = ToLower(choice.text);
        spellings_.push_back(std::move(spellings));
    }
}

const OmPinChoice* OmDevicePins::Find(std::string_view portName, int32_t portIndex) const {
    const auto found = indexes_.find(MakePinKey(portName, portIndex));
    return found == indexes_.end() ? nullptr : &choices_[found->second];
}

const OmPinChoice* OmDevicePins::FindOnly(bool (*matches)(const Spellings&, const std::wstring&),
                                          const std::wstring& typed) const {
    const OmPinChoice* found = nullptr;
    for (size_t i = 0; i < choices_.size(); ++i) {
        if (!matches(spellings_[i], typed))
            continue;
        if (found)
            return nullptr;
        found = &choices_[i];
    }
    return found;
}

// In this order, for "A1" may name package pin A1, port A1, and bit 1 of port A.
const OmPinChoice* OmDevicePins::FindByName(const std::wstring& text) const {
    using Matches = bool (*)(const Spellings&, const std::wstring&);
    constexpr Matches kMeanings[] = {
        [](const Spellings& pin, const std::wstring& typed) { return pin.whole == typed; },
        [](const Spellings& pin, const std::wstring& typed) { return pin.package == typed; },
        [](const Spellings& pin, const std::wstring& typed) { return pin.port == typed; },
        [](const Spellings& pin, const std::wstring& typed) {
            return pin.loosePort == Loosen(typed);
        },
    };
    const std::wstring typed = ToLower(TrimBlanks(text));
    if (typed.empty())
        return nullptr;
    for (const Matches matches : kMeanings)
        if (const OmPinChoice* found = FindOnly(matches, typed))
            return found;
    return nullptr;
}

const OmPinChoice* OmDevicePins::FindByText(const std::wstring& text) const {
    if (const OmPinChoice* named = FindByName(text))
        return named;
    if (TrimBlanks(text).empty())
        return nullptr;
    const std::vector<size_t> rest = Filter(text);
    return rest.size() == 1 ? &choices_[rest.front()] : nullptr;
}

std::vector<size_t> OmDevicePins::Filter(const std::wstring& text) const {
    const std::wstring typed = ToLower(TrimBlanks(text));
    const std::wstring loose = Loosen(typed);
    std::vector<size_t> found;
    for (size_t i = 0; i < choices_.size(); ++i) {
        const Spellings& pin = spellings_[i];
        if (pin.whole.starts_with(typed) || pin.port.find(typed) != std::wstring::npos ||
            pin.loosePort.starts_with(loose))
            found.push_back(i);
    }
    return found;
}

const OmDevicePins& OmChainPins::Get(int32_t device) const {
    const auto index = static_cast<size_t>(device);
    if (pins_.size() != devices_.size())
        pins_.assign(devices_.size(), std::nullopt);
    if (!pins_[index])
        pins_[index].emplace(devices_[index]);
    return *pins_[index];
}

const OmPinChoice* OmChainPins::Find(const OmDevicePin& pin) const {
    if (!pin.IsConnected() || static_cast<size_t>(pin.Device) >= devices_.size())
        return nullptr;
    return Get(pin.Device).Find(pin.PortName, pin.PortIndex);
}

std::wstring OmChainPins::FormatPin(const OmDevicePin& pin) const {
    const OmPinChoice* choice = Find(pin);
    return choice ? choice->text : FormatPinText({}, pin.PortName, pin.PortIndex);
}
