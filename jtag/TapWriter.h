// What cables that send a TMS and a TDI value for each TCK write scans into; each has its own form
// of the two. How a scan is laid out, and where its TDO begins, is the same for all.
#pragma once

#include "jtag/TapPaths.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class OmTapWriter {
  public:
    virtual ~OmTapWriter() = default;

    virtual void Put(bool tms, bool tdi) = 0;

    // How many clocks have been put.
    virtual size_t GetPosition() const = 0;

    // A walk with TDI high.
    void PutPath(OmTapPath path) {
        for (unsigned clock = 0; clock < path.clocks; ++clock)
            Put(path.Tms(clock), true);
    }

    // Bits with TMS low, but for the last one, which leaves the Shift state.
    void PutBits(std::span<const uint8_t> bits) {
        PutLow(bits.first(bits.size() - 1));
        Put(true, bits.back() == 1);
    }

    // A scan with its walks. Returns the position of its first bit.
    size_t PutScan(OmScanRegister which, const OmBitVector& in, int from, int to);

    // DR scans from and to Run-Test/Idle. Returns the positions of the first bits of those that are
    // to be captured; none if nobody wants what is captured.
    std::vector<size_t> PutScans(std::span<const OmScanVector> vectors, bool wanted);

  protected:
    // Bits with TMS low; this is where the bulk passes.
    virtual void PutLow(std::span<const uint8_t> bits) = 0;
};

// What PutScans has asked for, from packed TDO bits: appends a vector of `bits` elements for each
// position, read `ahead` clocks before it.
void UnpackScans(const uint8_t* tdo, std::span<const size_t> positions, size_t ahead, size_t bits,
                 OmCapturedList& captured);
