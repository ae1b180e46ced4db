#include "virtualboard/JtagPins.h"

namespace vb {

namespace {

// Cycles from `first` on, whole bytes only, in which TMS is low.
size_t QuietCycles(const uint8_t* tms, size_t first, size_t count) {
    size_t end = first;
    while (end + 8 <= count && tms[end / 8] == 0)
        end += 8;
    return end - first;
}

} // namespace

void JtagPins::Set(bool tck, bool tms, bool tdi) {
    if (tck && !tck_)
        heldTdo_ = board_.Chain().Clock(tms, tdi);
    tck_ = tck;
    tms_ = tms;
    tdi_ = tdi;
}

// Bytes with TMS low throughout go in one piece: in a shift state that is word by word.
void RunPacked(JtagChain& chain, const uint8_t* tms, const uint8_t* tdi, uint8_t* tdo,
               size_t count) {
    for (size_t i = 0; i < count;) {
        const size_t quiet = i % 8 == 0 ? QuietCycles(tms, i, count) : 0;
        if (quiet > 0) {
            chain.Run(false, tdi + i / 8, false, tdo ? tdo + i / 8 : nullptr, quiet);
            i += quiet;
            continue;
        }
        const bool sampled = chain.Clock(tms[i / 8] >> (i % 8) & 1, tdi[i / 8] >> (i % 8) & 1);
        const auto mask = static_cast<uint8_t>(1u << (i % 8));
        if (tdo)
            tdo[i / 8] = static_cast<uint8_t>(sampled ? tdo[i / 8] | mask : tdo[i / 8] & ~mask);
        ++i;
    }
}

} // namespace vb
