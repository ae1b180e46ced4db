// Programming on chips as unkind as real ones: what is sent to them while they are busy is ignored,
// data suspend them, and no two words take the same time. Whatever the data, each word arrives.
//
// VELFLASH_RUNS sets how many runs a case of the random images gets.

#include "flash/AmdCommands.h"
#include "flash/IntelCommands.h"
#include "tests/flash/BoardBench.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

constexpr uint32_t kStart = 0x20000;

enum class Way { Words, Bypass, Buffers, IntelWords, IntelBuffers };

struct Chip {
    const char* name;
    const char* model;
    Way way;
    const char* microseconds; // of a word or buffer, at most
    uint32_t frequency = 4000000;
    unsigned chips = 1;
};

void PrintTo(const Chip& chip, std::ostream* stream) {
    *stream << chip.name;
}

constexpr Chip kChips[] = {
    {"AmdWords", "amd16-64m", Way::Words, "60", 30000000},
    {"AmdWordsSlow", "amd16-64m", Way::Words, "400"},
    {"AmdWords8Bits", "amd8-4m", Way::Words, "200"},
    {"AmdWordsTwoChips", "amd8-4m", Way::Words, "100", 4000000, 2},
    {"AmdWordsSlowClock", "amd16-64m", Way::Words, "2000", 1000000},
    {"AmdBypass", "amd16-64m", Way::Bypass, "60", 30000000},
    {"AmdBypassSlow", "amd16-64m", Way::Bypass, "400"},
    {"AmdBuffers", "amd16-64m", Way::Buffers, "240"},
    {"AmdBuffersSlow", "amd16-64m", Way::Buffers, "2000"},
    {"AmdBuffersTwoChips", "amd16-64m", Way::Buffers, "700", 4000000, 2},
    {"IntelWords", "intel16-std", Way::IntelWords, "150"},
    {"IntelWordsTwoChips", "intel8-std", Way::IntelWords, "60", 4000000, 2},
    {"IntelBuffers", "intel16-64m", Way::IntelBuffers, "700"},
    {"IntelBuffersTwoChips", "intel16-j3", Way::IntelBuffers, "500", 4000000, 2},
};

struct Run {
    OmFlashResult result;
    size_t wrongBytes;
    size_t otherBytes; // changed outside of the image
    int wait;
    uint64_t scans;
};

vb::BoardBuilder BoardOf(const Chip& chip, const char* leastPercent, uint32_t seed) {
    vb::BoardBuilder builder;
    builder.Flash(chip.model).Chips(chip.chips).Set("locks", "none");
    builder.Set("word-us", chip.microseconds).Set("buffer-us", chip.microseconds);
    builder.Set("least-percent", leastPercent).Set("seed", std::to_string(seed));
    return builder.Set("suspend", "all");
}

OmFlashResult Program(BoardBench& bench, Way way, const OmDataImage& image, int& wait) {
    RecordingProgress progress;
    uint32_t count = 0;
    const unsigned words =
        std::max(1u, bench.built.flash.bufferBytes / bench.built.flash.WordBytes());
    switch (way) {
    case Way::Words:
        return AmdProgramWords(bench.bus, progress, image, false, wait, count);
    case Way::Bypass:
        return AmdProgramWords(bench.bus, progress, image, true, wait, count);
    case Way::Buffers:
        return AmdProgramBuffers(bench.bus, progress, image, words, wait, count);
    case Way::IntelWords:
        return IntelProgramWords(bench.bus, progress, image, wait, count);
    default:
        return IntelProgramBuffers(bench.bus, progress, image, words, wait, count);
    }
}

Run RunOn(const Chip& chip, const std::vector<uint8_t>& bytes, const char* leastPercent,
          uint32_t seed) {
    BoardBench bench(BoardOf(chip, leastPercent, seed), chip.frequency);
    OmDataImage image;
    image.SetBytes(kStart, bytes);
    Run run{};
    run.result = Program(bench, chip.way, image, run.wait);
    run.scans = bench.board.DataScans();
    const std::vector<uint8_t> contents = bench.Contents(kStart, bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i)
        run.wrongBytes += contents[i] != bytes[i];
    for (unsigned c = 0; c < chip.chips; ++c)
        run.otherBytes += static_cast<size_t>(std::ranges::count_if(
            bench.Chip(c).Bytes(), [](uint8_t byte) { return byte != 0xFF; }));
    const auto programmed = std::ranges::count_if(contents, [](uint8_t b) { return b != 0xFF; });
    run.otherBytes -= static_cast<size_t>(programmed);
    return run;
}

