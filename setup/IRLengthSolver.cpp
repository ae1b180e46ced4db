#include "setup/IRLengthSolver.h"

#include <cstddef>

// Only whether there is none, one or more than one solution matters, so nothing is enumerated. The
// devices fall into blocks that cannot stretch: a run of known lengths up to the start of the
// unknown one after it. A solution places the blocks in order, with at least two bits for each
// unknown length between them. Taking the lower (or the higher) of two solutions' positions for
// every block gives a solution again; so, if there is any solution, there is one with every block
// as low as can be and one with every block as high as can be, and it is the only one exactly if
// these two are the same.

namespace {

constexpr uint64_t kShortestLength = 2;

struct Block {
    std::vector<uint64_t> starts; // of its IRs, from the block's own start
    uint64_t extent = 0;          // bits of its known lengths
};

using Positions = std::vector<uint64_t>;

std::vector<Block> SplitIntoBlocks(const std::vector<int32_t>& lengths) {
    std::vector<Block> blocks(1);
    for (const int32_t length : lengths) {
        blocks.back().starts.push_back(blocks.back().extent);
        if (length < 0)
            blocks.emplace_back();
        else
            blocks.back().extent += static_cast<uint64_t>(length);
    }
    return blocks;
}

bool Fits(const Block& block, uint64_t position, const OmBitVector& stream) {
    for (const uint64_t start : block.starts) {
        const uint64_t first = position + start;
        if (first + 1 >= stream.size() || stream[first] != 1 || stream[first + 1] != 0)
            return false;
    }
    return true;
}

// Every block as low as it can be; empty if there is no solution. The first block begins the
// stream and the last one ends it, both without choice.
Positions PlaceLowest(const std::vector<Block>& blocks, const OmBitVector& stream) {
    Positions positions{0};
    if (!Fits(blocks.front(), 0, stream) || blocks.back().extent > stream.size())
        return {};
    for (size_t index = 1; index + 1 < blocks.size(); ++index) {
        uint64_t position = positions.back() + blocks[index - 1].extent + kShortestLength;
        while (position < stream.size() && !Fits(blocks[index], position, stream))
            ++position;
        if (position >= stream.size())
            return {};
        positions.push_back(position);
    }
    const uint64_t last = stream.size() - blocks.back().extent;
    const uint64_t lowest = positions.back() + blocks[blocks.size() - 2].extent + kShortestLength;
    if (last < lowest || !Fits(blocks.back(), last, stream))
        return {};
    positions.push_back(last);
    return positions;
}

// Whether some block between the first and the last could lie higher than in `lowest`. Looks at
// the blocks from the last to the first and stops at the first that can move.
bool CanMoveUp(const std::vector<Block>& blocks, const Positions& lowest,
               const OmBitVector& stream) {
    for (size_t index = blocks.size() - 2; index > 0; --index) {
        // Every block after this one cannot move, so this is its highest place.
        uint64_t position = lowest[index + 1] - kShortestLength - blocks[index].extent;
        while (position > lowest[index] && !Fits(blocks[index], position, stream))
            --position;
        if (position > lowest[index])
            return true;
    }
    return false;
}

std::vector<int32_t> FillIn(std::vector<int32_t> lengths, const std::vector<Block>& blocks,
                            const Positions& positions) {
    size_t index = 0;
    for (int32_t& length : lengths) {
        if (length >= 0)
            continue;
        const uint64_t start = positions[index] + blocks[index].extent;
        length = static_cast<int32_t>(positions[++index] - start);
    }
    return lengths;
}

} // namespace

std::optional<std::vector<int32_t>> SolveIRLengths(const std::vector<int32_t>& lengths,
                                                   const OmBitVector& stream) {
    const std::vector<Block> blocks = SplitIntoBlocks(lengths);
    if (blocks.size() == 1) {
        const bool fills = blocks[0].extent == stream.size() && Fits(blocks[0], 0, stream);
        return fills ? std::optional(lengths) : std::nullopt;
    }
    const Positions positions = PlaceLowest(blocks, stream);
    if (positions.empty() || CanMoveUp(blocks, positions, stream))
        return std::nullopt;
    return FillIn(lengths, blocks, positions);
}
