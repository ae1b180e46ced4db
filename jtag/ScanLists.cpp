#include "jtag/ScanLists.h"

#include "jtag/Exception.h"

#include <algorithm>

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

size_t CountBlindHead(const OmScanList& vectors) {
    const auto first = std::find_if(vectors.begin(), vectors.end(),
                                    [](const OmScanVector& vector) { return vector.capture; });
    return static_cast<size_t>(first - vectors.begin());
}
