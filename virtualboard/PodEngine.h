// What a USB pod does with the bytes that its vendor library sends it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vb {

// Bytes on their way back to the host. Some are flushed at once, the rest by the latency timer.
class AnswerQueue {
  public:
    void Push(uint8_t byte) { bytes_.push_back(byte); }

    // Room for `count` bytes at the end; valid until the next change.
    uint8_t* Extend(size_t count) {
        bytes_.resize(bytes_.size() + count);
        return bytes_.data() + bytes_.size() - count;
    }

    size_t Size() const { return bytes_.size() - taken_; }

    // Moves up to `count` bytes to `to`; the number moved.
    size_t Take(uint8_t* to, size_t count);
    void Clear();

    void Flush() { flushed_ = bytes_.size(); }

    bool Unflushed() const { return flushed_ < bytes_.size(); }

  private:
    std::vector<uint8_t> bytes_;
    size_t taken_ = 0;
    size_t flushed_ = 0;
};

class PodEngine {
  public:
    virtual ~PodEngine() = default;
    virtual void Reset() = 0;
    virtual void Write(std::span<const uint8_t> bytes) = 0;

    AnswerQueue& Answers() { return answers_; }

  protected:
    AnswerQueue answers_;
};

} // namespace vb
