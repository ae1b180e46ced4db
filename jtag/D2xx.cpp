#include "jtag/D2xx.h"

#include "jtag/CableErrors.h"
#include "jtag/Exception.h"
#include "jtag/Log.h"
#include "platform/Clock.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr uint32_t kOpenBySerial = 1;
constexpr uint32_t kOpenByDescription = 2;
constexpr uint32_t kFlagOpened = 1;

// More devices than a host can carry; a library that counts higher is not believed.
constexpr uint32_t kMaxDevices = 1024;

// The driver's queue holds 64 KiB; a library that counts far higher is not believed, as reading
// that much could take hours.
constexpr uint32_t kMaxWaiting = 1024 * 1024;

constexpr unsigned kSettleMilliseconds = 32;
constexpr int kMaxReads = 31;
constexpr unsigned kReadRetryMilliseconds = 10;

// Time-outs of the library: of one read, so that 31 of them and the pauses stay below 3 s; of a
// write, beside twice the time that the device needs for it.
constexpr uint32_t kReadMilliseconds = 50;
constexpr uint32_t kWriteMilliseconds = 2500;
constexpr uint64_t kLongestTimeout = 0x7FFFFFFF;

bool ReadDetail(const OmD2xxFunctions& functions, uint32_t index, OmD2xxDevice& device) {
    std::array<char, 256> serial{}; // the library writes at most 16 and 64
    std::array<char, 256> description{};
    uint32_t location = 0;
    OmD2xxFunctions::Handle openedAs = nullptr;
    if (functions.GetDeviceInfoDetail(index, &device.flags, &device.type, &device.id, &location,
                                      serial.data(), description.data(), &openedAs) != 0)
        return false;
    serial.back() = description.back() = '\0';
    device.serial = serial.data();
    device.description = description.data();
    return true;
}

} // namespace

OmD2xx::~OmD2xx() {
    Close();
}

std::vector<OmEntryPoint> OmD2xx::EntryPoints(std::span<const char* const> names) {
    const OmEntryPoint all[] = {
        MakeEntryPoint("FT_CreateDeviceInfoList", functions.CreateDeviceInfoList),
        MakeEntryPoint("FT_GetDeviceInfoDetail", functions.GetDeviceInfoDetail),
        MakeEntryPoint("FT_GetDeviceInfo", functions.GetDeviceInfo),
        MakeEntryPoint("FT_OpenEx", functions.OpenEx),
        MakeEntryPoint("FT_Close", functions.Close),
        MakeEntryPoint("FT_ResetDevice", functions.ResetDevice),
        MakeEntryPoint("FT_SetUSBParameters", functions.SetUSBParameters),
        MakeEntryPoint("FT_Purge", functions.Purge),
        MakeEntryPoint("FT_SetLatencyTimer", functions.SetLatencyTimer),
        MakeEntryPoint("FT_SetBaudRate", functions.SetBaudRate),
        MakeEntryPoint("FT_SetBitMode", functions.SetBitMode),
        MakeEntryPoint("FT_GetQueueStatus", functions.GetQueueStatus),
        MakeEntryPoint("FT_Write", functions.Write),
        MakeEntryPoint("FT_Read", functions.Read),
    };
    std::vector<OmEntryPoint> rows{
        MakeOptionalEntryPoint("FT_SetVIDPID", functions.SetVIDPID),
        MakeOptionalEntryPoint("FT_SetTimeouts", functions.SetTimeouts),
    };
    for (const OmEntryPoint& row : all) {
        if (std::find(names.begin(), names.end(), std::string_view(row.name)) != names.end())
            rows.push_back(row);
    }
    return rows;
}

bool OmD2xx::ListDevices(std::vector<OmD2xxDevice>& devices, uint32_t& total) {
    devices.clear();
    total = 0;
    if (!library_.IsLoaded() || !ListKnown(devices, total))
        return false;
    if (functions.SetVIDPID) {
        for (const OmUsbId identifier : identifiers_)
            ListOthers(identifier, devices, total);
    }
    return true;
}

// What the library looks for by itself. A device of the other identifiers may be among it, if one
// was set for an earlier list: its turn comes.
bool OmD2xx::ListKnown(std::vector<OmD2xxDevice>& devices, uint32_t& total) {
    if (functions.CreateDeviceInfoList(&total) != 0)
        return false;
    const uint32_t listed = std::min(total, kMaxDevices);
    for (uint32_t index = 0; index < listed; ++index) {
        OmD2xxDevice device;
        const bool readable = ReadDetail(functions, index, device);
        if (readable && functions.SetVIDPID && IsOneOfOthers(device))
            --total;
        else if (readable && !device.description.empty())
            devices.push_back(std::move(device));
    }
    return true;
}

