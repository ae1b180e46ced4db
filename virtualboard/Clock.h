// The board's time, counted in TCK: flash busy times run by it, so that a test needs no waiting and
// every run is the same. Time that passes without TCK is added only when somebody says so.
#pragma once

#include <cstdint>

namespace vb {

constexpr uint64_t kPicosecondsPerSecond = 1'000'000'000'000;
constexpr uint64_t kPicosecondsPerMicrosecond = 1'000'000;

class BoardClock {
  public:
    void SetFrequency(uint32_t hertz) {
        frequency_ = hertz ? hertz : 1;
        period_ = kPicosecondsPerSecond / frequency_;
    }

    uint32_t Frequency() const { return frequency_; }

    void Tick(uint64_t cycles) {
        cycles_ += cycles;
        now_ += cycles * period_;
    }

    void AddMicroseconds(uint64_t microseconds) {
        now_ += microseconds * kPicosecondsPerMicrosecond;
    }

    uint64_t Now() const { return now_; } // picoseconds since power-up

    uint64_t Cycles() const { return cycles_; }

    void ClearCycles() { cycles_ = 0; }

  private:
    uint32_t frequency_ = 1'000'000;
    uint64_t period_ = kPicosecondsPerMicrosecond;
    uint64_t now_ = 0;
    uint64_t cycles_ = 0;
};

} // namespace vb
