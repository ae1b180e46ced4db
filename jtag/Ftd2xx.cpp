#include "jtag/Ftd2xx.h"

#include "jtag/Exception.h"
#include "jtag/Log.h"

#include <algorithm>

namespace {

constexpr const char* kEntryPoints[] = {
    "FT_CreateDeviceInfoList",
    "FT_GetDeviceInfoDetail",
    "FT_GetDeviceInfo",
    "FT_OpenEx",
    "FT_Close",
    "FT_ResetDevice",
    "FT_SetUSBParameters",
    "FT_Purge",
    "FT_SetLatencyTimer",
    "FT_SetBitMode",
    "FT_GetQueueStatus",
    "FT_Write",
    "FT_Read",
};

constexpr const char* kLibraryNames[] = {"ftd2xx.dll"};
constexpr OmLibraryRow kLibrary{.names = kLibraryNames};

// USB and chip set-up (D2XX Programmer's Guide).
constexpr uint32_t kInTransferSize = 0x4000;
constexpr uint32_t kPurgeBoth = 3;
constexpr uint8_t kLatencyMilliseconds = 16;
constexpr uint8_t kBitModeReset = 0;
constexpr uint8_t kBitModeMpsse = 2;

// MPSSE set-up commands (AN_108).
constexpr uint8_t kLoopbackOff = 0x85;
constexpr uint8_t kSetLowPort = 0x80;
constexpr uint8_t kSetHighPort = 0x82;
constexpr uint8_t kDivideByFiveOff = 0x8A;
constexpr uint8_t kSetDivisor = 0x86;
constexpr uint8_t kAdaptiveClockingOn = 0x96;

constexpr uint32_t kHighSpeedMaxFrequency = 30000000;
constexpr uint32_t kPlainMaxFrequency = 6000000;

// ADBUS pins: TCK, TDI and TMS are outputs, TDO is an input; TDI and TMS rest high.
constexpr uint16_t kJtagPins = 0x000F;
constexpr uint16_t kJtagOutputs = 0x000B;
constexpr uint16_t kJtagLevels = 0x000A;
constexpr uint16_t kRtckPin = 0x0080; // GPIOL3 under adaptive clocking

uint8_t LowByte(uint32_t value) {
    return static_cast<uint8_t>(value);
}

uint8_t HighByte(uint32_t value) {
    return static_cast<uint8_t>(value >> 8);
}

// By how much the engine's clock is divided so that TCK is never faster than asked for.
uint32_t DivideUp(uint32_t highest, uint32_t wanted) {
    return std::clamp<uint32_t>(highest / wanted + (highest % wanted != 0 ? 1 : 0), 1, 0x10000);
}

// These parts have no MPSSE.
bool HasMpsse(uint32_t type) {
    return type != kD2xxTypeBm && type != kD2xxTypeAm && type != kD2xxType100Ax &&
           type != kD2xxType232R;
}

// Every part with an MPSSE but the plain FT2232C has the 60 MHz engine.
bool IsHighSpeedType(uint32_t type) {
    return type != kD2xxType2232C;
}

// A dual-channel FT2232C shows as two devices, and the MPSSE is in channel A.
bool IsFallback(const OmD2xxDevice& device) {
    if (!HasMpsse(device.type))
        return false;
    return device.type != kD2xxType2232C ||
           (device.description.size() >= 3 && device.description.ends_with(" A"));
}

// The two channels of one part, in either order.
bool ArePair(const OmFtd2xxRecord& one, const OmFtd2xxRecord& other) {
    const std::string& a = one.description;
    const std::string& b = other.description;
    if (one.isHighSpeed || other.isHighSpeed || a.size() != b.size() || a.size() < 3)
        return false;
    const bool channels =
        (a.back() == 'A' && b.back() == 'B') || (a.back() == 'B' && b.back() == 'A');
    return channels && a[a.size() - 2] == ' ' &&
           a.compare(0, a.size() - 1, b, 0, b.size() - 1) == 0;
}

// Removes channel B of one pair; false if there is none left.
bool FoldOnePair(std::vector<OmFtd2xxRecord>& devices) {
    for (size_t i = 0; i < devices.size(); ++i) {
        for (size_t j = i + 1; j < devices.size(); ++j) {
            if (!ArePair(devices[i], devices[j]))
                continue;
            const size_t channelB = devices[i].description.back() == 'B' ? i : j;
            devices.erase(devices.begin() + static_cast<ptrdiff_t>(channelB));
            return true;
        }
    }
    return false;
}

} // namespace

