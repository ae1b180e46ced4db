// Stand-in for FTDI's D2XX library: the vendor's C functions on the virtual board. Types as in the
// D2XX programmer's guide; on Linux a DWORD has 32 bits. The USB-Blaster's private copy of the
// library is built from this file too.

#include "virtualboard/standins/Export.h"
#include "virtualboard/UsbHost.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Status = uint32_t;
using Handle = void*;

constexpr Status kNoHost = vb::kUsbDeviceNotFound;

// The vendor's buffers for these texts: 16 and 64 bytes.
constexpr size_t kSerialSize = 16;
constexpr size_t kDescriptionSize = 64;

constexpr uint32_t kFlagOpen = 1;
constexpr uint32_t kFlagHighSpeed = 2;

void CopyText(const std::string& text, void* to, size_t size) {
    if (!to)
        return;
    const size_t length = std::min(text.size(), size - 1);
    std::memcpy(to, text.data(), length);
    static_cast<char*>(to)[length] = '\0';
}

template <typename Value>
void Store(Value* to, Value value) {
    if (to)
        *to = value;
}

// Runs `work` on the device behind a handle, unless an injected fault fails the call.
template <typename Work>
Status OnDevice(const char* function, Handle handle, Work work) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host)
        return kNoHost;
    const Status fault = host->BeginCall(function);
    vb::UsbDevice* device = host->FromHandle(handle);
    if (!device)
        return vb::kUsbInvalidHandle;
    return fault != vb::kUsbOk ? fault : work(*host, *device);
}

} // namespace

VB_EXPORT Status FT_CreateDeviceInfoList(uint32_t* count) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    Store(count, host ? static_cast<uint32_t>(host->Listed().size()) : 0);
    return host ? host->BeginCall("FT_CreateDeviceInfoList") : vb::kUsbOk;
}

VB_EXPORT Status FT_GetDeviceInfoDetail(uint32_t index, uint32_t* flags, uint32_t* type,
                                        uint32_t* id, uint32_t* location, void* serial,
                                        void* description, Handle* handle) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host)
        return kNoHost;
    if (const Status fault = host->BeginCall("FT_GetDeviceInfoDetail"); fault != vb::kUsbOk)
        return fault;
    const std::vector<vb::UsbDevice*> listed = host->Listed();
    if (index >= listed.size())
        return vb::kUsbDeviceNotFound;
    vb::UsbDevice& device = *listed[index];
    const bool open = device.open || device.entry.open;
    const bool highSpeed = vb::UsbHost::TypeOf(device) == vb::kType2232H;
    Store(flags, (open ? kFlagOpen : 0) | (highSpeed ? kFlagHighSpeed : 0));
    Store(type, vb::UsbHost::TypeOf(device));
    Store(id, vb::UsbHost::IdOf(device));
    Store(location, index + 1);
    CopyText(device.entry.serial, serial, kSerialSize);
    CopyText(device.entry.description, description, kDescriptionSize);
    Store<Handle>(handle, device.open ? &device : nullptr);
    return vb::kUsbOk;
}

VB_EXPORT Status FT_GetDeviceInfo(Handle handle, uint32_t* type, uint32_t* id, char* serial,
                                  char* description, void*) {
    return OnDevice("FT_GetDeviceInfo", handle, [&](vb::UsbHost&, vb::UsbDevice& device) {
        Store(type, vb::UsbHost::TypeOf(device));
        Store(id, vb::UsbHost::IdOf(device));
        CopyText(device.entry.serial, serial, kSerialSize);
        CopyText(device.entry.description, description, kDescriptionSize);
        return vb::kUsbOk;
    });
}

// Outside Windows only.
VB_EXPORT Status FT_SetVIDPID(uint32_t vendor, uint32_t product) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host)
        return vb::kUsbOk;
    const Status fault = host->BeginCall("FT_SetVIDPID");
    if (fault == vb::kUsbOk)
        host->SetCustomId(vendor, product);
    return fault;
}

