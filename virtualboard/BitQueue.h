// A queue of bits in 64-bit words: the scan path of a chain while it shifts. Appending at TDI and
// taking at TDO both cost one or two word operations for up to 64 bits, whatever the path's length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vb {

constexpr unsigned kWordBits = 64;

// The lowest `count` bits set; count is 0 to 64.
constexpr uint64_t LowMask(unsigned count) {
    return count >= kWordBits ? ~uint64_t{0} : (uint64_t{1} << count) - 1;
}

constexpr size_t WordsFor(size_t bits) {
    return (bits + kWordBits - 1) / kWordBits;
}

class BitQueue {
  public:
    // Empties the queue and makes room for `bits` bits beside one word in flight.
    void Clear(size_t bits);
    // Adds the lowest `count` bits of `bits`, bit 0 first; count is at most 64.
    void Append(uint64_t bits, unsigned count);
    // Removes the `count` oldest bits, the oldest in bit 0; count is at most 64 and at most Size().
    uint64_t Take(unsigned count);

    size_t Size() const { return static_cast<size_t>(tail_ - head_); }

    bool Front() const { return (words_[WordIndex(head_)] >> (head_ % kWordBits)) & 1; }

  private:
    size_t WordIndex(uint64_t position) const {
        return static_cast<size_t>(position / kWordBits) & indexMask_;
    }

    std::vector<uint64_t> words_ = std::vector<uint64_t>(1);
    size_t indexMask_ = 0;
    uint64_t head_ = 0; // bit positions that only grow; the ring wraps by indexMask_
    uint64_t tail_ = 0;
};

inline void BitQueue::Append(uint64_t bits, unsigned count) {
    if (count == 0)
        return;
    bits &= LowMask(count);
    const unsigned shift = tail_ % kWordBits;
    uint64_t& word = words_[WordIndex(tail_)];
    word = (word & LowMask(shift)) | (bits << shift);
    if (shift + count > kWordBits)
        words_[WordIndex(tail_ + kWordBits)] = bits >> (kWordBits - shift);
    tail_ += count;
}

inline uint64_t BitQueue::Take(unsigned count) {
    if (count == 0)
        return 0;
    const unsigned shift = head_ % kWordBits;
    uint64_t bits = words_[WordIndex(head_)] >> shift;
    if (shift + count > kWordBits)
        bits |= words_[WordIndex(head_ + kWordBits)] << (kWordBits - shift);
    head_ += count;
    return bits & LowMask(count);
}

} // namespace vb
