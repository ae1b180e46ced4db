// The fixed buffer in which a USB cable lays out the bytes of one transfer. The answer is read back
// over the commands once they have been written: it is never longer than what asks for it.
#pragma once

#include "jtag/CableErrors.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class OmCommandBuffer {
  public:
    static constexpr size_t kCapacity = size_t{64} * 1024;

    void Clear() { used_ = 0; }

    // Where the next `count` bytes go. Throws OmException when the buffer is full.
    uint8_t* Extend(size_t count) {
        if (count > kCapacity - used_)
            ThrowScanTooLong();
        uint8_t* start = bytes_.data() + used_;
        used_ += count;
        return start;
    }

    std::span<const uint8_t> Bytes() const { return {bytes_.data(), used_}; }

    std::span<uint8_t> Answer(size_t count) { return {bytes_.data(), count}; }

  private:
    std::array<uint8_t, kCapacity> bytes_;
    size_t used_ = 0;
};
