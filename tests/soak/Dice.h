// What a soak run draws its choices from: the same seed draws the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

class Dice {
  public:
    explicit Dice(uint64_t seed) : state_(seed) {}

    // splitmix64
    uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15;
        uint64_t value = state_;
        value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
        value = (value ^ value >> 27) * 0x94D049BB133111EB;
        return value ^ value >> 31;
    }

    // From `least` to `most`, both included.
    uint32_t Between(uint32_t least, uint32_t most) {
        return least + static_cast<uint32_t>(Next() % (uint64_t{most} - least + 1));
    }

    bool Percent(uint32_t chance) { return Between(1, 100) <= chance; }

    uint8_t Byte() { return static_cast<uint8_t>(Next()); }

    template <typename Table>
    const auto& From(const Table& table) {
        return *std::next(std::begin(table),
                          static_cast<std::ptrdiff_t>(Next() % std::size(table)));
    }

  private:
    uint64_t state_;
};
