// The host's own work in flash actions, from the data image down to the bytes for the vendor's
// library and back, over a library that does nothing. "per_scan" is to stay below 3 us for a chain
// of 1,000 bits: a tenth of what such a scan takes on the wire at 30 MHz TCK.

#include "benchmarks/NullD2xx.h"
#include "data/DataImage.h"
#include "flash/AmdCommands.h"
#include "flash/BoundaryScanBus.h"
#include "flash/Progress.h"
#include "jtag/ChainAnalyzer.h"
#include "jtag/Ftd2xx.h"
#include "tests/support/VirtualClock.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int kAddressPins = 24;
constexpr int kDataPins = 16;
constexpr int kFrequency = 30000000;

class SilentProgress : public OmProgressCallback {
  public:
    bool OnProgress(int, const wchar_t*) override { return true; }

    void OnFinish() override {}
};

// Counts the scans that pass through.
class CountingCable : public OmFtd2xx {
  public:
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override {
        scans += static_cast<double>(vectors.size());
        OmFtd2xx::ScanVectors(vectors, captured);
    }

    double scans = 0;
};

// A device of so many cells. Each pin has an output, an input and a control cell of its own, as
// large devices have them, and they lie spread over the register.
class DeviceBuilder {
  public:
    explicit DeviceBuilder(int bits) : bits_(bits), data_(std::make_unique<OmBsdlData>()) {
        data_->entity = "BENCH";
        data_->AddAttribute("INSTRUCTION_LENGTH", "BENCH", "entity", "4");
        data_->AddAttribute("BOUNDARY_LENGTH", "BENCH", "entity", std::to_string(bits));
        for (const char* name : {"EXTEST", "PRELOAD"})
            data_->AddInstructionCode(name, "0000");
    }

    SignalPin AddPin(const std::string& port, int index = -1) {
        const std::string text = index < 0 ? port : port + "(" + std::to_string(index) + ")";
        const int place = next_++ * (bits_ / (kAddressPins + kDataPins + 3));
        AddCell(place, "*", "CONTROL", "", "");
        AddCell(place + 1, text, "OUTPUT3", std::to_string(place), "1");
        AddCell(place + 2, text, "INPUT", "", "");
        SignalPin pin;
        pin.Device = 0;
        pin.PortName = port;
        pin.PortIndex = index;
        return pin;
    }

    OmChainDevice Build() {
        OmChainDevice device;
        device.SetBsdl(std::move(data_), "");
        return device;
    }

  private:
    void AddCell(int number, const std::string& port, const char* function,
                 const std::string& control, const char* disable) {
        data_->AddCell(std::to_string(number), "BC_1", port, function, "1", control, disable,
                       control.empty() ? "" : "Z");
    }

    int bits_;
    int next_ = 0;
    std::unique_ptr<OmBsdlData> data_;
};

class Rig {
  public:
    explicit Rig(int bits) : analyzer(&cable) {
        OmFlashPins pins;
        DeviceBuilder builder(bits);
        pins.ce = builder.AddPin("CE");
        pins.oe = builder.AddPin("OE");
        pins.we = builder.AddPin("WE");
        for (int i = 0; i < kAddressPins; ++i)
            pins.addressPins.push_back(builder.AddPin("A", i));
        for (int i = 0; i < kDataPins; ++i)
            pins.dataPins.push_back(builder.AddPin("D", i));
        pins.ChipCount = 1;
        pins.WordSize = kDataPins / 8;
        pins.AddrCmdShift = 0;
        chain_.push_back(builder.Build());
        std::wstring errors;
        bool isHighSpeed = false;
        if (!bus.BuildFromSetup(pins, chain_, errors) ||
            !cable.Initialize("A", "", kFrequency, false, 0x051B, 0x010A, isHighSpeed))
            std::abort();
        bus.analyzer = &analyzer;
    }

  private:
    VirtualClock clock_; // the pauses for the flash are not the host's work
    null_d2xx::NullLoader loader_;
    std::vector<OmChainDevice> chain_;

  public:
    CountingCable cable;
    OmChainAnalyzer analyzer;
    OmBoundaryScanBus bus;
};

void Report(benchmark::State& state, const Rig& rig, size_t bytesEach) {
    state.SetBytesProcessed(static_cast<int64_t>(bytesEach) * state.iterations());
    state.counters["per_scan"] = benchmark::Counter(
        rig.cable.scans, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// TDO of the library stays low, so that words of zeros pass at once.
OmDataImage ZeroImage(uint32_t size) {
    OmDataImage image;
    image.SetBytes(0, std::vector<uint8_t>(size));
    return image;
}

// Laying out scans alone: write cycles in a batch that is emptied and filled again.
void AppendScans(benchmark::State& state) {
    constexpr int kWrites = 200;
    Rig rig(static_cast<int>(state.range(0)));
    OmBusCycleBatch batch(rig.bus);
    batch.SelectForWriting();
    for ([[maybe_unused]] auto iteration : state) {
        batch.Clear();
        for (uint32_t i = 0; i < kWrites; ++i)
            batch.AppendWrite(i * 0x9E3779B1, i * 0x85EBCA6B);
        benchmark::DoNotOptimize(batch.scans.data());
    }
    state.counters["per_scan"] = benchmark::Counter(
        2 * kWrites, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

enum Way { kWords, kBypass, kBuffers, kBlind };

void ProgramFlash(benchmark::State& state) {
    constexpr uint32_t kSize = 0x10000;
    Rig rig(static_cast<int>(state.range(0)));
    SilentProgress progress;
    const OmDataImage image = ZeroImage(kSize);
    rig.cable.scans = 0;
    for ([[maybe_unused]] auto iteration : state) {
        int wait = 0;
        uint32_t count = 0;
        switch (state.range(1)) {
        case kWords:
        case kBypass:
            AmdProgramWords(rig.bus, progress, image, state.range(1) == kBypass, wait, count);
            break;
        case kBuffers:
            AmdProgramBuffers(rig.bus, progress, image, 16, wait, count);
            break;
        default:
            AmdProgramWordsBlind(rig.bus, progress, image, false, wait, count);
        }
    }
    Report(state, rig, kSize);
}

void ReadFlash(benchmark::State& state) {
    constexpr uint32_t kSize = 0x10000;
    Rig rig(static_cast<int>(state.range(0)));
    rig.cable.scans = 0;
    for ([[maybe_unused]] auto iteration : state) {
        OmDataImage image;
        rig.bus.ReadWords(nullptr, 0, kSize / rig.bus.BusWordBytes(), image, nullptr);
        benchmark::DoNotOptimize(image);
    }
    Report(state, rig, kSize);
}

BENCHMARK(AppendScans)->ArgName("bits")->Arg(200)->Arg(1000)->Arg(3000);
BENCHMARK(ProgramFlash)
    ->ArgNames({"bits", "way"})
    ->Args({1000, kWords})
    ->Args({1000, kBypass})
    ->Args({1000, kBuffers})
    ->Args({1000, kBlind})
    ->Args({3000, kWords})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ReadFlash)->ArgName("bits")->Arg(1000)->Arg(3000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
