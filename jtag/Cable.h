// The seam between everything that thinks in scans and everything that moves bits through hardware.
// Every cable class derives from OmCable (first) and OmJtagHAL. Nothing above a cable knows the TAP
// state (IEEE 1149.1): between calls the TAP rests in Run-Test/Idle.
#pragma once

#include "jtag/BitVector.h"

#include <cstdint>
#include <vector>

// One entry of a batched DR scan.
struct OmScanVector {
    OmBitVector bits;
    bool capture = false; // the caller wants what comes back while these bits go in
};

// All vectors of one batch have the same length, at least 1; cables size their buffers from the
// first.
using OmScanList = std::vector<OmScanVector>;
using OmCapturedList = std::vector<OmBitVector>;

// Where a scan starts and ends. A start or end of Pause means Pause-DR for ScanDR, Pause-IR for
// ScanIR. The program itself always scans from and to Idle.
inline constexpr int kScanFromReset = 0; // Test-Logic-Reset
inline constexpr int kScanFromIdle = 1;  // Run-Test/Idle
inline constexpr int kScanFromPause = 2; // as any value but 0 and 1
inline constexpr int kScanToPause = 0;   // as any value but 1
inline constexpr int kScanToIdle = 1;

class OmJtagHAL {
  public:
    virtual ~OmJtagHAL() = default;

    // TMS high for at least five TCK, then one low: every TAP passes Test-Logic-Reset and ends in
    // Run-Test/Idle.
    virtual void ResetTap() = 0;

    // Scans every vector through the DR path, each from and to Run-Test/Idle. `captured` may be
    // null: then nothing is returned, whatever the flags say. Otherwise it is cleared and receives
    // one vector for each entry whose flag is set, in order.
    virtual void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) = 0;

    // One scan. `in` has at least one element; `out` is cleared and receives as many elements as
    // `in`, element i being TDO while element i of `in` was shifted. `out` is never null for
    // ScanIR; callers outside the cables never pass null for ScanDR either.
    virtual void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) = 0;
    virtual void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) = 0;

    // TCK in Hz, as requested or fixed, not as measured.
    virtual uint32_t GetFrequency() = 0;

    // How many vectors of `bits` bits fit one transfer of the cable: for reading, for programming
    // without and with a status read. Any pointer may be null. -1.0 means that batching gains
    // nothing.
    virtual void GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status);

    // All of these but the last throw OmException when the connection breaks; the TAP state is then
    // undefined and the cable must be closed.
};

class OmCable {
  public:
    // Closes what is open and frees the vendor library.
    virtual ~OmCable() = default;

    // Name of the kernel driver that the cable needs, empty for none; never null.
    virtual const char* GetDriverName() = 0;

    // Two queries of the cable interface that every cable answers with true.
    virtual bool IsSupported() { return true; }

    virtual bool IsAvailable() { return true; }

    // The HAL view of this same object.
    virtual OmJtagHAL* GetJtagHAL() = 0;
};
