// Bytes for the CPLD of a USB-Blaster, built in place in a fixed buffer.
#pragma once

#include "jtag/CommandBuffer.h"
#include "jtag/TapPaths.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Each operation but those of the buffer throws OmException when the buffer is full.
class OmUsbBlasterProgram : public OmCommandBuffer {
  public:
    // TMS clocks with TDI high, and TCK left low with TMS low.
    void Walk(OmTapPath path);
    // Any number of bits with TMS low: whole bytes in runs, the rest pin by pin.
    void ShiftBits(std::span<const uint8_t> bits, bool capture);
    // One bit with TMS high: the one that leaves the Shift state.
    void ShiftLastBit(uint8_t bit, bool capture);

    // Bytes that come back for `bits` captured by ShiftBits: eight bits a byte in the runs, one a
    // byte after them.
    static size_t AnswerSize(size_t bits) { return bits / 8 + bits % 8; }

    static void Decode(std::span<const uint8_t> answer, std::span<uint8_t> bits);
    static uint8_t DecodeLastBit(uint8_t answer);

  private:
    void ClockBit(uint8_t pins, uint8_t bit, bool capture);
};
