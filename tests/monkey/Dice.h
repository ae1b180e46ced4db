// Choices of a monkey, and the journal of what it did. Every step starts the dice anew from the
// seed and the number of the step, so that one step more or less thrown leaves the later steps as
// they were.
#pragma once

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>

class Dice {
  public:
    void Start(uint64_t seed, uint64_t step) { state_ = seed * 0x9E3779B97F4A7C15 + step; }

    // SplitMix64, by Sebastiano Vigna.
    uint64_t Throw() {
        uint64_t value = state_ += 0x9E3779B97F4A7C15;
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
        return value ^ (value >> 31);
    }

    // 0 to `count` - 1; 0 for a count of 0.
    unsigned Below(size_t count) { return count == 0 ? 0 : static_cast<unsigned>(Throw() % count); }

    bool OneIn(unsigned times) { return Below(times) == 0; }

    int Between(int from, int to) {
        return from + static_cast<int>(Below(static_cast<size_t>(to - from) + 1));
    }

    template <typename Choices>
    auto& Pick(Choices& choices) {
        return *std::next(std::begin(choices), Below(std::size(choices)));
    }

  private:
    uint64_t state_ = 0;
};

// One line a deed, written through at once: the last line is what a crash came from. Goes nowhere
// without a path.
class Journal {
  public:
    explicit Journal(const char* path) : file_(path ? std::fopen(path, "w") : nullptr) {}

    ~Journal() {
        if (file_)
            std::fclose(file_);
    }

    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void Note(const std::string& line) {
        if (!file_)
            return;
        std::fprintf(file_, "%s\n", line.c_str());
        std::fflush(file_);
    }

  private:
    FILE* file_;
};
