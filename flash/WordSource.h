// The walk through the image to program, and what the user sees of it. Counts words as they are
// drawn, so it runs ahead of the work.
#pragma once

#include "flash/ImageWordCursor.h"

#include <cstdint>
#include <vector>

class OmProgressCallback;

class OmWordSource {
  public:
    // `count` follows the words drawn; all must outlive the source. A word's missing bytes are
    // wanted as zeros.
    OmWordSource(const OmDataImage& image, unsigned wordBytes, unsigned wordsPerBlock,
                 uint32_t& count);

    bool IsFinished() const { return cursor_.finished; }

    // Adds up to `maxBlocks` items to `blocks`.
    void Draw(std::vector<OmProgramBlock>& blocks, int maxBlocks);

    // False if the user wants to stop.
    bool Report(OmProgressCallback& callback) const;

  private:
    OmImageWordCursor cursor_;
    uint32_t total_;
    unsigned wordsPerBlock_;
    uint32_t& count_;
};
