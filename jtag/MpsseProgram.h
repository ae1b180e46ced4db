// A program for the MPSSE engine of FTDI's chips (application note AN_108), built in place in a
// fixed buffer. The same buffer takes what the chip sends back.
#pragma once

#include "jtag/TapPaths.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class OmMpsseProgram {
  public:
    static constexpr size_t kCapacity = 64 * 1024;

    void Clear() { used_ = 0; }

    // Each of these throws OmException when the buffer is full.

    // Up to seven clocks with TDI held.
    void ClockTms(OmTapPath path, bool tdi);
    // One to eight bits with TMS low.
    void ShiftBits(std::span<const uint8_t> bits, bool capture);
    // A multiple of eight bits with TMS low, up to 65536 bytes.
    void ShiftBytes(std::span<const uint8_t> bits, bool capture);
    // One bit with TMS high: the one that leaves the Shift state.
    void ShiftLastBit(uint8_t bit, bool capture);
    // The chip sends what it has captured now, rather than at the end of its latency time.
    void SendImmediate();

    std::span<const uint8_t> Bytes() const { return {bytes_.data(), used_}; }

    // The first `count` bytes of the buffer, over which an answer may be read once the program has
    // been written. An answer is never longer than the program that asks for it.
    std::span<uint8_t> Answer(size_t count) { return {bytes_.data(), count}; }

  private:
    uint8_t* Extend(size_t count);

    std::array<uint8_t, kCapacity> bytes_;
    size_t used_ = 0;
};
