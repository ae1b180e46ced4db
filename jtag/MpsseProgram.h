// A program for the MPSSE engine of FTDI's chips (application note AN_108), built in place in a
// fixed buffer.
#pragma once

#include "jtag/CommandBuffer.h"
#include "jtag/TapPaths.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Each operation but those of the buffer throws OmException when the buffer is full.
class OmMpsseProgram : public OmCommandBuffer {
  public:
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
};
