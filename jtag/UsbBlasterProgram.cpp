#include "jtag/UsbBlasterProgram.h"

#include "jtag/BitPacking.h"

#include <algorithm>

namespace {

// A direct byte sets the pins.
constexpr uint8_t kTck = 0x01;
constexpr uint8_t kTms = 0x02;
constexpr uint8_t kTdi = 0x10;
constexpr uint8_t kIdle = 0x2C; // pins of other download modes, always set

// Asks for TDO, in a direct byte as one byte, in the head of a run as one byte for each sent.
constexpr uint8_t kRead = 0x40;

constexpr uint8_t kRun = 0x80; // with the number of bytes in bits 0 to 5
constexpr size_t kMaxRun = 63;

} // namespace

void OmUsbBlasterProgram::Walk(OmTapPath path) {
    for (unsigned clock = 0; clock < path.clocks; ++clock)
        ClockBit(kIdle | (path.Tms(clock) ? kTms : 0), 1, false);
    *Extend(1) = kIdle | kTdi;
}

void OmUsbBlasterProgram::ShiftBits(std::span<const uint8_t> bits, bool capture) {
    while (bits.size() >= 8) {
        const size_t count = std::min(bits.size() / 8, kMaxRun);
        uint8_t* run = Extend(1 + count);
        run[0] = static_cast<uint8_t>(kRun | (capture ? kRead : 0) | count);
        PackBits(bits.first(8 * count), run + 1);
        bits = bits.subspan(8 * count);
    }
    for (const uint8_t bit : bits)
        ClockBit(kIdle, bit, capture);
}

void OmUsbBlasterProgram::ShiftLastBit(uint8_t bit, bool capture) {
    ClockBit(kIdle | kTms, bit, capture);
}

void OmUsbBlasterProgram::ClockBit(uint8_t pins, uint8_t bit, bool capture) {
    const uint8_t low = pins | (bit == 1 ? kTdi : 0);
    uint8_t* edges = Extend(2);
    edges[0] = low;
    edges[1] = low | kTck | (capture ? kRead : 0);
}

void OmUsbBlasterProgram::Decode(std::span<const uint8_t> answer, std::span<uint8_t> bits) {
    const size_t whole = bits.size() / 8;
    UnpackBits(answer.data(), 0, bits.first(8 * whole));
    for (size_t i = 8 * whole; i < bits.size(); ++i)
        bits[i] = DecodeLastBit(answer[whole + i - 8 * whole]);
}

uint8_t OmUsbBlasterProgram::DecodeLastBit(uint8_t answer) {
    return answer & 1;
}
