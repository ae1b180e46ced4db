// Programs random images into random chips until the time is over, and tells each run in which the
// flash does not hold what the program says. tools/soak builds and starts it.
//   soak MINUTES [SEED]    runs with the seeds SEED, SEED + 1 and so on
//   soak --run SEED        that one run again
#include "tests/soak/SoakRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;

struct Totals {
    uint64_t runs = 0;
    uint64_t failed = 0;
    uint64_t lossy = 0; // lost something in silence
    uint64_t bytes = 0;
    uint64_t lost = 0;
};

void Tell(uint64_t seed, const SoakResult& result) {
    std::printf("FAILED, again with: ./tools/soak --run %llu\n  %s\n",
                static_cast<unsigned long long>(seed), result.description.c_str());
    for (const std::string& failure : result.failures)
        std::printf("  %s\n", failure.c_str());
    std::fflush(stdout);
}

void RunOne(uint64_t seed, Totals& totals) {
    const SoakResult result = RunSoak(seed);
    ++totals.runs;
    totals.failed += result.failures.empty() ? 0 : 1;
    totals.lossy += result.lost != 0 ? 1 : 0;
    totals.bytes += result.words;
    totals.lost += result.lost;
    if (!result.failures.empty())
        Tell(seed, result);
}

int Report(const Totals& totals, double seconds) {
    const auto number = [](uint64_t value) { return static_cast<unsigned long long>(value); };
    std::printf("%llu runs in %.0f s (%.1f a second), %llu bytes; %llu runs failed, %llu of them "
                "lost %llu bytes in silence\n",
                number(totals.runs), seconds, static_cast<double>(totals.runs) / seconds,
                number(totals.bytes), number(totals.failed), number(totals.lossy),
                number(totals.lost));
    return totals.failed == 0 && totals.runs != 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const bool single = argc == 3 && std::string_view(argv[1]) == "--run";
    const double minutes = argc > 1 ? std::atof(argv[1]) : 0;
    if (!single && (argc > 3 || minutes <= 0)) {
        std::fprintf(stderr, "soak MINUTES [SEED] or soak --run SEED\n");
        return 2;
    }
    const auto now =
        static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    uint64_t seed = argc == 3 ? std::strtoull(argv[2], nullptr, 0) : now / 1000 % 1'000'000 * 1000;
    std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
    Totals totals;
    const Clock::time_point start = Clock::now();
    do
        RunOne(seed++, totals);
    while (!single && SecondsSince(start) < minutes * 60);
    return Report(totals, SecondsSince(start));
}
