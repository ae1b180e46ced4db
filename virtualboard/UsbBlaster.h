// The byte protocol of the CPLD in a USB-Blaster: a byte is the state of the pins, or announces a
// run of bytes to be shifted.
#pragma once

#include "virtualboard/JtagPins.h"
#include "virtualboard/PodEngine.h"

#include <cstdint>
#include <span>

namespace vb {

class UsbBlaster : public PodEngine {
  public:
    UsbBlaster(Board& board, bool connected);

    void Reset() override { answers_.Clear(); } // the USB chip resets, the CPLD does not

    void Write(std::span<const uint8_t> bytes) override;

  private:
    void DirectByte(uint8_t byte);
    void ShiftByte(uint8_t byte);

    Board& board_;
    JtagPins pins_;
    const bool connected_;
    unsigned runLeft_ = 0; // bytes of the present run still to come
    bool runReads_ = false;
};

} // namespace vb
