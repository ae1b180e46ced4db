#include "data/DataImage.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr uint64_t kAddressSpace = uint64_t{1} << 32;

// Overwrites what the chunk already holds and appends the rest; the run starts inside the chunk or
// right after it.
void StoreInChunk(OmDataChunk& chunk, uint32_t address, std::span<const uint8_t> bytes) {
    const size_t offset = address - chunk.address;
    const size_t inside = std::min(bytes.size(), chunk.bytes.size() - offset);
    std::copy_n(bytes.begin(), inside, chunk.bytes.begin() + static_cast<ptrdiff_t>(offset));
    chunk.bytes.insert(chunk.bytes.end(), bytes.begin() + static_cast<ptrdiff_t>(inside),
                       bytes.end());
}

} // namespace

OmDataImage::OmDataImage(const OmDataImage& other)
    : chunks_(other.chunks_), touching_(other.touching_) {
    for (auto chunk = chunks_.begin(); chunk != chunks_.end(); ++chunk)
        index_.emplace_hint(index_.end(), chunk->address, chunk);
}

OmDataImage::OmDataImage(OmDataImage&& other) noexcept {
    Swap(other);
}

OmDataImage& OmDataImage::operator=(OmDataImage other) noexcept {
    Swap(other);
    return *this;
}

void OmDataImage::Swap(OmDataImage& other) noexcept {
    chunks_.swap(other.chunks_);
    index_.swap(other.index_);
    std::swap(touching_, other.touching_);
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
    SettleFollowing(chunk);
}

void OmDataImage::TakeBytes(uint32_t address, std::vector<uint8_t> bytes) {
    if (!chunks_.empty() || bytes.empty() || bytes.size() > kAddressSpace - address)
        return SetBytes(address, bytes);
    chunks_.push_back({address, std::move(bytes)});
    index_.emplace(address, chunks_.begin());
}

void OmDataImage::MergeFrom(const OmDataImage& other) {
    for (const OmDataChunk& chunk : other.GetChunks())
        SetBytes(chunk.address, chunk.bytes);
}

void OmDataImage::ClearImage() {
    chunks_.clear();
    index_.clear();
    touching_ = false;
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

// Removes the overlap of `chunk`, which holds the newer bytes, with what follows, and joins it with
// the first chunk that sticks out or touches. Only the smaller of the two is ever moved: a larger
// one is left in place, with the newer bytes written over its head, until somebody looks.
void OmDataImage::SettleFollowing(Chunks::iterator chunk) {
    auto next = std::next(chunk);
    while (next != chunks_.end() && next->End() <= chunk->End()) {
        index_.erase(next->address);
        next = chunks_.erase(next);
    }
    if (next == chunks_.end() || next->address > chunk->End())
        return;
    const auto overlap = static_cast<ptrdiff_t>(chunk->End() - next->address);
    if (next->bytes.size() > chunk->bytes.size()) {
        std::copy(chunk->bytes.end() - overlap, chunk->bytes.end(), next->bytes.begin());
        chunk->bytes.resize(chunk->bytes.size() - static_cast<size_t>(overlap));
        touching_ = true;
        return;
    }
    chunk->bytes.insert(chunk->bytes.end(), next->bytes.begin() + overlap, next->bytes.end());
    index_.erase(next->address);
    const auto after = chunks_.erase(next);
    touching_ |= after != chunks_.end() && after->address == chunk->End();
}

void OmDataImage::JoinTouching() const {
    if (!touching_)
        return;
    for (auto chunk = chunks_.begin(); chunk != chunks_.end(); ++chunk)
        JoinWithFollowing(chunk);
    touching_ = false;
}

// One growth for the whole run, so that every byte moves once.
void OmDataImage::JoinWithFollowing(Chunks::iterator chunk) const {
    uint64_t end = chunk->End();
    auto last = std::next(chunk);
    for (; last != chunks_.end() && last->address == end; ++last)
        end = last->End();
    chunk->bytes.reserve(static_cast<size_t>(end - chunk->address));
    for (auto next = std::next(chunk); next != last; next = chunks_.erase(next)) {
        chunk->bytes.insert(chunk->bytes.end(), next->bytes.begin(), next->bytes.end());
        index_.erase(next->address);
    }
}
