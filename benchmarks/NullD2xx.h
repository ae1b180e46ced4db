// A D2XX library whose device swallows all writes and answers reads at once: what is left is the
// host's own work.
#pragma once

#include "jtag/D2xx.h"
#include "platform/SharedLibrary.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>

namespace null_d2xx {

using Handle = void*;

inline int device;

inline uint32_t OM_D2XX_CALL CreateDeviceInfoList(uint32_t* count) {
    *count = 1;
    return 0;
}

inline uint32_t OM_D2XX_CALL GetDeviceInfoDetail(uint32_t, uint32_t* flags, uint32_t* type,
                                                 uint32_t*, uint32_t*, char*, char* description,
                                                 Handle*) {
    *flags = 0;
    *type = 6;
    description[0] = 'A';
    description[1] = '\0';
    return 0;
}

inline uint32_t OM_D2XX_CALL GetDeviceInfo(Handle, uint32_t* type, uint32_t*, char*, char*, void*) {
    *type = 6;
    return 0;
}

inline uint32_t OM_D2XX_CALL OpenEx(void*, uint32_t, Handle* handle) {
    *handle = &device;
    return 0;
}

inline uint32_t OM_D2XX_CALL OnDevice(Handle) {
    return 0;
}

inline uint32_t OM_D2XX_CALL SetNumber(Handle, uint32_t) {
    return 0;
}

inline uint32_t OM_D2XX_CALL SetNumbers(Handle, uint32_t, uint32_t) {
    return 0;
}

inline uint32_t OM_D2XX_CALL SetByte(Handle, uint8_t) {
    return 0;
}

inline uint32_t OM_D2XX_CALL SetBytes(Handle, uint8_t, uint8_t) {
    return 0;
}

inline uint32_t OM_D2XX_CALL GetQueueStatus(Handle, uint32_t* waiting) {
    *waiting = 0;
    return 0;
}

inline uint32_t OM_D2XX_CALL Write(Handle, void* bytes, uint32_t count, uint32_t* done) {
    benchmark::DoNotOptimize(bytes);
    *done = count;
    return 0;
}

// TDO stays low.
inline uint32_t OM_D2XX_CALL Read(Handle, void* bytes, uint32_t count, uint32_t* done) {
    std::memset(bytes, 0, count);
    *done = count;
    return 0;
}

template <typename Function>
void* Export(Function* function) {
    return reinterpret_cast<void*>(function);
}

class NullLibrary : public OmSharedLibrary {
  public:
    void* Resolve(const char* name) override {
        static const std::map<std::string, void*> exports = {
            {"FT_CreateDeviceInfoList", Export(CreateDeviceInfoList)},
            {"FT_GetDeviceInfoDetail", Export(GetDeviceInfoDetail)},
            {"FT_GetDeviceInfo", Export(GetDeviceInfo)},
            {"FT_OpenEx", Export(OpenEx)},
            {"FT_Close", Export(OnDevice)},
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
        const auto found = exports.find(name);
        return found == exports.end() ? nullptr : found->second;
    }
};

class NullLoader : public OmLibraryLoader {
  public:
    NullLoader() { SetLibraryLoader(this); }

    ~NullLoader() override { SetLibraryLoader(nullptr); }

    NullLoader(const NullLoader&) = delete;
    NullLoader& operator=(const NullLoader&) = delete;

    std::unique_ptr<OmSharedLibrary> Load(const char*) override {
        return std::make_unique<NullLibrary>();
    }
};

} // namespace null_d2xx
