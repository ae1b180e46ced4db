#include "setup/SignalRows.h"

#include "bsdl/BsdlData.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "setup/DevicePins.h"

namespace {

constexpr const wchar_t* kControlNames[] = {L"CE", L"OE", L"WE"};

std::wstring DescribeUndriven() {
    return Translated("The boundary register cannot drive this pin: it has no output cell.");
}

void Strip(std::vector<SignalPin>& pins) {
    while (!pins.empty() && !pins.back().IsConnected())
        pins.pop_back();
}

} // namespace

OmSignalKind GetSignalKind(int row) {
    if (row < kFirstAddressRow)
        return OmSignalKind::Control;
    return row < kFirstDataRow ? OmSignalKind::Address : OmSignalKind::Data;
}

std::wstring GetSignalName(int row) {
    switch (GetSignalKind(row)) {
    case OmSignalKind::Control:
        return kControlNames[row];
    case OmSignalKind::Address:
        return OmFormat(L"A%d", row - kFirstAddressRow);
    case OmSignalKind::Data:
        break;
    }
    return OmFormat(L"D%d", row - kFirstDataRow);
}

int FindSignalRow(const std::wstring& name) {
    for (int row = 0; row < kSignalRowCount; ++row)
        if (EqualsIgnoringCase(ToLocal(GetSignalName(row)), ToLocal(name)))
            return row;
    return -1;
}

SignalPin& GetSignalPin(OmFlashPins& pins, int row) {
    SignalPin* const controls[] = {&pins.ce, &pins.oe, &pins.we};
    switch (GetSignalKind(row)) {
    case OmSignalKind::Control:
        return *controls[row];
    case OmSignalKind::Address:
        return pins.addressPins[static_cast<size_t>(row - kFirstAddressRow)];
    case OmSignalKind::Data:
        break;
    }
    return pins.dataPins[static_cast<size_t>(row - kFirstDataRow)];
}

const SignalPin& GetSignalPin(const OmFlashPins& pins, int row) {
    return GetSignalPin(const_cast<OmFlashPins&>(pins), row);
}

void PadBusPins(OmFlashPins& pins) {
    pins.addressPins.resize(kBusRowCount);
    pins.dataPins.resize(kBusRowCount);
}

void StripBusPins(OmFlashPins& pins) {
    Strip(pins.addressPins);
    Strip(pins.dataPins);
}

std::wstring FindPinFault(const OmPinChoice& pin, OmSignalKind kind) {
    if (!pin.canDrive)
        return DescribeUndriven();
    if (kind == OmSignalKind::Data && !pin.canSense)
        return Translated("The boundary register cannot read this pin: it has no input cell.");
    return {};
}

std::wstring FindStaticPinFault(const OmPinChoice& pin, uint8_t value) {
    return value == kBitReleased || pin.canDrive ? std::wstring() : DescribeUndriven();
}
