// The host's own work for a batch of scans: laying out the vectors, packing them into the cable's
// commands and decoding what comes back. The wire is the limit of the program's speed as long as
// this stays below a tenth of a scan's time on it: 3 us for 1,000 bits at 30 MHz TCK.

#include "benchmarks/NullVendors.h"
#include "jtag/CableFactory.h"

#include <benchmark/benchmark.h>
#include <memory>

namespace {

// Levels of a boundary register as a bus cycle leaves them: some of each kind.
OmBitVector MakeRegister(size_t bits) {
    OmBitVector levels(bits);
    for (size_t i = 0; i < bits; ++i)
        levels[i] = (i * i + i / 3) % 2;
    return levels;
}

// `state.range(0)` bits a scan, every `state.range(1)`-th one captured (0: none).
void ScanBatch(benchmark::State& state, OmCableType type) {
    constexpr size_t kBatch = 400;
    null_vendors::Loader loader;
    OmConnectionSettings settings;
    settings.cableType = type;
    settings.usbBlasterDescription = "A";
    const std::unique_ptr<OmCable> cable = CreateCable(settings);
    if (!cable) {
        state.SkipWithError("the null library does not open");
        return;
    }
    const OmBitVector levels = MakeRegister(static_cast<size_t>(state.range(0)));
    const auto every = static_cast<size_t>(state.range(1));
    for ([[maybe_unused]] auto iteration : state) {
        OmScanList vectors;
        vectors.reserve(kBatch);
        for (size_t i = 0; i < kBatch; ++i)
            vectors.push_back({levels, every != 0 && i % every == 0});
        OmCapturedList captured;
        cable->GetJtagHAL()->ScanVectors(vectors, &captured);
        benchmark::DoNotOptimize(captured);
    }
    state.counters["per_scan"] = benchmark::Counter(
        kBatch, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void EachKind(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"bits", "capture_every"});
    for (const int64_t every : {0, 4, 1})
        benchmark->Args({1000, every});
    benchmark->Args({10000, 1});
}

BENCHMARK_CAPTURE(ScanBatch, ftd2xx, OmCableType::Ftd2xx)->Apply(EachKind);
BENCHMARK_CAPTURE(ScanBatch, usb_blaster, OmCableType::AlteraUsbBlaster)->Apply(EachKind);
BENCHMARK_CAPTURE(ScanBatch, jlink, OmCableType::JLinkUsb)->Apply(EachKind);
BENCHMARK_CAPTURE(ScanBatch, digilent, OmCableType::DigilentAdept)->Apply(EachKind);

} // namespace

BENCHMARK_MAIN();