// The library looks for one further identifier at a time.
void OmD2xx::ListOthers(OmUsbId identifier, std::vector<OmD2xxDevice>& devices, uint32_t& total) {
    uint32_t listed = 0;
    if (functions.SetVIDPID(identifier.vendor, identifier.product) != 0 ||
        functions.CreateDeviceInfoList(&listed) != 0)
        return;
    for (uint32_t index = 0; index < std::min(listed, kMaxDevices); ++index) {
        OmD2xxDevice device;
        if (!ReadDetail(functions, index, device) || device.id != identifier.AsNumber())
            continue;
        ++total;
        if (!device.description.empty())
            devices.push_back(std::move(device));
    }
}

bool OmD2xx::IsOneOfOthers(const OmD2xxDevice& device) const {
    return std::ranges::find(identifiers_, device.id, &OmUsbId::AsNumber) != identifiers_.end();
}

bool OmD2xx::Open(const std::string& description, const std::string& serial,
                  FallbackRule isFallback) {
    Close();
    std::vector<OmD2xxDevice> devices;
    uint32_t total = 0;
    if (!ListDevices(devices, total))
        return false;
    const auto byDescription = std::ranges::find(devices, description, &OmD2xxDevice::description);
    const auto bySerial = std::ranges::find(devices, serial, &OmD2xxDevice::serial);
    if (std::ranges::count(devices, description, &OmD2xxDevice::description) > 1 &&
        std::ranges::count(devices, serial, &OmD2xxDevice::serial) == 1)
        return OpenBy(*bySerial, serial, kOpenBySerial);
    if (byDescription != devices.end())
        return OpenBy(*byDescription, description, kOpenByDescription);
    const auto fallback = std::ranges::find_if(devices, [isFallback](const OmD2xxDevice& device) {
        return (device.flags & kFlagOpened) == 0 && isFallback(device);
    });
    return fallback != devices.end() &&
           OpenBy(*fallback, fallback->description, kOpenByDescription);
}

bool OmD2xx::OpenBy(const OmD2xxDevice& device, const std::string& text, uint32_t flag) {
    if (functions.SetVIDPID && IsOneOfOthers(device) &&
        functions.SetVIDPID(device.id >> 16, device.id & 0xFFFF) != 0)
        return false;
    std::string writable = text; // the library's parameter is not const
    if (functions.OpenEx(writable.data(), flag, &handle) != 0)
        handle = nullptr;
    writeTimeout_ = 0;
    if (handle)
        AllowWriteTime(0);
    return handle != nullptr;
}

// Without time-outs the library does not come back from a transfer that never ends. A read is asked
// for again as long as there is hope, so its time-out is short.
void OmD2xx::AllowWriteTime(uint64_t milliseconds) {
    const uint64_t wanted = kWriteMilliseconds + 2 * milliseconds;
    if (!functions.SetTimeouts || wanted <= writeTimeout_)
        return;
    writeTimeout_ = static_cast<uint32_t>(std::min<uint64_t>(wanted, kLongestTimeout));
    functions.SetTimeouts(handle, kReadMilliseconds, writeTimeout_);
}

void OmD2xx::Close() {
    if (handle)
        functions.Close(handle); // a device that will not close is gone for us all the same
    handle = nullptr;
}

void OmD2xx::CheckConnection() {
    uint32_t waiting = 0;
    if (functions.GetQueueStatus(handle, &waiting) != 0)
        ThrowConnectionError();
}

void OmD2xx::Write(std::span<const uint8_t> bytes, uint64_t ownMilliseconds) {
    AllowWriteTime(ownMilliseconds);
    uint32_t done = 0;
    auto* data = const_cast<uint8_t*>(bytes.data()); // the library's parameter is not const
    const auto status = functions.Write(handle, data, static_cast<uint32_t>(bytes.size()), &done);
    if (status != 0 || done != bytes.size())
        ThrowConnectionError();
}

void OmD2xx::FtdiRead(std::span<uint8_t> bytes, uint64_t ownMilliseconds) {
    const uint64_t due = GetClock().Milliseconds() + ownMilliseconds;
    for (int late = 0; !bytes.empty();) {
        uint32_t done = 0;
        const auto wanted = static_cast<uint32_t>(bytes.size());
        if (functions.Read(handle, bytes.data(), wanted, &done) != 0 || done > wanted)
            ThrowConnectionError();
        bytes = bytes.subspan(done);
        if (bytes.empty())
            return;
        if (GetClock().Milliseconds() >= due && ++late == kMaxReads)
            ThrowConnectionError();
        GetClock().SleepMilliseconds(kReadRetryMilliseconds);
    }
}

bool OmD2xx::DiscardStale() {
    GetClock().SleepMilliseconds(kSettleMilliseconds);
    try {
        Drain();
    } catch (const OmException&) {
        OmLog(L"*** FAILED *** (FtdiRead() has thrown an exception)\n");
        Close();
        return false;
    }
    return true;
}

void OmD2xx::Drain() {
    uint32_t waiting = 0;
    if (functions.GetQueueStatus(handle, &waiting) != 0)
        return; // the check before the first scan will say so
    if (waiting > kMaxWaiting)
        ThrowConnectionError();
    std::vector<uint8_t> scratch(waiting);
    FtdiRead(scratch);
}
