#include "jtag/CableErrors.h"

#include "jtag/Exception.h"

void ThrowConnectionError() {
    throw OmException(L"JTAG connection error");
}

void ThrowScanTooLong() {
    throw OmException(L"The JTAG chain is too long for this cable.");
}

void RequireBits(const OmBitVector& in) {
    if (in.empty())
        throw OmException(L"A JTAG scan of no bits was asked for.");
}

size_t RequireEqualLengths(const OmScanList& vectors) {
    const size_t length = vectors.front().bits.size();
    RequireBits(vectors.front().bits);
    for (const OmScanVector& vector : vectors) {
        if (vector.bits.size() != length)
            throw OmException(L"The JTAG scans of one batch differ in length.");
    }
    return length;
}
