#include "flash/TransferFit.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kMaxTransfers = 10;

// The unused share of the transfers that `scans` scans take.
float Waste(int scans, float perTransfer) {
    const float exact = static_cast<float>(scans) / perTransfer;
    const float whole = std::ceil(exact);
    return (whole - exact) / whole;
}

} // namespace

int FitItemsToTransfers(int cap, int scansPerItem, int extraScans, float perTransfer) {
    if (cap <= extraScans || (cap - extraScans) / scansPerItem < 2)
        return 1;
    const int transfers =
        static_cast<int>(std::min(std::ceil(static_cast<float>(cap) / perTransfer), kMaxTransfers));
    float best = 1000;
    int answer = 1;
    for (int k = 1; k <= transfers; ++k) {
        const int scans = static_cast<int>(static_cast<float>(k) * perTransfer);
        const int items = scans > extraScans ? (scans - extraScans) / scansPerItem : 0;
        if (items == 0)
            continue;
        const float waste = Waste(items * scansPerItem + extraScans, perTransfer);
        if (best >= waste) { // a tie goes to the longer batch
            best = waste;
            answer = items;
        }
    }
    return answer;
}
