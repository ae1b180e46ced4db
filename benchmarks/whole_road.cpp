// How long the host takes for a whole action at a virtual board: everything but the wire. The board
// does its own work in the same process, so a figure is an upper bound.
#include "tests/road/RoadFixture.h"

#include <benchmark/benchmark.h>

namespace {

constexpr size_t kBytes = 65536;

struct Way {
    const char* name;
    const char* set;
    const char* bufferBytes;
    bool bypass;
    bool blind;
};

constexpr Way kWays[] = {
    {"AMD word", "amd", "0", false, false},     {"AMD word, blind", "amd", "0", false, true},
    {"AMD bypass", "amd", "0", true, false},    {"AMD buffered", "amd", "32", false, false},
    {"Intel word", "intel", "0", false, false}, {"Intel buffered", "intel", "64", false, false},
};

vb::BoardBuilder BoardFor(const Way& way) {
    vb::BoardBuilder builder;
    builder.Set("set", way.set).Set("buffer", way.bufferBytes).Set("locks", "none");
    builder.Set("sectors", "4x64K").Set("word-us", "0").Set("buffer-us", "0");
    builder.Padding(120); // some 300 cells in all
    return builder;
}

OmDataImage Image() {
    OmDataImage image;
    image.SetBytes(0, Firmware(kBytes, 1));
    return image;
}

void Program(benchmark::State& state) {
    const Way& way = kWays[state.range(0)];
    const RecordingUserInterface user;
    Road road(BoardFor(way));
    road.programmer.setup.UseUnlockBypass = way.bypass;
    road.programmer.setup.DontCheckStatus = way.blind;
    const OmDataImage image = Image();
    bool good = road.PrepareToProgram();
    for (auto _ : state)
        good = good && road.programmer.ProgramFlash(road.progress, image);
    if (!good)
        state.SkipWithError("the action failed");
    state.SetLabel(way.name);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}

void Read(benchmark::State& state) {
    const RecordingUserInterface user;
    Road road(BoardFor(kWays[0]));
    bool good = road.PrepareToProgram();
    for (auto _ : state) {
        OmDataImage image;
        good = good && road.programmer.ReadFlash(road.progress, 0, kBytes, image);
    }
    if (!good)
        state.SkipWithError("the action failed");
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBytes));
}

} // namespace

BENCHMARK(Program)->DenseRange(0, std::size(kWays) - 1)->Unit(benchmark::kMillisecond);
BENCHMARK(Read)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
