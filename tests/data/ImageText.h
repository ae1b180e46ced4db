// Images as literal chunks, for tables of cases.
#pragma once

#include "data/DataImage.h"

#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <vector>

inline void PrintTo(const OmDataChunk& chunk, std::ostream* stream) {
    *stream << std::hex << chunk.address << "h:" << std::dec
            << ::testing::PrintToString(chunk.bytes);
}

inline std::vector<OmDataChunk> ChunksOf(const OmDataImage& image) {
    return {image.GetChunks().begin(), image.GetChunks().end()};
}

inline OmDataImage MakeImage(const std::vector<OmDataChunk>& chunks) {
    OmDataImage image;
    for (const OmDataChunk& chunk : chunks)
        image.SetBytes(chunk.address, chunk.bytes);
    return image;
}
