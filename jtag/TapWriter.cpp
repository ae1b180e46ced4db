#include "jtag/TapWriter.h"

#include "jtag/BitPacking.h"

size_t OmTapWriter::PutScan(OmScanRegister which, const OmBitVector& in, int from, int to) {
    PutPath(GetPathToShift(which, from));
    const size_t first = GetPosition();
    PutBits(in);
    PutPath(GetPathFromExit1(to));
    return first;
}

std::vector<size_t> OmTapWriter::PutScans(std::span<const OmScanVector> vectors, bool wanted) {
    std::vector<size_t> positions;
    for (const OmScanVector& vector : vectors) {
        const size_t first = PutScan(OmScanRegister::Data, vector.bits, kScanFromIdle, kScanToIdle);
        if (wanted && vector.capture)
            positions.push_back(first);
    }
    return positions;
}

void UnpackScans(const uint8_t* tdo, std::span<const size_t> positions, size_t ahead, size_t bits,
                 OmCapturedList& captured) {
    for (const size_t position : positions)
        UnpackBits(tdo, position - ahead, captured.emplace_back(bits));
}
