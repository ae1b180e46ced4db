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
    // An FT2232H has the 60 MHz engine with its further commands, an FT2232C the older one.
    Mpsse(Board& board, const PodEntry& entry);

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
    size_t BadCommand(uint8_t command);

    struct Command {
        uint8_t code;
        uint8_t size; // bytes, the code included
        bool highSpeedOnly;
        void (Mpsse::*run)(const uint8_t* bytes);
    };

    const Command* FindCommand(uint8_t code) const;
    void WriteLowPort(const uint8_t* bytes);
    void ReadLowPort(const uint8_t* bytes);
    void WriteHighPort(const uint8_t* bytes);
    void ReadHighPort(const uint8_t* bytes);
    void Loopback(const uint8_t* bytes);
    void Divisor(const uint8_t* bytes);
    void Flush(const uint8_t* bytes);
    void WaitForPin(const uint8_t* bytes);
    void DivideByFive(const uint8_t* bytes);
    void ThreePhase(const uint8_t* bytes);
    void ClockBits(const uint8_t* bytes);
    void ClockBytes(const uint8_t* bytes);
    void Adaptive(const uint8_t* bytes);
    void ClockUntilPin(const uint8_t* bytes);

    bool CycleBit(bool tms, bool tdi, uint8_t command);
    void RunBytes(uint8_t command, const uint8_t* data, size_t count);
    void ClockOnly(size_t cycles);
    bool GpioL1() const;
    void SetLowPort(uint8_t value, uint8_t direction);
    void ApplyFrequency();

    // What the board sees of an output pin: a pin that is no output is pulled up.
    bool Shows(uint8_t pin) const { return port_[0].value & pin || !(port_[0].direction & pin); }

    bool TdiPin() const;
    bool TmsPin() const;
    bool ReachesBoard() const;
    bool TdoPin() const;

    void SetTdiPin(bool level);
    void SetTmsPin(bool level);

    Board& board_;
    const bool highSpeed_;
    const PodEntry entry_;
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
