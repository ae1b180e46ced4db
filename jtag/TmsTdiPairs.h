// An array of TMS and TDI values, four pairs a byte, first pair in the low bits, TDI below TMS.
#pragma once

#include "jtag/TapPaths.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class OmTmsTdiPairs {
  public:
    // Empties the array and makes room.
    void Restart(size_t expectedPairs) {
        bytes_.clear();
        bytes_.reserve(expectedPairs / 4 + 1);
        count_ = 0;
    }

    void Put(bool tms, bool tdi) {
        if (count_ % 4 == 0)
            bytes_.push_back(0);
        bytes_.back() |= static_cast<uint8_t>((tdi ? 1 : 0) | (tms ? 2 : 0)) << count_ % 4 * 2;
        ++count_;
    }

    // A walk with TDI high.
    void PutPath(OmTapPath path) {
        for (unsigned clock = 0; clock < path.clocks; ++clock)
            Put(path.Tms(clock), true);
    }

    // Bits with TMS low, but for the last one, which leaves the Shift state.
    void PutBits(std::span<const uint8_t> bits) {
        for (const uint8_t bit : bits.first(bits.size() - 1))
            Put(false, bit == 1);
        Put(true, bits.back() == 1);
    }

    size_t Count() const { return count_; } // in pairs

    std::span<const uint8_t> Bytes() const { return bytes_; }

  private:
    std::vector<uint8_t> bytes_;
    size_t count_ = 0;
};
