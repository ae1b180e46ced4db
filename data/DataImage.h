// The data that the user sees, programs and saves: bytes keyed by 32-bit addresses, held as chunks.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <span>
#include <vector>

// A run of bytes without a gap; never empty inside an image.
struct OmDataChunk {
    uint32_t address = 0; // of the first byte
    std::vector<uint8_t> bytes;

    uint32_t LastAddress() const { return address + static_cast<uint32_t>(bytes.size() - 1); }

    // First address past the chunk; 64 bits, as a chunk may end at FFFFFFFFh.
    uint64_t End() const { return uint64_t{address} + bytes.size(); }

    bool operator==(const OmDataChunk&) const = default;
};

// Chunks in ascending address order that neither overlap nor touch. A value type. Nothing fails;
// memory exhaustion throws std::bad_alloc as any container does.
class OmDataImage {
  public:
    OmDataImage() = default;
    OmDataImage(const OmDataImage& other);
    OmDataImage(OmDataImage&& other) noexcept;
    OmDataImage& operator=(OmDataImage other) noexcept;
    ~OmDataImage() = default;

    // Overwrites, appends to a chunk or starts a new one; joins two chunks when their gap closes.
    void SetByte(uint32_t address, uint8_t value);

    // The same for a run of bytes, at a cost that does not depend on how it lies: the fast road of
    // the file readers and of flash reads. Addresses do not wrap: bytes past FFFFFFFFh are
    // dropped.
    void SetBytes(uint32_t address, std::span<const uint8_t> bytes);

    // The same for bytes that the caller does not need any more: an empty image keeps them without
    // a copy.
    void TakeBytes(uint32_t address, std::vector<uint8_t> bytes);

    // Takes over every byte of `other`.
    void MergeFrom(const OmDataImage& other);

    void ClearImage();

    bool IsEmpty() const { return chunks_.empty(); }

    size_t GetChunkCount() const { return GetChunks().size(); }

    const std::list<OmDataChunk>& GetChunks() const {
        JoinTouching();
        return chunks_;
    }

    // Bytes held in all chunks.
    uint64_t GetByteCount() const;

    // These two only for an image that is not empty.
    const OmDataChunk& GetLastChunk() const { return GetChunks().back(); }

    uint32_t GetHighestAddress() const { return GetLastChunk().LastAddress(); }

    // A copy whose addresses are all moved by `offset`, modulo 2^32.
    OmDataImage ShiftedBy(uint32_t offset) const;

    bool operator==(const OmDataImage& other) const { return GetChunks() == other.GetChunks(); }

  private:
    using Chunks = std::list<OmDataChunk>;

    void Swap(OmDataImage& other) noexcept;
    Chunks::iterator FindChunkAtOrBelow(uint32_t address);
    Chunks::iterator InsertChunk(uint32_t address, std::span<const uint8_t> bytes);
    void SettleFollowing(Chunks::iterator chunk);
    void JoinTouching() const;
    void JoinWithFollowing(Chunks::iterator chunk) const;

    // Chunks may touch, but never overlap, until somebody looks: data that arrives downwards would
    // otherwise move a growing chunk for every record.
    mutable Chunks chunks_;
    // Chunks by start address: files of many thousand chunks must not cost a walk for each record.
    mutable std::map<uint32_t, Chunks::iterator> index_;
    mutable bool touching_ = false; // some chunks may touch
};
