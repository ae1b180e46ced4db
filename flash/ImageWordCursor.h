// A walk through a data image by bus words, and blocks of words for buffered programming.
#pragma once

#include "data/DataImage.h"

#include <cstdint>
#include <list>
#include <vector>

struct OmFlashWord {
    uint32_t address = 0; // in bus words
    uint32_t value = 0;

    bool operator==(const OmFlashWord&) const = default;
};

// Words with consecutive addresses, which go to the flash in one command; never empty in use.
using OmProgramBlock = std::vector<OmFlashWord>;

class OmImageWordCursor {
  public:
    // Stands on the first word of `image`, which must outlive the cursor. Bytes of a word that the
    // image does not hold are `fill`.
    OmImageWordCursor(const OmDataImage& image, unsigned wordBytes, uint8_t fill);

    // Steps to the next word that the image touches.
    void Advance();

    const OmDataImage* image;
    std::list<OmDataChunk>::const_iterator chunk;
    size_t index = 0; // in the chunk
    unsigned wordBytes;
    uint8_t fill;
    uint32_t nextAddress = 0; // first byte not yet consumed
    uint8_t nextByte = 0;
    uint32_t word = 0;
    uint32_t address = 0;   // of the word, in bus words
    bool exhausted = false; // the current word is the last one
    bool finished = false;  // no current word
    uint32_t count = 0;     // words delivered

  private:
    void LoadByte();
    bool NextByte();
};

// Words to program, as progress counts them: the bytes held, divided by `wordBytes`, rounded up.
uint32_t ImageWordCount(const OmDataImage& image, unsigned wordBytes);

// Draws words from the cursor into at most `maxBlocks` new blocks at the end of `blocks`. A block
// crosses neither a gap in the data nor a multiple of `wordsPerBlock` (at least 1) word addresses.
// The number of words taken.
unsigned CollectBlocks(OmImageWordCursor& cursor, std::vector<OmProgramBlock>& blocks,
                       unsigned maxBlocks, unsigned wordsPerBlock);
