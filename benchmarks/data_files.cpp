// Loading and saving 64 MiB beside srec_cat and objcopy on the same file, in MB of data a second.
#include "data/DataFiles.h"
#include "data/DataImage.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr size_t kSize = size_t{64} << 20;

// A folder with the data in all formats; removed at the end of the program.
class Files {
  public:
    static const Files& Get() {
        static const Files files;
        return files;
    }

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    OmDataImage image;

  private:
    Files() : folder_(std::filesystem::temp_directory_path() / "velflash-data-files") {
        std::filesystem::create_directories(folder_);
        std::vector<uint8_t> bytes(kSize);
        uint32_t state = 1;
        for (uint8_t& byte : bytes) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<uint8_t>(state >> 24);
        }
        image.SetBytes(0, bytes);
        if (!WriteSRecordFile(Path("data.srec"), image) ||
            !WriteIntelHexFile(Path("data.hex"), image) ||
            !WriteRawChunk(Path("data.bin"), image, 0))
            std::abort();
    }

    ~Files() {
        std::error_code ignored; // leftovers in the temporary folder do no harm
        std::filesystem::remove_all(folder_, ignored);
    }

    std::filesystem::path folder_;
};

void CountData(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kSize));
}

void Load(benchmark::State& state, const char* name) {
    const std::string path = Files::Get().Path(name);
    for (auto iteration : state) {
        OmDataImage image;
        std::string error;
        if (!ReadDataFile(path, image, error))
            state.SkipWithError(error.c_str());
    }
    CountData(state);
}

void SaveSRecord(benchmark::State& state) {
    for (auto iteration : state)
        if (!WriteSRecordFile(Files::Get().Path("out"), Files::Get().image))
            state.SkipWithError("cannot write");
    CountData(state);
}

void SaveIntelHex(benchmark::State& state) {
    for (auto iteration : state)
        if (!WriteIntelHexFile(Files::Get().Path("out"), Files::Get().image))
            state.SkipWithError("cannot write");
    CountData(state);
}

void SaveRaw(benchmark::State& state) {
    for (auto iteration : state)
        if (!WriteRawChunk(Files::Get().Path("out"), Files::Get().image, 0))
            state.SkipWithError("cannot write");
    CountData(state);
}

void RunTool(benchmark::State& state, const char* arguments) {
    const std::string command =
        "cd '" + Files::Get().Path("") + "' && " + arguments + " 2>/dev/null";
    for (auto iteration : state)
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("the tool is missing or fails");
    CountData(state);
}

#define OM_MEASURE(...) BENCHMARK_CAPTURE(__VA_ARGS__)->Unit(benchmark::kMillisecond)->UseRealTime()
#define OM_MEASURE_PLAIN(name) BENCHMARK(name)->Unit(benchmark::kMillisecond)->UseRealTime()

OM_MEASURE(Load, SRecord, "data.srec");
OM_MEASURE(RunTool, LoadSRecordObjcopy, "objcopy -I srec -O binary data.srec out");
OM_MEASURE(RunTool, LoadSRecordSrecCat, "srec_cat data.srec -motorola -o out -binary");
OM_MEASURE(Load, IntelHex, "data.hex");
OM_MEASURE(RunTool, LoadIntelHexObjcopy, "objcopy -I ihex -O binary data.hex out");
OM_MEASURE(RunTool, LoadIntelHexSrecCat, "srec_cat data.hex -intel -o out -binary");
OM_MEASURE(Load, Raw, "data.bin");
OM_MEASURE(RunTool, LoadRawObjcopy, "objcopy -I binary -O binary data.bin out");
OM_MEASURE_PLAIN(SaveSRecord);
OM_MEASURE(RunTool, SaveSRecordObjcopy, "objcopy -I binary -O srec data.bin out");
OM_MEASURE(RunTool, SaveSRecordSrecCat, "srec_cat data.bin -binary -o out -motorola");
OM_MEASURE_PLAIN(SaveIntelHex);
OM_MEASURE(RunTool, SaveIntelHexObjcopy, "objcopy -I binary -O ihex data.bin out");
OM_MEASURE(RunTool, SaveIntelHexSrecCat, "srec_cat data.bin -binary -o out -intel");
OM_MEASURE_PLAIN(SaveRaw);

} // namespace

BENCHMARK_MAIN();
