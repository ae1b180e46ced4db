#include "data/DataImage.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr uint64_t kAddressSpace = uint64_t{1} << 32;

// Overwrites what the chunk already holds and appends the rest; the run starts inside the chunk or
// right behind it.
void StoreInChunk(OmDataChunk& chunk, uint32_t address, std::span<const uint8_t> bytes) {
    const size_t offset = address - chunk.address;
    const size_t inside = std::min(bytes.size(), chunk.bytes.size() - offset);
    std::copy_n(bytes.begin(), inside, chunk.bytes.begin() + static_cast<ptrdiff_t>(offset));
    chunk.bytes.insert(chunk.bytes.end(), bytes.begin() + static_cast<ptrdiff_t>(inside),
                       bytes.end());
}

} // namespace

OmDataImage::OmDataImage(const OmDataImage& other) : chunks_(other.chunks_) {
    for (auto chunk = chunks_.begin(); chunk != chunks_.end(); ++chunk)
        index_.emplace_hint(index_.end(), chunk->address, chunk);
}

OmDataImage::OmDataImage(OmDataImage&& other) noexcept {
    chunks_.swap(other.chunks_);
    index_.swap(other.index_);
}

OmDataImage& OmDataImage::operator=(OmDataImage other) noexcept {
    chunks_.swap(other.chunks_);
    index_.swap(other.index_);
    return *this;
}

void OmDataImage::SetByte(uint32_t address, uint8_t value) {
    SetBytes(address, {&value, 1});
}

void OmDataImage::SetBytes(uint32_t address, std::span<const uint8_t> bytes) {
    bytes =
        bytes.first(static_cast<size_t>(std::min<uint64_t>(bytes.size(), kAddressSpace - address)));
    if (bytes.empty())
        return;
    Chunks::iterator chunk = FindChunkAtOrBelow(address);
    if (chunk != chunks_.end() && chunk->End() >= address)
        StoreInChunk(*chunk, address, bytes);
    else
        chunk = InsertChunk(address, bytes);
    AbsorbFollowing(chunk);
}

void OmDataImage::MergeFrom(const OmDataImage& other) {
    for (const OmDataChunk& chunk : other.chunks_)
        SetBytes(chunk.address, chunk.bytes);
}

void OmDataImage::ClearImage() {
    chunks_.clear();
    index_.clear();
}

uint64_t OmDataImage::GetByteCount() const {
    uint64_t count = 0;
    for (const OmDataChunk& chunk : chunks_)
        count += chunk.bytes.size();
    return count;
}

OmDataImage OmDataImage::ShiftedBy(uint32_t offset) const {
    OmDataImage shifted;
    for (const OmDataChunk& chunk : chunks_) {
        const uint32_t address = chunk.address + offset; // wraps
        const std::span<const uint8_t> bytes = chunk.bytes;
        const uint64_t room = kAddressSpace - address;
        shifted.SetBytes(address, bytes);
        if (bytes.size() > room)
            shifted.SetBytes(0, bytes.subspan(static_cast<size_t>(room)));
    }
    return shifted;
}

// The chunk with the highest start address that is not above `address`, or the end. The last chunk
// is tried first: data files mostly ascend.
OmDataImage::Chunks::iterator OmDataImage::FindChunkAtOrBelow(uint32_t address) {
    if (!chunks_.empty() && chunks_.back().address <= address)
        return std::prev(chunks_.end());
    const auto above = index_.upper_bound(address);
    return above == index_.begin() ? chunks_.end() : std::prev(above)->second;
}

OmDataImage::Chunks::iterator OmDataImage::InsertChunk(uint32_t address,
                                                       std::span<const uint8_t> bytes) {
    const auto above = index_.upper_bound(address);
    const Chunks::iterator place = above == index_.end() ? chunks_.end() : above->second;
    const Chunks::iterator chunk =
        chunks_.insert(place, OmDataChunk{address, {bytes.begin(), bytes.end()}});
    index_.emplace_hint(above, address, chunk);
    return chunk;
}

// Joins the chunks that `chunk` has grown onto or over; where both hold a byte, `chunk` has the
// newer one.
void OmDataImage::AbsorbFollowing(Chunks::iterator chunk) {
    for (auto next = std::next(chunk); next != chunks_.end() && next->address <= chunk->End();
         next = chunks_.erase(next)) {
        if (next->End() > chunk->End()) {
            const auto covered = static_cast<ptrdiff_t>(chunk->End() - next->address);
            chunk->bytes.insert(chunk->bytes.end(), next->bytes.begin() + covered,
                                next->bytes.end());
        }
        index_.erase(next->address);
    }
}
