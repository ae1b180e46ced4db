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
        std::span<const uint8_t> body = bits.first(bits.size() - 1);
        for (; !body.empty() && count_ % 4 != 0; body = body.subspan(1))
            Put(false, body[0] == 1);
        PutFours(body);
        for (const uint8_t bit : body.last(body.size() % 4))
            Put(false, bit == 1);
        Put(true, bits.back() == 1);
    }

    size_t Count() const { return count_; } // in pairs

    std::span<const uint8_t> Bytes() const { return bytes_; }

  private:
    // As many whole bytes as `bits` fill, with TMS low, from the start of a byte.
    void PutFours(std::span<const uint8_t> bits) {
        const size_t fours = bits.size() / 4;
        const size_t start = bytes_.size();
        bytes_.resize(start + fours);
        const uint8_t* bit = bits.data();
        for (uint8_t& byte : std::span(bytes_).subspan(start)) {
            byte = static_cast<uint8_t>((bit[0] == 1) | (bit[1] == 1) << 2 | (bit[2] == 1) << 4 |
                                        (bit[3] == 1) << 6);
            bit += 4;
        }
        count_ += 4 * fours;
    }

    std::vector<uint8_t> bytes_;
    size_t count_ = 0;
};
