// Loading and saving 64 MiB in each format, and the same jobs done by objcopy and srec_cat.
//
//   Time   processor time of the job, the kernel's part and that of child processes included; what
//          the disk takes is left out, as is what other programs of a busy machine take
//   MB/s   of data, in the best of the runs, since everything that disturbs makes a run longer
//
// A tool cannot load without saving, so the rows to compare are the conversions "From" and "To":
// the same file in, the same file out. "Load" and "Save" are the program's halves of them.
#include "data/DataFiles.h"
#include "data/DataImage.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <sys/resource.h>

namespace {

constexpr size_t kSize = size_t{64} << 20;
constexpr int kRuns =
    12; // the fastest jobs take hundredths of a second, and are the most disturbed
constexpr int kSlowRuns = 2;

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
        if (!WriteSRecordFile(Path("SRecord"), image) ||
            !WriteIntelHexFile(Path("IntelHex"), image) || !WriteRawChunk(Path("Raw"), image, 0))
            std::abort();
    }

    ~Files() {
        std::error_code ignored; // leftovers in the temporary folder do no harm
        std::filesystem::remove_all(folder_, ignored);
    }

    std::filesystem::path folder_;
};

double Seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double ProcessorSeconds() {
    double seconds = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage = {};
        getrusage(who, &usage);
        seconds += Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    }
    return seconds;
}

template <typename Job>
void Measure(benchmark::State& state, Job job) {
    const Files& files = Files::Get();
    double best = std::numeric_limits<double>::max();
    for ([[maybe_unused]] auto _ : state) {
        const double start = ProcessorSeconds();
        if (!job(files))
            state.SkipWithError("the job failed, or the tool is missing");
        const double seconds = ProcessorSeconds() - start;
        state.SetIterationTime(seconds);
        best = std::min(best, seconds);
    }
    state.counters["MB/s"] = static_cast<double>(kSize) / best / 1e6;
}

// One format, in the words of each tool.
struct Format {
    const char* name; // also of the file
    bool (*save)(const std::string& path, const OmDataImage& image);
    const char* objcopy;
    const char* srecCat;
};

bool SaveRaw(const std::string& path, const OmDataImage& image) {
    return WriteRawChunk(path, image, 0);
}

constexpr Format kFormats[] = {
    {"SRecord", WriteSRecordFile, "srec", "-motorola"},
    {"IntelHex", WriteIntelHexFile, "ihex", "-intel"},
    {"Raw", SaveRaw, "binary", "-binary"},
};
constexpr const Format& kRaw = kFormats[2];

bool Load(const Files& files, const Format& format, OmDataImage& image) {
    std::string error;
    return ReadDataFile(files.Path(format.name), image, error);
}

bool Convert(const Files& files, const Format& from, const Format& to) {
    OmDataImage image;
    return Load(files, from, image) && to.save(files.Path("out"), image);
}

bool RunTool(const Files& files, const std::string& line) {
    return std::system(("cd '" + files.Path("") + "' && " + line + " 2>/dev/null").c_str()) == 0;
}

template <typename Job>
void Register(const std::string& name, Job job, int runs = kRuns) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [job](benchmark::State& state) { Measure(state, job); })
        ->Unit(benchmark::kMillisecond)
        ->Iterations(runs)
        ->UseManualTime();
}

void RegisterConversion(const std::string& name, const Format& from, const Format& to) {
    Register(name + "/velflash", [&](const Files& files) { return Convert(files, from, to); });
    const std::string objcopy =
        std::string("objcopy -I ") + from.objcopy + " -O " + to.objcopy + " " + from.name + " out";
    Register(name + "/objcopy", [=](const Files& files) { return RunTool(files, objcopy); });
    const std::string srecCat =
        std::string("srec_cat ") + from.name + " " + from.srecCat + " -o out " + to.srecCat;
    Register(
        name + "/srec_cat", [=](const Files& files) { return RunTool(files, srecCat); }, kSlowRuns);
}

void RegisterHalves(const Format& format) {
    Register(std::string("Load") + format.name, [&](const Files& files) {
        OmDataImage image;
        return Load(files, format, image);
    });
    Register(std::string("Save") + format.name,
             [&](const Files& files) { return format.save(files.Path("out"), files.image); });
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    for (const Format& format : kFormats)
        RegisterHalves(format);
    for (const Format& format : kFormats) {
        RegisterConversion(std::string("From") + format.name, format, kRaw);
        if (&format != &kRaw)
            RegisterConversion(std::string("To") + format.name, kRaw, format);
    }
    benchmark::RunSpecifiedBenchmarks();
}
