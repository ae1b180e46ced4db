// Parsing a BSDL file: the largest one that is at hand beside the source tree or in
// $VELFLASH_SHARED, and a made one of 80 kB and of 8 MB, to see that the time grows with the size
// and not faster.
#include "bsdl/BsdlData.h"
#include "bsdl/BsdlParser.h"
#include "bsdl/BsdlXml.h"
#include "platform/Text.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A device of so many pins, each with a line in the ports, the pin map and the cells, and cells of
// its own for input, output and control.
std::string MakeDevice(int pins) {
    const std::string last = std::to_string(pins - 1);
    std::string map;
    std::string cells;
    for (int pin = 0; pin < pins; ++pin) {
        const char* end = pin + 1 < pins ? ",\" &\n" : "\";\n";
        map += pin % 8 ? "P" : "\" &\n  \"P";
        map += std::to_string(pin) + (pin + 1 < pins ? "," : "");
        cells += OmFormat("  \"%d (BC_1, *, CONTROL, 1),%d (BC_1, D(%d), OUTPUT3, X, %d, 1, Z),"
                          "%d (BC_4, D(%d), INPUT, X)%s",
                          3 * pin, 3 * pin + 1, pin, 3 * pin, 3 * pin + 2, pin, end);
    }
    return "entity MADE is\ngeneric (PHYSICAL_PIN_MAP : string := \"BGA\");\n"
           "port (TCK : in bit; D : inout bit_vector(0 to " +
           last +
           "));\n"
           "use STD_1149_1_2001.all;\n"
           "attribute PIN_MAP of MADE : entity is PHYSICAL_PIN_MAP;\n"
           "constant BGA : PIN_MAP_STRING := \"TCK:T, D:(" +
           map +
           ")\";\n"
           "attribute INSTRUCTION_LENGTH of MADE : entity is 4;\n"
           "attribute INSTRUCTION_OPCODE of MADE : entity is \"EXTEST (0000), BYPASS (1111)\";\n"
           "attribute BOUNDARY_LENGTH of MADE : entity is " +
           std::to_string(3 * pins) +
           ";\n"
           "attribute BOUNDARY_REGISTER of MADE : entity is\n" +
           cells + "end MADE;\n";
}

void Parse(benchmark::State& state, const std::string& path) {
    const uintmax_t size = fs::file_size(path);
    for ([[maybe_unused]] auto iteration : state) {
        OmBsdlData data;
        OmBsdlParserCallbackImpl messages;
        if (!ParseBsdlFile(path.c_str(), data, &messages))
            state.SkipWithError(messages.text.c_str());
        benchmark::DoNotOptimize(data);
    }
    state.SetBytesProcessed(static_cast<int64_t>(size) * state.iterations());
}

void ParseMade(benchmark::State& state) {
    const std::string path =
        (fs::temp_directory_path() / ("velflash-bench-" + std::to_string(getpid()))).string();
    std::ofstream(path) << MakeDevice(static_cast<int>(state.range(0)));
    Parse(state, path);
    state.counters["file_size"] = static_cast<double>(fs::file_size(path));
    fs::remove(path);
}

void CheckContent(benchmark::State& state) {
    const std::string path =
        (fs::temp_directory_path() / ("velflash-bench-" + std::to_string(getpid()))).string();
    std::ofstream(path) << MakeDevice(static_cast<int>(state.range(0)));
    OmBsdlData data;
    if (!ParseBsdlFile(path.c_str(), data, nullptr))
        state.SkipWithError("not parsed");
    for ([[maybe_unused]] auto iteration : state) {
        OmBsdlData copy;
        if (!CheckBsdlContent(data, copy))
            state.SkipWithError("not complete");
    }
    state.SetBytesProcessed(static_cast<int64_t>(fs::file_size(path)) * state.iterations());
    fs::remove(path);
}

// Empty if there is none.
std::string FindLargestRealFile() {
    const char* shared = std::getenv("VELFLASH_SHARED");
    const fs::path folder = fs::path(shared ? shared : OM_SOURCE_DIR "/../shared") / "bsdl";
    std::error_code missing;
    std::string largest;
    uintmax_t size = 0;
    for (const auto& entry : fs::directory_iterator(folder, missing)) {
        if (entry.is_regular_file() && entry.file_size() > size) {
            OmBsdlData data;
            if (!ParseBsdlFile(entry.path().string().c_str(), data, nullptr))
                continue;
            size = entry.file_size();
            largest = entry.path().string();
        }
    }
    return largest;
}

// 570 pins are some 80 kB.
BENCHMARK(ParseMade)->ArgName("pins")->Arg(570)->Arg(57000)->Unit(benchmark::kMicrosecond);
BENCHMARK(CheckContent)->ArgName("pins")->Arg(570)->Arg(5700)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const std::string real = FindLargestRealFile();
    if (!real.empty())
        benchmark::RegisterBenchmark(("ParseReal/" + fs::path(real).filename().string()).c_str(),
                                     [real](benchmark::State& state) { Parse(state, real); })
            ->Unit(benchmark::kMicrosecond);
    benchmark::RunSpecifiedBenchmarks();
}
