// The libraries of all vendors, with devices that swallow all writes and answer reads at once: what
// is left is the host's own work.
#pragma once

#include "benchmarks/NullD2xx.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace null_vendors {

// The cables look at no more than the low byte of most results, so one width does for all of them.
using Result = int;

inline const char* OpenJLink() {
    return nullptr;
}

inline void DoNothing() {}

inline Result SelectUsb(int) {
    return 0;
}

inline void SetHandler(void (*)(const char*)) {}

inline Result HasError() {
    return 0;
}

inline void SetSpeed(uint32_t) {}

inline void StoreGetRaw(const uint8_t* tdi, uint8_t* tdo, const uint8_t*, uint32_t bits) {
    benchmark::DoNotOptimize(tdi);
    std::memset(tdo, 0, (bits + 7) / 8);
}

inline void StoreRaw(const uint8_t* tdi, const uint8_t*, uint32_t) {
    benchmark::DoNotOptimize(tdi);
}

inline Result Init(int32_t*) {
    return 1;
}

inline Result OpenDigilent(uintptr_t* handle, char*, int32_t*, void*) {
    *handle = 1;
    return 1;
}

inline Result Enable(uintptr_t, int32_t*, void*) {
    return 1;
}

inline Result Close(uintptr_t, int32_t*) {
    return 1;
}

inline Result Disable(uintptr_t, int32_t*, uint32_t*) {
    return 1;
}

inline Result PutPairs(uintptr_t, int pairs, uint8_t* bytes, int getTdo, uint8_t* tdo, int32_t*,
                       void*) {
    benchmark::DoNotOptimize(bytes);
    if (getTdo)
        std::memset(tdo, 0, (static_cast<size_t>(pairs) + 7) / 8);
    return 1;
}

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

// Of the J-Link and of the Digilent cable.
class Library : public OmSharedLibrary {
  public:
    void* Resolve(const char* name) override {
        static const std::map<std::string, void*> exports = {
            {"JLINKARM_Open", Address(OpenJLink)},
            {"JLINKARM_Close", Address(DoNothing)},
            {"JLINKARM_SelectUSB", Address(SelectUsb)},
            {"JLINKARM_SelectIP", Address(SelectUsb)},
            {"JLINKARM_SetWarnOutHandler", Address(SetHandler)},
            {"JLINKARM_SetErrorOutHandler", Address(SetHandler)},
            {"JLINKARM_HasError", Address(HasError)},
            {"JLINKARM_ClrError", Address(DoNothing)},
            {"JLINKARM_SetSpeed", Address(SetSpeed)},
            {"JLINKARM_JTAG_StoreGetRaw", Address(StoreGetRaw)},
            {"JLINKARM_JTAG_StoreRaw", Address(StoreRaw)},
            {"DpcInit", Address(Init)},
            {"DpcTerm", Address(DoNothing)},
            {"DvmgStartConfigureDevices", Address(DoNothing)}, // never called
            {"DvmgGetDevCount", Address(DoNothing)},           // likewise
            {"DvmgGetDevName", Address(DoNothing)},            // likewise
            {"DpcOpenJtag", Address(OpenDigilent)},
            {"DpcCloseJtag", Address(Close)},
            {"DpcEnableJtag", Address(Enable)},
            {"DpcDisableJtag", Address(Disable)},
            {"DpcPutTdiBits", Address(DoNothing)}, // never called
            {"DpcPutTmsTdiBits", Address(PutPairs)},
        };
        const auto found = exports.find(name);
        return found == exports.end() ? nullptr : found->second;
    }
};

class Loader : public OmLibraryLoader {
  public:
    Loader() { SetLibraryLoader(this); }

    ~Loader() override { SetLibraryLoader(nullptr); }

    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        const std::string_view name(windowsName);
        if (name == "ftd2xx.dll" || name == "usbblstr32.dll")
            return std::make_unique<null_d2xx::NullLibrary>();
        return std::make_unique<Library>();
    }
};

} // namespace null_vendors
