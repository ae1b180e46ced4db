#include "jtag/ScanLists.h"

#include "jtag/Exception.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

// Payload that one USB transfer is reckoned with.
constexpr float kTransferBytes = 1014.0F;

} // namespace

void RequireBits(const OmBitVector& in) {
    if (in.empty())
        throw OmException(Translated("A JTAG scan of no bits was asked for."));
}

size_t RequireEqualLengths(const OmScanList& vectors) {
    const size_t length = vectors.front().bits.size();
    RequireBits(vectors.front().bits);
    for (const OmScanVector& vector : vectors) {
        if (vector.bits.size() != length)
            throw OmException(Translated("The JTAG scans of one batch differ in length."));
    }
    return length;
}

void ScanOneByOne(OmJtagHAL& hal, const OmScanList& vectors, OmCapturedList* captured) {
    if (captured)
        captured->clear();
    for (const OmScanVector& vector : vectors) {
        OmBitVector* out = captured && vector.capture ? &captured->emplace_back() : nullptr;
        hal.ScanDR(vector.bits, out, kScanFromIdle, kScanToIdle);
    }
}

void ScanHeadAndRest(const OmScanList& vectors, OmCapturedList* captured, const OmBatchScan& scan) {
    if (captured)
        captured->clear();
    if (vectors.empty())
        return;
    RequireEqualLengths(vectors);
    const auto first = std::ranges::find(vectors, true, &OmScanVector::capture);
    const auto head = static_cast<size_t>(first - vectors.begin());
    const std::span all(vectors);
    for (const auto part : {all.first(head), all.subspan(head)})
        if (!part.empty())
            scan(part);
}

void GetPairVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) {
    const uint32_t bytesPerVector = bits / 4 + 3;
    for (float* result : {reading, blind}) {
        if (result)
            *result = kTransferBytes / static_cast<float>(bytesPerVector);
    }
    if (status)
        *status = -1.0F;
}
