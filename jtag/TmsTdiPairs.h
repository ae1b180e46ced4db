// An array of TMS and TDI values, four pairs a byte, first pair in the low bits, TDI below TMS.
#pragma once

#include "jtag/TapWriter.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class OmTmsTdiPairs : public OmTapWriter {
  public:
    // Empties the array and makes room.
    void Restart(size_t expectedPairs) {
        bytes_.clear();
        bytes_.reserve(expectedPairs / 4 + 1);
        count_ = 0;
    }

    void Put(bool tms, bool tdi) override {
        if (count_ % 4 == 0)
            bytes_.push_back(0);
        bytes_.back() |= static_cast<uint8_t>((tdi ? 1 : 0) | (tms ? 2 : 0)) << count_ % 4 * 2;
        ++count_;
    }

    size_t GetPosition() const override { return count_; } // in pairs

    std::span<const uint8_t> Bytes() const { return bytes_; }

  protected:
    void PutLow(std::span<const uint8_t> bits) override {
        for (; !bits.empty() && count_ % 4 != 0; bits = bits.subspan(1))
            Put(false, bits[0] == 1);
        PutFours(bits);
        for (const uint8_t bit : bits.last(bits.size() % 4))
            Put(false, bit == 1);
    }

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