void ExpectAllArrived(const Chip& chip, const std::vector<uint8_t>& bytes, const char* leastPercent,
                      uint32_t seed) {
    const Run run = RunOn(chip, bytes, leastPercent, seed);
    EXPECT_EQ(run.result, OmFlashResult::Done);
    EXPECT_EQ(run.wrongBytes, 0u) << "wait " << run.wait;
    EXPECT_EQ(run.otherBytes, 0u);
}

using Image = std::vector<uint8_t> (*)(std::mt19937& random, size_t size);

uint8_t Byte(std::mt19937& random) {
    return static_cast<uint8_t>(random() >> 11);
}

std::vector<uint8_t> Noise(std::mt19937& random, size_t size) {
    std::vector<uint8_t> bytes(size);
    std::ranges::generate(bytes, [&random] { return Byte(random); });
    return bytes;
}

// Noise in which every so many 16-bit words are replaced.
std::vector<uint8_t> Every(std::mt19937& random, size_t size, size_t words,
                           std::initializer_list<int> with) {
    std::vector<uint8_t> bytes = Noise(random, size);
    const std::vector<int> values(with);
    for (size_t i = words - 1; i * 2 + 1 < size; i += words) {
        const int value = values[random() % values.size()];
        bytes[i * 2] = static_cast<uint8_t>(value);
        bytes[i * 2 + 1] = value == 0xFF ? 0xFF : bytes[i * 2 + 1];
    }
    return bytes;
}

struct NamedImage {
    const char* name;
    Image make;
};

constexpr NamedImage kImages[] = {
    {"noise", Noise},
    {"every 16th word blank", [](auto& r, size_t n) { return Every(r, n, 16, {0xFF}); }},
    {"every other word blank", [](auto& r, size_t n) { return Every(r, n, 2, {0xFF}); }},
    {"every 4th word suspends", [](auto& r, size_t n) { return Every(r, n, 4, {0xB0}); }},
    {"suspends and resumes",
     [](auto& r, size_t n) {
         return Every(r, n, 3, {0xB0, 0x30, 0xD0});
     }},
    {"like a status",
     [](auto& r, size_t n) {
         return Every(r, n, 1, {0, 0x40, 0x80, 0xC0});
     }},
    {"commands",
     [](auto& r, size_t n) {
         return Every(r, n, 1, {0xA0, 0x90, 0x00, 0x25, 0x29, 0x20, 0xD0, 0x60, 0x01, 0xC0,
                                0xE8, 0x40, 0xAA, 0x55, 0x98, 0xF0, 0xB0, 0x30, 0x50, 0x70});
     }},
    {"blank first",
     [](auto& r, size_t n) {
         std::vector<uint8_t> bytes = Noise(r, n);
         std::fill_n(bytes.begin(), n / 2, uint8_t{0xFF});
         return bytes;
     }},
};

uint32_t Runs() {
    const char* text = std::getenv("VELFLASH_RUNS");
    return text ? static_cast<uint32_t>(std::atoi(text)) : 1;
}

class UnkindFlash : public testing::TestWithParam<Chip> {};

} // namespace

// Every other image meets times that vary from a third to all of the maximum, in the next run the
// others.
TEST_P(UnkindFlash, EveryWordArrivesWhateverTheDataAndTheTimes) {
    for (uint32_t run = 0; run < Runs(); ++run) {
        uint32_t turn = run;
        for (const NamedImage& image : kImages) {
            const char* leastPercent = turn++ % 2 == 0 ? "33" : "100";
            const uint32_t seed = run + 1;
            SCOPED_TRACE(testing::Message()
                         << image.name << ", from " << leastPercent << " %, seed " << seed);
            std::mt19937 random(seed);
            ExpectAllArrived(GetParam(), image.make(random, 0x200), leastPercent, seed);
        }
    }
}

