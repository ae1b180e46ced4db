// Bulk program and read of a flash on a virtual board, through the real FT2232 cable at 30 MHz TCK.
//
//   Time         what the program itself works: processor time of the whole action, less that of
//   the
//                board, which runs in the same thread behind FT_Write and FT_Read; of several runs
//                the best, since everything that disturbs makes it longer
//   bits         TCK cycles a scan, as the board counts them
//   wire_B/s     data a second if the wire were all: the cycles that the board counts, at 30 MHz
//   host_share   Time as a share of the wire's; is to stay below 0.1
//   us_per_scan  Time for each scan
//
// The chip is ready at once, so that no waits on the wire flatter the share.
#include "benchmarks/TimedD2xx.h"
#include "tests/road/RoadFixture.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <limits>

namespace {

constexpr double kTck = 30000000;

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

constexpr unsigned kPinBits = 43; // of the two devices of the chain; the rest is padding
constexpr unsigned kDevices = 2;

vb::BoardBuilder BoardFor(const Way& way, int64_t chainBits) {
    vb::BoardBuilder builder;
    builder.Set("set", way.set).Set("buffer", way.bufferBytes).Set("locks", "none");
    builder.Set("sectors", "16x64K").Set("word-us", "0").Set("buffer-us", "0");
    builder.Padding((static_cast<unsigned>(chainBits) - kPinBits) / kDevices);
    return builder;
}

// One board, its program, and the best run so far.
class Course {
  public:
    Course(const Way& way, benchmark::State& state)
        : road(BoardFor(way, state.range(1))), state_(state), bytes_(state.range(0)) {
        road.programmer.setup.UseUnlockBypass = way.bypass;
        road.programmer.setup.DontCheckStatus = way.blind;
        good_ = road.PrepareToProgram();
    }

    template <typename Action>
    void Run(Action action) {
        for ([[maybe_unused]] auto _ : state_) {
            road.board->ClearStatistics();
            const uint64_t scansBefore = road.board->DataScans();
            road.progress.reports.clear();
            const double board = timed_d2xx::boardSeconds;
            const double start = ThreadSeconds();
            good_ = good_ && action(road);
            const double host = ThreadSeconds() - start - (timed_d2xx::boardSeconds - board);
            state_.SetIterationTime(host);
            best_ = std::min(best_, host);
            scans_ = static_cast<double>(road.board->DataScans() - scansBefore);
        }
        Report();
    }

  private:
    void Report() {
        if (!good_)
            state_.SkipWithError("the action failed");
        const auto cycles = static_cast<double>(road.board->Clock().Cycles());
        const double wire = cycles / kTck;
        state_.counters["bits"] = cycles / scans_;
        state_.counters["wire_B/s"] = static_cast<double>(bytes_) / wire;
        state_.counters["host_share"] = best_ / wire;
        state_.counters["us_per_scan"] = best_ / scans_ * 1e6;
    }

    const timed_d2xx::Loader loader_;
    const RecordingUserInterface user_;

  public:
    Road road;

  private:
    benchmark::State& state_;
    int64_t bytes_;
    bool good_ = false;
    double scans_ = 0; // of the last run
    double best_ = std::numeric_limits<double>::max();
};

void Program(benchmark::State& state, const Way& way) {
    OmDataImage image;
    image.SetBytes(0, Firmware(static_cast<size_t>(state.range(0)), 1));
    Course course(way, state);
    course.Run([&](Road& road) { return road.programmer.ProgramFlash(road.progress, image); });
}

void Read(benchmark::State& state) {
    const auto size = static_cast<uint32_t>(state.range(0));
    Course course(kWays[0], state);
    course.Run([&](Road& road) {
        OmDataImage image;
        return road.programmer.ReadFlash(road.progress, 0, size, image);
    });
}

void Verify(benchmark::State& state) {
    OmDataImage image;
    image.SetBytes(0, std::vector<uint8_t>(static_cast<size_t>(state.range(0)), 0xFF));
    Course course(kWays[0], state);
    course.Run([&](Road& road) { return road.programmer.VerifyFlash(road.united, image); });
}

// The small ones often, for a best run that means something; the large ones are long by themselves.
template <typename... Arguments>
void Register(const std::string& name, Arguments... arguments) {
    for (const int64_t bits : {300, 3000}) {
        for (const auto& [bytes, runs] : {std::pair(0x10000, 8), std::pair(0x100000, 1)})
            benchmark::RegisterBenchmark(name.c_str(), arguments...)
                ->ArgNames({"bytes", "bits"})
                ->Args({bytes, bits})
                ->Iterations(runs)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const Way& way : kWays)
        Register(std::string("Program, ") + way.name,
                 [&way](benchmark::State& state) { Program(state, way); });
    Register("Read", Read);
    Register("Verify", Verify);
    benchmark::RunSpecifiedBenchmarks();
}
