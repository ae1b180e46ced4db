#include "fuzz/HostileD2xx.h"

#include "fuzz/Check.h"
#include "jtag/D2xx.h"

#include <algorithm>

namespace {

using Handle = OmD2xxFunctions::Handle;

constexpr uint32_t kOk = 0;

HostileD2xx* pod = nullptr; // the library's functions carry no context
char device;                // its address is the only valid handle

uint32_t Status() {
    return pod->Misbehaves() ? pod->input.ConsumeIntegral<uint32_t>() : kOk;
}

uint32_t StatusOf(Handle handle) {
    Check(pod->isOpen && handle == &device, "only an open device is used");
    return Status();
}

uint32_t Count(uint32_t good) {
    return pod->Misbehaves() ? pod->input.ConsumeIntegral<uint32_t>() : good;
}

uint32_t OM_D2XX_CALL CreateDeviceInfoList(uint32_t* count) {
    *count = Count(pod->input.ConsumeIntegralInRange<uint32_t>(0, 4));
    return Status();
}

uint32_t OM_D2XX_CALL GetDeviceInfoDetail(uint32_t, uint32_t* flags, uint32_t* type, uint32_t* id,
                                          uint32_t* location, char* serial, char* description,
                                          Handle* handle) {
    *flags = pod->input.ConsumeIntegralInRange<uint32_t>(0, 3);
    *type = Count(pod->input.ConsumeIntegralInRange<uint32_t>(0, 9));
    *id = pod->input.ConsumeBool() ? 0x09FB6001 : 0x04036010;
    *location = 0;
    *handle = nullptr;
    pod->FillText({serial, 16});
    pod->FillText({description, 64});
    return Status();
}

uint32_t OM_D2XX_CALL GetDeviceInfo(Handle handle, uint32_t* type, uint32_t*, char* serial,
                                    char* description, void*) {
    *type = Count(pod->input.ConsumeIntegralInRange<uint32_t>(0, 9));
    pod->FillText({serial, 16});
    pod->FillText({description, 64});
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL OpenEx(void*, uint32_t, Handle* handle) {
    Check(!pod->isOpen, "one device is open at a time");
    if (const uint32_t status = Status(); status != kOk)
        return status;
    pod->isOpen = !pod->Misbehaves();
    *handle = pod->isOpen ? &device : nullptr;
    return kOk;
}

uint32_t OM_D2XX_CALL Close(Handle handle) {
    const uint32_t status = StatusOf(handle);
    pod->isOpen = false;
    return status;
}

uint32_t OM_D2XX_CALL OnDevice(Handle handle) {
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL SetNumber(Handle handle, uint32_t) {
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL SetNumbers(Handle handle, uint32_t, uint32_t) {
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL SetByte(Handle handle, uint8_t) {
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL SetBytes(Handle handle, uint8_t, uint8_t) {
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL GetQueueStatus(Handle handle, uint32_t* waiting) {
    *waiting = Count(pod->input.ConsumeIntegral<uint8_t>());
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL Write(Handle handle, void*, uint32_t count, uint32_t* done) {
    *done = Count(count);
    return StatusOf(handle);
}

uint32_t OM_D2XX_CALL Read(Handle handle, void* bytes, uint32_t count, uint32_t* done) {
    const uint32_t given =
        pod->Misbehaves() ? pod->input.ConsumeIntegralInRange<uint32_t>(0, count) : count;
    pod->Fill({static_cast<uint8_t*>(bytes), given});
    *done = Count(given);
    return StatusOf(handle);
}

} // namespace

HostileD2xx::HostileD2xx(const uint8_t* data, size_t size) : Pod(data, size) {
    pod = this;
    libraries = {"ftd2xx.dll", "usbblstr32.dll"};
    exports = {
        {"FT_CreateDeviceInfoList", Export(CreateDeviceInfoList)},
        {"FT_GetDeviceInfoDetail", Export(GetDeviceInfoDetail)},
        {"FT_GetDeviceInfo", Export(GetDeviceInfo)},
        {"FT_OpenEx", Export(OpenEx)},
        {"FT_Close", Export(Close)},
        {"FT_ResetDevice", Export(OnDevice)},
        {"FT_SetUSBParameters", Export(SetNumbers)},
        {"FT_Purge", Export(SetNumber)},
        {"FT_SetLatencyTimer", Export(SetByte)},
        {"FT_SetBaudRate", Export(SetNumber)},
        {"FT_SetBitMode", Export(SetBytes)},
        {"FT_GetQueueStatus", Export(GetQueueStatus)},
        {"FT_Write", Export(Write)},
        {"FT_Read", Export(Read)},
    };
}

HostileD2xx::~HostileD2xx() {
    Check(!isOpen, "the device is closed in the end");
    Check(loaded == 0, "the library is freed in the end");
    pod = nullptr;
}