// What the search adds to the scans that all items cost at the wait that was found.
TEST_P(UnkindFlash, SearchCostsLessThanAHundredthOf64KiB) {
    const Chip& chip = GetParam();
    constexpr size_t kSearched = 0x1000; // the search is over long before
    std::mt19937 random(1);
    const std::vector<uint8_t> image = Noise(random, kSearched);
    BoardBench bench(BoardOf(chip, "100", 1), chip.frequency);
    const auto scansOf = [&](const std::vector<uint8_t>& bytes, uint32_t start, int& wait) {
        OmDataImage part;
        part.SetBytes(start, bytes);
        const uint64_t before = bench.board.DataScans();
        EXPECT_EQ(Program(bench, chip.way, part, wait), OmFlashResult::Done);
        return bench.board.DataScans() - before;
    };
    int wait = 0;
    const uint64_t searched = scansOf(image, kStart, wait);
    const uint64_t known = scansOf(image, kStart + kSearched, wait);
    RecordProperty("search", static_cast<int>(searched - known));
    RecordProperty("whole", static_cast<int>(known * 16));
    EXPECT_LE((searched - known) * 100, known * (0x10000 / kSearched));
}

// Of the buffer or word with the bad bit, not of what follows.
TEST_P(UnkindFlash, BadBitCostsLessThanTwentyLongestWaits) {
    const Chip& chip = GetParam();
    std::mt19937 random(1);
    std::vector<uint8_t> image = Noise(random, 0x1000);
    std::fill_n(image.begin() + 0x800, 4, uint8_t{0});
    const auto scansOf = [&](bool isBad) {
        BoardBench bench(BoardOf(chip, "100", 1), chip.frequency);
        const uint32_t word = (kStart + 0x800) / bench.bus.BusWordBytes();
        if (isBad)
            bench.Chip().Faults().stuckHigh[word] = 8;
        OmDataImage part;
        part.SetBytes(kStart, image);
        int wait = 0;
        EXPECT_EQ(Program(bench, chip.way, part, wait), OmFlashResult::Done);
        const std::vector<uint8_t> contents = bench.Contents(kStart, image.size());
        // An Intel chip ends a buffer at the word that fails.
        const ptrdiff_t bad = isBad ? bench.built.flash.bufferBytes * chip.chips + 4 : 0;
        EXPECT_EQ(contents[0x800], isBad ? 8 : 0);
        EXPECT_TRUE(std::equal(image.begin(), image.begin() + 0x800, contents.begin()));
        EXPECT_TRUE(
            std::equal(image.begin() + 0x800 + bad, image.end(), contents.begin() + 0x800 + bad));
        return static_cast<double>(bench.board.DataScans()) / bench.bus.MaxWaitScans();
    };
    EXPECT_LE(scansOf(true) - scansOf(false), 20);
}

// F0h ends no bypass mode, and a chip that has given up does not hear what does.
TEST(UnkindFlashEnd, ChipThatGivesUpTheLastWordIsNotLeftInBypassMode) {
    const Chip bypass = {"", "amd16-64m", Way::Bypass, "60"};
    BoardBench bench(BoardOf(bypass, "100", 1), bypass.frequency);
    bench.Chip().Faults().stuckHigh[kStart / 2 + 1] = 8;
    OmDataImage image;
    image.SetBytes(kStart, std::vector<uint8_t>{0x11, 0x11, 0x00, 0x00});
    int wait = 0;
    EXPECT_EQ(Program(bench, Way::Bypass, image, wait), OmFlashResult::Done);
    OmDataImage next;
    next.SetBytes(kStart + 4, std::vector<uint8_t>{0x22, 0x33});
    EXPECT_EQ(Program(bench, Way::Words, next, wait), OmFlashResult::Done);
    EXPECT_EQ(bench.Contents(kStart, 6), (std::vector<uint8_t>{0x11, 0x11, 8, 0, 0x22, 0x33}));
}

INSTANTIATE_TEST_SUITE_P(Chips, UnkindFlash, testing::ValuesIn(kChips),
                         [](const auto& row) { return std::string(row.param.name); });
