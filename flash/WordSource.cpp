#include "flash/WordSource.h"

#include "flash/Progress.h"

#include <algorithm>

OmWordSource::OmWordSource(const OmDataImage& image, unsigned wordBytes, unsigned wordsPerBlock,
                           uint32_t& count)
    : cursor_(image, wordBytes, 0), total_(ImageWordCount(image, wordBytes)),
      wordsPerBlock_(wordsPerBlock), count_(count) {
    count_ = 0;
}

void OmWordSource::Draw(std::vector<OmProgramBlock>& blocks, int maxBlocks) {
    count_ += CollectBlocks(cursor_, blocks, static_cast<unsigned>(maxBlocks), wordsPerBlock_);
}

// Words cut by the ends of chunks count whole when drawn: the figure could pass 100.
bool OmWordSource::Report(OmProgressCallback& callback) const {
    const uint64_t percent = uint64_t{count_} * 100 / total_;
    return callback.OnProgress(static_cast<int>(std::min<uint64_t>(percent, 100)), nullptr);
}
