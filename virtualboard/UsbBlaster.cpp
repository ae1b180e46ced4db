#include "virtualboard/UsbBlaster.h"

namespace vb {

namespace {

// Direct byte.
constexpr uint8_t kTck = 0x01;
constexpr uint8_t kTms = 0x02;
constexpr uint8_t kTdi = 0x10;
constexpr uint8_t kOutputEnable = 0x20;
constexpr uint8_t kRead = 0x40;
// Head of a run.
constexpr uint8_t kRun = 0x80;
constexpr uint8_t kRunLength = 0x3F;

// The CPLD divides its 24 MHz by four to make TCK.
constexpr uint32_t kHertz = 6'000'000;

} // namespace

UsbBlaster::UsbBlaster(Board& board, bool connected)
    : board_(board), pins_(board), connected_(connected) {
    board.Clock().SetFrequency(kHertz);
}

void UsbBlaster::Write(std::span<const uint8_t> bytes) {
    for (uint8_t byte : bytes) {
        if (runLeft_ > 0) {
            --runLeft_;
            ShiftByte(byte);
        } else if (byte & kRun) {
            runLeft_ = byte & kRunLength;
            runReads_ = byte & kRead;
        } else {
            DirectByte(byte);
        }
    }
    answers_.Flush(); // the latency timer of this pod is 2 ms, and no command cuts it short
}

void UsbBlaster::DirectByte(uint8_t byte) {
    if (byte & kRead) // sampled before the pins move
        answers_.Push(!connected_ || pins_.Tdo() ? 1 : 0);
    if (connected_ && byte & kOutputEnable)
        pins_.Set(byte & kTck, byte & kTms, byte & kTdi);
}

void UsbBlaster::ShiftByte(uint8_t byte) {
    uint8_t answer = 0xFF;
    if (connected_) {
        pins_.Set(false, pins_.Tms(), pins_.Tdi());
        board_.Chain().Run(pins_.Tms(), &byte, false, &answer, 8);
    }
    if (runReads_)
        answers_.Push(answer);
}

} // namespace vb
