// Writes a TMS and a TDI bit array side by side, packed low bit first.
#pragma once

#include "jtag/BitPacking.h"
#include "jtag/TapWriter.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

class OmJtagBitWriter : public OmTapWriter {
  public:
    // Both arrays must hold all bits that are put; old contents do not matter.
    OmJtagBitWriter(uint8_t* tms, uint8_t* tdi) : tms_(tms), tdi_(tdi) {}

    void Put(bool tms, bool tdi) override {
        const auto mask = static_cast<uint8_t>(1 << position_ % 8);
        Set(tms_[position_ / 8], mask, tms);
        Set(tdi_[position_ / 8], mask, tdi);
        ++position_;
    }

    size_t GetPosition() const override { return position_; }

  protected:
    void PutLow(std::span<const uint8_t> bits) override {
        PackBits(bits, tdi_, position_);
        ClearTms(bits.size());
        position_ += bits.size();
    }

  private:
    static void Set(uint8_t& byte, uint8_t mask, bool value) {
        byte = static_cast<uint8_t>(value ? byte | mask : byte & ~mask);
    }

    void ClearTms(size_t count) {
        if (count == 0)
            return;
        const size_t first = position_ / 8;
        const size_t last = (position_ + count - 1) / 8;
        tms_[first] &= static_cast<uint8_t>((1U << position_ % 8) - 1);
        std::memset(tms_ + first + 1, 0, last - first);
    }

    uint8_t* tms_;
    uint8_t* tdi_;
    size_t position_ = 0;
};
