// The scans of the Digilent cable.

#include "jtag/BitPacking.h"
#include "jtag/CableErrors.h"
#include "jtag/DigilentAdept.h"
#include "jtag/ScanLists.h"

#include <climits>

namespace {

// Kept between calls for their storage; process-wide, since there is only ever one cable, and one
// scan at a time.
OmTmsTdiPairs drPairs;
OmTmsTdiPairs batchPairs;
std::vector<uint8_t> drTdo;
std::vector<uint8_t> batchTdo;
std::vector<uint8_t> irTdi;
std::vector<uint8_t> irTdo;

// The library counts in int.
int LibraryCount(size_t count) {
    if (count > INT_MAX)
        ThrowScanTooLong();
    return static_cast<int>(count);
}

// The library samples TDO after each clock, so that the first bit out goes with the clock that
// enters the Shift state, one clock ahead of the first bit in.
constexpr size_t kTdoAhead = 1;

// The bits of one scan for a call that clocks the entry into the Shift state as well: TDI is high
// then, and every element follows one clock late. The last element is left for the clock into
// Exit1.
void PackOneClockLate(const OmBitVector& in, std::vector<uint8_t>& tdi) {
    OmBitVector late{1};
    late.insert(late.end(), in.begin(), in.end() - 1);
    tdi.resize(PackedSize(late.size()));
    PackBits(late, tdi.data());
}

} // namespace

// Gets TDO if `tdo` is not null.
void OmDigilentAdept::PutPairs(const OmTmsTdiPairs& pairs, std::vector<uint8_t>* tdo) {
    const int count = LibraryCount(pairs.GetPosition());
    if (tdo)
        tdo->assign(pairs.GetPosition() / 8 + 1, 0);
    auto* bytes =
        const_cast<uint8_t*>(pairs.Bytes().data()); // the library's parameter is not const
    ErrorCode error = 0;
    if (!functions_.PutTmsTdiBits(hif_, count, bytes, tdo ? 1 : 0, tdo ? tdo->data() : nullptr,
                                  &error, nullptr))
        ThrowConnectionError();
}

void OmDigilentAdept::ResetTap() {
    uint8_t bytes[] = {0xFF, 0xF7}; // TMS 1 five times, then 0, with TDI high
    ErrorCode error = 0;
    if (!functions_.PutTmsTdiBits(hif_, static_cast<int>(kTapResetPath.clocks), bytes, 0, nullptr,
                                  &error, nullptr))
        ThrowConnectionError();
}

void OmDigilentAdept::ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    RequireBits(in);
    if (out)
        out->clear();
    drPairs.Restart(in.size() + 6);
    const size_t first = drPairs.PutScan(OmScanRegister::Data, in, from, to);
    PutPairs(drPairs, out ? &drTdo : nullptr);
    if (!out)
        return;
    out->resize(in.size());
    UnpackBits(drTdo.data(), first - kTdoAhead, *out);
}

// Three calls, so that the bulk goes by the library's form for TDI alone.
void OmDigilentAdept::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    RequireBits(in);
    out->clear();
    OmTmsTdiPairs ends;
    ends.PutPath(GetPathToShift(OmScanRegister::Instruction, from).WithoutLast());
    PutPairs(ends, nullptr);

    PackOneClockLate(in, irTdi);
    irTdo.assign(in.size() / 8 + 1, 0);
    ErrorCode error = 0;
    if (!functions_.PutTdiBits(hif_, LibraryCount(in.size()), irTdi.data(), 0, 1, irTdo.data(),
                               &error, nullptr))
        ThrowConnectionError();

    ends.Restart(3);
    ends.Put(true, in.back() == 1);
    ends.PutPath(GetPathFromExit1(to));
    PutPairs(ends, nullptr);

    out->resize(in.size());
    UnpackBits(irTdo.data(), 0, *out);
}

void OmDigilentAdept::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    ScanHeadAndRest(vectors, captured, [&](auto part) { ScanBatch(part, captured); });
}

void OmDigilentAdept::ScanBatch(std::span<const OmScanVector> vectors, OmCapturedList* captured) {
    const size_t bits = vectors.front().bits.size();
    batchPairs.Restart((bits + 6) * vectors.size());
    const std::vector<size_t> positions = batchPairs.PutScans(vectors, captured != nullptr);
    PutPairs(batchPairs, positions.empty() ? nullptr : &batchTdo);
    if (!positions.empty())
        UnpackScans(batchTdo.data(), positions, kTdoAhead, bits, *captured);
}

void OmDigilentAdept::GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind,
                                            float* status) {
    GetPairVectorsPerTransfer(bits, reading, blind, status);
}
