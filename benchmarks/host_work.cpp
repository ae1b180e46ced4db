// The host's own work for a batch of scans: laying out the vectors, packing them into the cable's
// commands and decoding what comes back. The wire is the limit of the program's speed as long as
// this stays below a tenth of a scan's time on it: 3 us for 1,000 bits at 30 MHz TCK.

#include "jtag/Ftd2xx.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <map>
#include <string>

namespace {

using Handle = void*;

// A D2XX library whose device swallows all writes and answers reads at once.
int device;

uint32_t OM_VENDOR_CALL CreateDeviceInfoList(uint32_t* count) {
    *count = 1;
    return 0;
}

uint32_t OM_VENDOR_CALL GetDeviceInfoDetail(uint32_t, uint32_t* flags, uint32_t* type, uint32_t*,
                                            uint32_t*, char*, char* description, Handle*) {
    *flags = 0;
    *type = 6;
    description[0] = 'A';
    description[1] = '\0';
    return 0;
}

uint32_t OM_VENDOR_CALL GetDeviceInfo(Handle, uint32_t* type, uint32_t*, char*, char*, void*) {
    *type = 6;
    return 0;
}

uint32_t OM_VENDOR_CALL OpenEx(void*, uint32_t, Handle* handle) {
    *handle = &device;
    return 0;
}

uint32_t OM_VENDOR_CALL OnDevice(Handle) {
    return 0;
}

uint32_t OM_VENDOR_CALL SetNumber(Handle, uint32_t) {
    return 0;
}

uint32_t OM_VENDOR_CALL SetNumbers(Handle, uint32_t, uint32_t) {
    return 0;
}

uint32_t OM_VENDOR_CALL SetByte(Handle, uint8_t) {
    return 0;
}

uint32_t OM_VENDOR_CALL SetBytes(Handle, uint8_t, uint8_t) {
    return 0;
}

uint32_t OM_VENDOR_CALL GetQueueStatus(Handle, uint32_t* waiting) {
    *waiting = 0;
    return 0;
}

uint32_t OM_VENDOR_CALL Transfer(Handle, void* bytes, uint32_t count, uint32_t* done) {
    benchmark::DoNotOptimize(bytes);
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
            {"FT_SetBitMode", Export(SetBytes)},
            {"FT_GetQueueStatus", Export(GetQueueStatus)},
            {"FT_Write", Export(Transfer)},
            {"FT_Read", Export(Transfer)},
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

// Levels of a boundary register as a bus cycle leaves them: some of each kind.
OmBitVector MakeRegister(size_t bits) {
    OmBitVector levels(bits);
    for (size_t i = 0; i < bits; ++i)
        levels[i] = (i * i + i / 3) % 2;
    return levels;
}

// `state.range(0)` bits a scan, every `state.range(1)`-th one captured (0: none).
void ScanBatch(benchmark::State& state) {
    constexpr size_t kBatch = 400;
    NullLoader loader;
    OmFtd2xx cable;
    bool isHighSpeed = false;
    if (!cable.Initialize("A", "", 30000000, false, 0x051B, 0x010A, isHighSpeed)) {
        state.SkipWithError("the null library does not open");
        return;
    }
    const OmBitVector levels = MakeRegister(static_cast<size_t>(state.range(0)));
    const auto every = static_cast<size_t>(state.range(1));
    for (auto iteration : state) {
        OmScanList vectors;
        vectors.reserve(kBatch);
        for (size_t i = 0; i < kBatch; ++i)
            vectors.push_back({levels, every != 0 && i % every == 0});
        OmCapturedList captured;
        cable.ScanVectors(vectors, &captured);
        benchmark::DoNotOptimize(captured);
    }
    state.counters["per_scan"] = benchmark::Counter(
        kBatch, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(ScanBatch)
    ->ArgNames({"bits", "capture_every"})
    ->Args({1000, 0})
    ->Args({1000, 4})
    ->Args({1000, 1})
    ->Args({10000, 1});

} // namespace

BENCHMARK_MAIN();
