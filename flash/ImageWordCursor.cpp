#include "flash/ImageWordCursor.h"

#include <algorithm>

namespace {

// Byte `lane` of a bus word; lanes beyond the widest bus fall away.
void SetLane(uint32_t& word, unsigned lane, uint8_t value) {
    if (lane < sizeof word)
        word = (word & ~(0xFFu << (lane * 8))) | uint32_t{value} << (lane * 8);
}

} // namespace

OmImageWordCursor::OmImageWordCursor(const OmDataImage& source, unsigned bytesPerWord,
                                     uint8_t fillByte)
    : image(&source), chunk(source.GetChunks().begin()), wordBytes(std::max(bytesPerWord, 1u)),
      fill(fillByte) {
    if (chunk == image->GetChunks().end()) {
        finished = true;
        return;
    }
    LoadByte();
    Advance();
}

void OmImageWordCursor::LoadByte() {
    nextAddress = chunk->address + static_cast<uint32_t>(index);
    nextByte = chunk->bytes[index];
}

// False if the image has no further byte.
bool OmImageWordCursor::NextByte() {
    if (++index == chunk->bytes.size()) {
        index = 0;
        if (++chunk == image->GetChunks().end())
            return false;
    }
    LoadByte();
    return true;
}

void OmImageWordCursor::Advance() {
    if (exhausted || finished) {
        finished = true;
        return;
    }
    const uint32_t base = nextAddress - nextAddress % wordBytes;
    word = 0x01010101u * fill;
    while (!exhausted && nextAddress - base < wordBytes) {
        SetLane(word, nextAddress - base, nextByte);
        exhausted = !NextByte();
    }
    address = base / wordBytes;
    ++count;
}

uint32_t ImageWordCount(const OmDataImage& image, unsigned wordBytes) {
    wordBytes = std::max(wordBytes, 1u);
    return static_cast<uint32_t>((image.GetByteCount() + wordBytes - 1) / wordBytes);
}

unsigned CollectBlocks(OmImageWordCursor& cursor, std::vector<OmProgramBlock>& blocks,
                       unsigned maxBlocks, unsigned wordsPerBlock) {
    unsigned total = 0;
    unsigned blockCount = 0;
    uint32_t previous = 0;
    while (!cursor.finished) {
        const bool goesOn =
            total > 0 && cursor.address == previous + 1 && cursor.address % wordsPerBlock != 0;
        if (!goesOn) {
            if (total > 0 && blockCount == maxBlocks)
                break; // the word stays in the cursor
            blocks.emplace_back();
            ++blockCount;
        }
        blocks.back().push_back({cursor.address, cursor.word});
        previous = cursor.address;
        ++total;
        cursor.Advance();
    }
    return total;
}
