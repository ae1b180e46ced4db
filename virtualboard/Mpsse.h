// The MPSSE of an FT2232 (FTDI AN_108): a stream of commands in, a stream of answers out, and the
// JTAG pins of a board between.
#pragma once

#include "virtualboard/Board.h"
#include "virtualboard/PodEngine.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vb {

class Mpsse : public PodEngine {
  public:
    // `highSpeed`: the 60 MHz engine of an FT2232H, with its further commands.
    Mpsse(Board& board, bool highSpeed, bool connected, bool returnClock);

    void Reset() override;
    // Runs all commands that are complete; the rest waits for more bytes.
    void Write(std::span<const uint8_t> bytes) override;

    // Waiting for a pin level or a clock edge that does not come.
    bool Stalled() const { return stalled_; }

    uint8_t LowPins() const;
    uint8_t HighPins() const;

  private:
    struct Port {
        uint8_t value = 0;
        uint8_t direction = 0;
    };

    // The number of bytes used, 0 if the command is not complete yet.
    size_t Step(std::span<const uint8_t> bytes);
    size_t Shift(std::span<const uint8_t> bytes);
    size_t ShiftBytes(uint8_t command, std::span<const uint8_t> bytes);
    size_t ShiftBits(uint8_t command, std::span<const uint8_t> bytes);
    size_t ShiftTms(uint8_t command, std::span<const uint8_t> bytes);
    size_t Control(std::span<const uint8_t> bytes);
    size_t HighSpeedControl(std::span<const uint8_t> bytes);
    size_t BadCommand(uint8_t command);

    bool CycleBit(bool tms, bool tdi, uint8_t command);
    void RunBytes(uint8_t command, const uint8_t* data, size_t count);
    void ClockOnly(size_t cycles);
    void WaitForPin(bool high);
    void SetLowPort(uint8_t value, uint8_t direction);
    void ApplyFrequency();

    bool TdiPin() const { return port_[0].value & 0x02; }

    bool TmsPin() const { return port_[0].value & 0x08; }

    void SetTdiPin(bool level);
    void SetTmsPin(bool level);

    Board& board_;
    const bool highSpeed_;
    const bool connected_;
    const bool returnClock_;
    Port port_[2]; // low and high byte
    uint16_t divisor_ = 0;
    bool divideByFive_ = true;
    bool loopback_ = false;
    bool adaptive_ = false;
    bool stalled_ = false;
    uint8_t shiftIn_ = 0; // the answer register: bits left in it show in short answers
    std::vector<uint8_t> pending_;
    std::vector<uint8_t> scratch_;
};

} // namespace vb