OmFtd2xx::OmFtd2xx() : d2xx_(std::span(kFtd2xxUsbIds).subspan(kFtdiOwnUsbIds)) {
    OmLog(L"Creating OmFtd2xx\n");
}

OmFtd2xx::~OmFtd2xx() {
    OmLog(L"Destroying OmFtd2xx\n");
}

bool OmFtd2xx::Load() {
    return d2xx_.Library().LoadAndLog(kLibrary, d2xx_.EntryPoints(kEntryPoints));
}

bool OmFtd2xx::Initialize(const std::string& description, const std::string& serial,
                          uint32_t frequency, bool adaptive, uint16_t gpioDir, uint16_t gpioValue,
                          bool& isHighSpeed) {
    if (!Load() || frequency == 0 || !d2xx_.Open(description, serial, IsFallback))
        return false;
    OmLog(L"Device successfully opened\n");
    ConfigureUsb();
    isHighSpeed = IsHighSpeed();
    // A device that refuses a mode refuses the first write as well.
    d2xx_.functions.SetBitMode(d2xx_.handle, 0, kBitModeReset);
    d2xx_.functions.SetBitMode(d2xx_.handle, 0, kBitModeMpsse);
    // A part without the 60 MHz engine has no adaptive clocking either; the setting is dropped.
    if (!SendSetup(frequency, isHighSpeed, adaptive && isHighSpeed, gpioDir, gpioValue) ||
        !d2xx_.DiscardStale())
        return false;
    OmLog(L"Initialization succeeded\n");
    frequency_ = frequency; // as applied
    return true;
}

bool OmFtd2xx::IsHighSpeed() {
    uint32_t type = kD2xxTypeUnknown; // stays so if the device does not answer
    uint32_t id = 0;
    char serial[256] = {};
    char description[256] = {};
    d2xx_.functions.GetDeviceInfo(d2xx_.handle, &type, &id, serial, description, nullptr);
    return IsHighSpeedType(type);
}

// Results are not looked at: these only tune the transfers, and a device that is gone fails the
// first write.
void OmFtd2xx::ConfigureUsb() {
    d2xx_.functions.ResetDevice(d2xx_.handle);
    d2xx_.functions.SetUSBParameters(d2xx_.handle, kInTransferSize, 0);
    d2xx_.functions.Purge(d2xx_.handle, kPurgeBoth);
    d2xx_.functions.SetLatencyTimer(d2xx_.handle, kLatencyMilliseconds);
}

bool OmFtd2xx::SendSetup(uint32_t& frequency, bool isHighSpeed, bool adaptive, uint16_t gpioDir,
                         uint16_t gpioValue) {
    const uint16_t rtck = adaptive ? kRtckPin : 0;
    const unsigned dir = ((gpioDir & ~kJtagPins) | kJtagOutputs) & ~rtck;
    const unsigned value = ((gpioValue & ~kJtagPins) | kJtagLevels) & ~rtck;
    const uint32_t highest = isHighSpeed ? kHighSpeedMaxFrequency : kPlainMaxFrequency;
    const uint32_t divisor = DivideUp(highest, frequency);
    frequency = highest / divisor;
    std::vector<uint8_t> block{kLoopbackOff, kSetLowPort,     LowByte(value), LowByte(dir),
                               kSetHighPort, HighByte(value), HighByte(dir)};
    if (isHighSpeed)
        block.push_back(kDivideByFiveOff);
    block.insert(block.end(), {kSetDivisor, LowByte(divisor - 1), HighByte(divisor - 1)});
    if (adaptive)
        block.push_back(kAdaptiveClockingOn);
    try {
        d2xx_.Write(block);
    } catch (const OmException&) {
        OmLog(L"*** FAILED *** (first write operation failed)\n");
        d2xx_.Close();
        return false;
    }
    return true;
}

void OmFtd2xx::ListDevices(std::vector<OmFtd2xxRecord>& devices) {
    devices.clear();
    std::vector<OmD2xxDevice> listed;
    uint32_t total = 0;
    if (!d2xx_.ListDevices(listed, total))
        return;
    for (const OmD2xxDevice& device : listed) {
        if (HasMpsse(device.type))
            devices.push_back({device.description, device.serial, IsHighSpeedType(device.type)});
    }
    while (FoldOnePair(devices)) {
    }
    OmLog(L"Found %u FT2232 device(s)\n", static_cast<unsigned>(devices.size()));
}
