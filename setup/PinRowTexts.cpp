#include "setup/PinRowTexts.h"

#include "platform/Translation.h"
#include "setup/DevicePins.h"
#include "setup/SignalRows.h"

OmPinRowTexts FormatSignalRow(const OmFlashPins& pins, const OmChainPins& chain, int row) {
    OmPinRowTexts texts;
    texts[0] = GetSignalName(row);
    const SignalPin& pin = GetSignalPin(pins, row);
    if (!pin.IsConnected())
        return texts;
    texts[1] = FormatDeviceName(chain.GetDevices(), pin.Device);
    texts[2] = chain.FormatPin(pin);
    if (GetSignalKind(row) == OmSignalKind::Control)
        texts[3] = FormatActiveLevel(pin.Inverted);
    return texts;
}

OmPinRowTexts FormatStaticRow(const StaticPin& pin, const OmChainPins& chain) {
    OmPinRowTexts texts;
    if (pin.IsConnected()) {
        texts[0] = FormatDeviceName(chain.GetDevices(), pin.Device);
        texts[1] = chain.FormatPin(pin);
    }
    texts[2] = FormatStaticValue(pin.Value);
    texts[3] = pin.Note;
    return texts;
}

std::wstring FormatActiveLevel(bool isHigh) {
    return isHigh ? Translated("high") : Translated("low");
}

std::wstring FormatStaticValue(uint8_t value) {
    switch (value) {
    case 0:
        return L"0";
    case 1:
        return L"1";
    case kBitReleased:
        return L"Z";
    default:
        return Translated("ERROR");
    }
}
