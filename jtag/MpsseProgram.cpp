#include "jtag/MpsseProgram.h"

#include "jtag/BitPacking.h"

namespace {

// Commands of AN_108, all low bit first, TDI and TMS changing on the falling edge of TCK.
constexpr uint8_t kClockTms = 0x4B;
constexpr uint8_t kShiftBits = 0x1B;
constexpr uint8_t kShiftBytes = 0x19;
constexpr uint8_t kReadTdo = 0x20; // added to any of the above
constexpr uint8_t kSendImmediate = 0x87;

constexpr uint8_t kTdiHigh = 0x80; // in the data of kClockTms
constexpr uint8_t kTmsHigh = 0x01;

constexpr uint8_t Command(uint8_t command, bool capture) {
    return capture ? command | kReadTdo : command;
}

} // namespace

void OmMpsseProgram::ClockTms(OmTapPath path, bool tdi) {
    uint8_t* command = Extend(3);
    command[0] = kClockTms;
    command[1] = static_cast<uint8_t>(path.clocks - 1);
    command[2] = static_cast<uint8_t>(path.tms | (tdi ? kTdiHigh : 0));
}

void OmMpsseProgram::ShiftBits(std::span<const uint8_t> bits, bool capture) {
    uint8_t* command = Extend(3);
    command[0] = Command(kShiftBits, capture);
    command[1] = static_cast<uint8_t>(bits.size() - 1);
    PackBits(bits, command + 2);
}

void OmMpsseProgram::ShiftBytes(std::span<const uint8_t> bits, bool capture) {
    const size_t count = bits.size() / 8;
    uint8_t* command = Extend(3 + count);
    command[0] = Command(kShiftBytes, capture);
    command[1] = static_cast<uint8_t>(count - 1);
    command[2] = static_cast<uint8_t>((count - 1) >> 8);
    PackBits(bits, command + 3);
}

void OmMpsseProgram::ShiftLastBit(uint8_t bit, bool capture) {
    uint8_t* command = Extend(3);
    command[0] = Command(kClockTms, capture);
    command[1] = 0;
    command[2] = bit == 1 ? kTdiHigh | kTmsHigh : kTmsHigh;
}

void OmMpsseProgram::SendImmediate() {
    *Extend(1) = kSendImmediate;
}
