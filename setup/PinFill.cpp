#include "setup/PinFill.h"

#include "bsdl/BsdlData.h"
#include "setup/DevicePins.h"
#include "setup/PinConflicts.h"
#include "setup/SignalRows.h"

namespace {

bool AreOnOneBus(int row, int next) {
    return row >= 0 && next < kSignalRowCount && GetSignalKind(row) != OmSignalKind::Control &&
           GetSignalKind(row) == GetSignalKind(next);
}

// 1 or -1; 0 if the pins show no pattern.
int FindStep(const OmDevicePin& first, const OmDevicePin& second) {
    if (!first.IsConnected() || first.Device != second.Device || first.PortIndex < 0 ||
        second.PortIndex < 0 || !EqualsIgnoringCase(first.PortName, second.PortName))
        return 0;
    const int64_t difference = int64_t{second.PortIndex} - first.PortIndex;
    return difference == 1 || difference == -1 ? static_cast<int>(difference) : 0;
}

std::optional<OmPinFill> PlanBehind(const OmFlashPins& pins, const OmChainPins& chain, int row) {
    if (!AreOnOneBus(row, row + 1))
        return std::nullopt;
    OmDevicePin pin = GetSignalPin(pins, row + 1);
    const int step = FindStep(GetSignalPin(pins, row), pin);
    if (step == 0)
        return std::nullopt;
    OmPinFill fill;
    fill.firstRow = row + 2;
    for (int next = fill.firstRow; AreOnOneBus(row, next); ++next) {
        pin.PortIndex += step;
        if (!chain.Find(pin))
            break;
        fill.pins.push_back(pin);
    }
    return fill;
}

} // namespace

std::optional<OmPinFill> PlanPinFill(const OmFlashPins& pins, const OmChainPins& chain,
                                     int selectedRow) {
    std::optional<OmPinFill> fill = PlanBehind(pins, chain, selectedRow - 1);
    return fill ? fill : PlanBehind(pins, chain, selectedRow);
}

std::wstring DescribeOverwritten(const OmFlashPins& pins, const OmChainPins& chain,
                                 const OmPinFill& fill) {
    std::wstring text;
    for (size_t i = 0; i < fill.pins.size(); ++i) {
        const int row = fill.firstRow + static_cast<int>(i);
        const OmDevicePin& present = GetSignalPin(pins, row);
        if (present.IsConnected() && !(present == fill.pins[i]))
            text += GetSignalName(row) + L": " + FormatFullPin(present, chain) + L'\n';
    }
    return text;
}

void ApplyPinFill(OmFlashPins& pins, const OmPinFill& fill) {
    for (size_t i = 0; i < fill.pins.size(); ++i)
        static_cast<OmDevicePin&>(GetSignalPin(pins, fill.firstRow + static_cast<int>(i))) =
            fill.pins[i];
}
