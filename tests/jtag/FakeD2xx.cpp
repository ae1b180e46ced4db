#include "tests/jtag/FakeD2xx.h"

#include "jtag/D2xx.h"
#include "platform/Clock.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <utility>

namespace {

using Handle = void*;

constexpr uint32_t kOk = 0;
constexpr uint32_t kOtherError = 18;

FakeD2xx* fake = nullptr; // the library's functions carry no context
char deviceObject;        // its address is the only valid handle

bool Called(const char* function, const std::string& arguments = {}) {
    return !fake->Note(function, arguments);
}

bool CalledOn(Handle handle, const char* function, const std::string& arguments = {}) {
    EXPECT_EQ(handle, &deviceObject) << function;
    EXPECT_EQ(fake->openHandles, 1) << function;
    return Called(function, arguments);
}

std::string Text(uint32_t number) {
    return std::to_string(number);
}

uint32_t OM_D2XX_CALL CreateDeviceInfoList(uint32_t* count) {
    if (!Called("FT_CreateDeviceInfoList"))
        return kOtherError;
    *count = static_cast<uint32_t>(fake->Listed().size()) + fake->extraDevices;
    return kOk;
}

uint32_t OM_D2XX_CALL GetDeviceInfoDetail(uint32_t index, uint32_t* flags, uint32_t* type,
                                          uint32_t* id, uint32_t* location, char* serial,
                                          char* description, Handle* handle) {
    const std::vector<FakeD2xx::Device> listed = fake->Listed();
    if (!Called("FT_GetDeviceInfoDetail", Text(index)) || index >= listed.size() ||
        !listed[index].hasDetail)
        return kOtherError;
    const FakeD2xx::Device& device = listed[index];
    *flags = device.flags;
    *type = device.type;
    *id = device.id;
    *location = 0;
    std::strcpy(serial, device.serial.c_str());
    std::strcpy(description, device.description.c_str());
    *handle = nullptr;
    return kOk;
}

uint32_t OM_D2XX_CALL GetDeviceInfo(Handle handle, uint32_t* type, uint32_t* id, char*, char*,
                                    void*) {
    if (!CalledOn(handle, "FT_GetDeviceInfo"))
        return kOtherError;
    *type = fake->openedType;
    *id = 0;
    return kOk;
}

uint32_t OM_D2XX_CALL OpenEx(void* text, uint32_t flags, Handle* handle) {
    const std::string wanted = static_cast<const char*>(text);
    if (!Called("FT_OpenEx", "'" + wanted + "' " + Text(flags)))
        return kOtherError;
    ++fake->openHandles;
    *handle = &deviceObject;
    return kOk;
}

uint32_t OM_D2XX_CALL Close(Handle handle) {
    const bool succeeds = CalledOn(handle, "FT_Close");
    --fake->openHandles;
    return succeeds ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL ResetDevice(Handle handle) {
    return CalledOn(handle, "FT_ResetDevice") ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL SetUSBParameters(Handle handle, uint32_t in, uint32_t out) {
    return CalledOn(handle, "FT_SetUSBParameters", Text(in) + " " + Text(out)) ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL Purge(Handle handle, uint32_t mask) {
    return CalledOn(handle, "FT_Purge", Text(mask)) ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL SetLatencyTimer(Handle handle, uint8_t milliseconds) {
    return CalledOn(handle, "FT_SetLatencyTimer", Text(milliseconds)) ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL SetBaudRate(Handle handle, uint32_t rate) {
    return CalledOn(handle, "FT_SetBaudRate", Text(rate)) ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL SetBitMode(Handle handle, uint8_t mask, uint8_t mode) {
    return CalledOn(handle, "FT_SetBitMode", Text(mask) + " " + Text(mode)) ? kOk : kOtherError;
}

uint32_t OM_D2XX_CALL GetQueueStatus(Handle handle, uint32_t* waiting) {
    if (!CalledOn(handle, "FT_GetQueueStatus"))
        return kOtherError;
    *waiting =
        fake->waiting == UINT32_MAX ? static_cast<uint32_t>(fake->queue.size()) : fake->waiting;
    return kOk;
}

uint32_t OM_D2XX_CALL Write(Handle handle, void* bytes, uint32_t count, uint32_t* done) {
    if (!CalledOn(handle, "FT_Write", Text(count)))
        return kOtherError;
    const auto* data = static_cast<const uint8_t*>(bytes);
    fake->writes.emplace_back(data, data + count);
    *done = count - static_cast<uint32_t>(fake->writeShortfall);
    return kOk;
}

uint32_t OM_D2XX_CALL Read(Handle handle, void* bytes, uint32_t count, uint32_t* done) {
    if (!CalledOn(handle, "FT_Read", Text(count)))
        return kOtherError;
    GetClock().SleepMilliseconds(fake->readMilliseconds);
    const size_t ready = GetClock().Milliseconds() < fake->answerAt ? 0 : fake->queue.size();
    const size_t given = std::min({size_t{count}, fake->readLimit, ready});
    const auto end = fake->queue.begin() + static_cast<ptrdiff_t>(given);
    std::copy(fake->queue.begin(), end, static_cast<uint8_t*>(bytes));
    fake->queue.erase(fake->queue.begin(), end);
    *done = static_cast<uint32_t>(given + fake->readOverrun);
    return kOk;
}

uint32_t OM_D2XX_CALL SetVIDPID(uint32_t vendor, uint32_t product) {
    if (!Called("FT_SetVIDPID", Text(vendor) + " " + Text(product)))
        return kOtherError;
    fake->customId = vendor << 16 | product;
    return kOk;
}

uint32_t OM_D2XX_CALL SetTimeouts(Handle handle, uint32_t read, uint32_t write) {
    return CalledOn(handle, "FT_SetTimeouts", Text(read) + " " + Text(write)) ? kOk : kOtherError;
}

} // namespace

FakeD2xx::FakeD2xx() {
    fake = this;
    libraries = {"ftd2xx.dll"};
    exports = {
        {"FT_CreateDeviceInfoList", Export(CreateDeviceInfoList)},
        {"FT_GetDeviceInfoDetail", Export(GetDeviceInfoDetail)},
        {"FT_GetDeviceInfo", Export(GetDeviceInfo)},
        {"FT_OpenEx", Export(OpenEx)},
        {"FT_Close", Export(Close)},
        {"FT_ResetDevice", Export(ResetDevice)},
        {"FT_SetUSBParameters", Export(SetUSBParameters)},
        {"FT_Purge", Export(Purge)},
        {"FT_SetLatencyTimer", Export(SetLatencyTimer)},
        {"FT_SetBaudRate", Export(SetBaudRate)},
        {"FT_SetBitMode", Export(SetBitMode)},
        {"FT_GetQueueStatus", Export(GetQueueStatus)},
        {"FT_Write", Export(Write)},
        {"FT_Read", Export(Read)},
    };
}

void FakeD2xx::ExportOptional() {
    exports["FT_SetVIDPID"] = Export(SetVIDPID);
    exports["FT_SetTimeouts"] = Export(SetTimeouts);
    listsAll = false;
}

std::vector<FakeD2xx::Device> FakeD2xx::Listed() const {
    std::vector<Device> listed;
    for (const Device& device : devices)
        if (listsAll || device.id == 0x04036010 || device.id == customId)
            listed.push_back(device);
    return listed;
}

FakeD2xx::~FakeD2xx() {
    EXPECT_EQ(openHandles, 0) << "a device was left open";
    EXPECT_EQ(loaded, 0) << "a library was not freed";
    fake = nullptr;
}

void FakeD2xx::Fail(const std::string& function, int successes) {
    failing_ = function;
    successes_ = successes;
}

bool FakeD2xx::Note(const std::string& function, const std::string& arguments) {
    calls.push_back(arguments.empty() ? function : function + " " + arguments);
    return function == failing_ && successes_-- <= 0;
}

std::vector<std::string> FakeD2xx::TakeCalls() {
    return std::exchange(calls, {});
}

std::vector<Bytes> FakeD2xx::TakeWrites() {
    return std::exchange(writes, {});
}

int FakeD2xx::Count(const std::string& function) const {
    return static_cast<int>(std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
        return call == function || call.starts_with(function + " ");
    }));
}
