#include "virtualboard/PodEngine.h"

#include <algorithm>

namespace vb {

size_t AnswerQueue::Take(uint8_t* to, size_t count) {
    count = std::min(count, Size());
    std::copy_n(bytes_.begin() + static_cast<int64_t>(taken_), count, to);
    taken_ += count;
    if (taken_ == bytes_.size())
        Clear();
    return count;
}

void AnswerQueue::Clear() {
    bytes_.clear();
    taken_ = flushed_ = 0;
}

} // namespace vb
