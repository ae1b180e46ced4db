// The host's own work for a batch of scans: laying out the vectors, packing them into the cable's
// commands and decoding what comes back. The wire is the limit of the program's speed as long as
// this stays below a tenth of a scan's time on it: 3 us for 1,000 bits at 30 MHz TCK.

#include "benchmarks/NullD2xx.h"
#include "jtag/Ftd2xx.h"

#include <benchmark/benchmark.h>

namespace {

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
    null_d2xx::NullLoader loader;
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