VB_EXPORT Status FT_OpenEx(void* argument, uint32_t flags, Handle* handle) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host)
        return kNoHost;
    if (const Status fault = host->BeginCall("FT_OpenEx"); fault != vb::kUsbOk)
        return fault;
    const bool known = flags == static_cast<uint32_t>(vb::OpenBy::Serial) ||
                       flags == static_cast<uint32_t>(vb::OpenBy::Description);
    if (!argument || !handle || !known)
        return vb::kUsbInvalidParameter;
    vb::UsbDevice* device = nullptr;
    const Status status =
        host->Open(static_cast<vb::OpenBy>(flags), static_cast<const char*>(argument), device);
    *handle = device;
    return status;
}

// A handle is void after a close that fails, too.
VB_EXPORT Status FT_Close(Handle handle) {
    vb::UsbHost* host = vb::CurrentUsbHost();
    if (!host)
        return kNoHost;
    const Status fault = host->BeginCall("FT_Close");
    vb::UsbDevice* device = host->FromHandle(handle);
    if (!device)
        return vb::kUsbInvalidHandle;
    host->Close(*device);
    return fault;
}

VB_EXPORT Status FT_ResetDevice(Handle handle) {
    return OnDevice("FT_ResetDevice", handle, [](vb::UsbHost& host, vb::UsbDevice& device) {
        host.ResetDevice(device);
        return vb::kUsbOk;
    });
}

VB_EXPORT Status FT_SetUSBParameters(Handle handle, uint32_t, uint32_t) {
    return OnDevice("FT_SetUSBParameters", handle,
                    [](vb::UsbHost&, vb::UsbDevice&) { return vb::kUsbOk; });
}

VB_EXPORT Status FT_SetTimeouts(Handle handle, uint32_t readMilliseconds, uint32_t) {
    return OnDevice("FT_SetTimeouts", handle,
                    [readMilliseconds](vb::UsbHost& host, vb::UsbDevice& device) {
                        host.SetTimeouts(device, readMilliseconds);
                        return vb::kUsbOk;
                    });
}

VB_EXPORT Status FT_Purge(Handle handle, uint32_t mask) {
    constexpr uint32_t kReceive = 1;
    return OnDevice("FT_Purge", handle, [mask](vb::UsbHost& host, vb::UsbDevice& device) {
        if (mask & kReceive)
            host.Purge(device);
        return vb::kUsbOk;
    });
}

VB_EXPORT Status FT_SetLatencyTimer(Handle handle, uint8_t) {
    return OnDevice("FT_SetLatencyTimer", handle,
                    [](vb::UsbHost&, vb::UsbDevice&) { return vb::kUsbOk; });
}

VB_EXPORT Status FT_SetBaudRate(Handle handle, uint32_t) {
    return OnDevice("FT_SetBaudRate", handle,
                    [](vb::UsbHost&, vb::UsbDevice&) { return vb::kUsbOk; });
}

VB_EXPORT Status FT_SetBitMode(Handle handle, uint8_t, uint8_t mode) {
    return OnDevice("FT_SetBitMode", handle, [mode](vb::UsbHost& host, vb::UsbDevice& device) {
        return host.SetBitMode(device, mode);
    });
}

VB_EXPORT Status FT_GetQueueStatus(Handle handle, uint32_t* waiting) {
    return OnDevice("FT_GetQueueStatus", handle,
                    [waiting](vb::UsbHost& host, vb::UsbDevice& device) {
                        uint32_t count = 0;
                        const Status status = host.QueueStatus(device, count);
                        Store(waiting, count);
                        return status;
                    });
}

VB_EXPORT Status FT_Write(Handle handle, const void* buffer, uint32_t size, uint32_t* written) {
    Store(written, uint32_t{0});
    return OnDevice("FT_Write", handle, [&](vb::UsbHost& host, vb::UsbDevice& device) {
        const Status status = host.Write(device, {static_cast<const uint8_t*>(buffer), size});
        Store(written, status == vb::kUsbOk ? size : 0);
        return status;
    });
}

VB_EXPORT Status FT_Read(Handle handle, void* buffer, uint32_t size, uint32_t* received) {
    Store(received, uint32_t{0});
    return OnDevice("FT_Read", handle, [&](vb::UsbHost& host, vb::UsbDevice& device) {
        uint32_t count = 0;
        const Status status = host.Read(device, {static_cast<uint8_t*>(buffer), size}, count);
        Store(received, count);
        return status;
    });
}
