#include "virtualboard/BitQueue.h"

#include <bit>

namespace vb {

void BitQueue::Clear(size_t bits) {
    // Two spare words: one for the bits in flight, one because neither end is word-aligned.
    const size_t needed = std::bit_ceil(WordsFor(bits) + 2);
    if (needed > words_.size()) {
        words_.assign(needed, 0);
        indexMask_ = needed - 1;
    }
    head_ = tail_ = 0;
}

} // namespace vb
