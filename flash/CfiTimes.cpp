#include "flash/CfiTimes.h"

#include <algorithm>

namespace {

// Query bytes: powers of two, the typical time in microseconds and the maximum as a multiple of it.
struct TimeBytes {
    OmProgramTime OmProgramTimes::*time;
    size_t typical;
    size_t factor;
};

constexpr TimeBytes kTimeBytes[] = {
    {&OmProgramTimes::word, kCfiTimeOuts, kCfiTimeOuts + 4},
    {&OmProgramTimes::buffer, kCfiTimeOuts + 1, kCfiTimeOuts + 5},
};

// The slowest write buffers take some milliseconds: what is beyond comes from a damaged table.
constexpr uint32_t kMaxTypical = 1u << 14;
constexpr uint32_t kMaxMaximum = 1u << 17;

uint32_t PowerOfTwo(uint32_t exponent) {
    return exponent < 32 ? 1u << exponent : 0;
}

// An exponent of 0 says that the chip has no such operation or gives no time.
OmProgramTime TimeOf(const OmCfiBuffer& chip, const TimeBytes& bytes) {
    OmProgramTime time;
    const uint32_t exponent = bytes.factor < chip.size() ? chip[bytes.typical] : 0;
    const uint32_t typical = exponent == 0 ? 0 : PowerOfTwo(exponent);
    if (typical == 0 || typical > kMaxTypical)
        return time;
    time.typical = typical;
    const uint64_t maximum = uint64_t{typical} * PowerOfTwo(chip[bytes.factor]);
    time.maximum = maximum <= kMaxMaximum ? static_cast<uint32_t>(maximum) : 0;
    return time;
}

} // namespace

OmProgramTimes FindProgramTimes(std::span<const OmCfiBuffer> chips) {
    OmProgramTimes times;
    for (const OmCfiBuffer& chip : chips)
        for (const TimeBytes& bytes : kTimeBytes) {
            const OmProgramTime found = TimeOf(chip, bytes);
            OmProgramTime& longest = times.*bytes.time;
            longest.typical = std::max(longest.typical, found.typical);
            longest.maximum = std::max(longest.maximum, found.maximum);
        }
    return times;
}
