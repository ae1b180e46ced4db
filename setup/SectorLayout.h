// The sectors of a flash chip as groups of equal size, and sets of sectors.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

// An ordered set of sector indexes, or of sector start offsets in bytes of one chip.
using OmSectorRange = std::set<uint32_t>;

struct OmSectorGroup {
    uint32_t Count = 0; // sectors
    uint32_t Size = 0;  // bytes of each sector in one chip

    bool operator==(const OmSectorGroup&) const = default;
};

// Groups in address order; after any edit no two neighbours have the same size. The global sector
// index counts through the groups from 0. A sector's address in the array is its chip offset times
// the chip count.
class OmFlashSectorLayout {
  public:
    bool IsEmpty() const { return groups.empty(); }

    uint64_t GetSectorCount() const;

    // Bytes of one chip in all groups.
    uint64_t GetSizeBytes() const;

    // False if no chip can have such a layout: its addresses would not fit 32 bits, or it has more
    // sectors than could ever be listed. For layouts from outside.
    bool FitsAChip() const;

    // The run of sector indexes touching the array bytes `from` to `to` (both included); `count` is
    // 0 if there is none, and then `first` is undefined.
    void GetSectorRange(uint32_t chips, uint32_t from, uint32_t to, uint32_t& first,
                        uint32_t& count) const;

    // Start offset and size in bytes of one chip; false for an index beyond the end.
    bool GetSector(uint32_t index, uint32_t& offset, uint32_t& size) const;

    // Start offsets of the indexed sectors; an index beyond the layout gives none.
    void ToOffsets(const OmSectorRange& indexes, OmSectorRange& offsets) const;

    // "4 sectors: 00000h - 02FFFh, 07000h - 07FFFh" in array addresses; empty for an empty set or
    // layout.
    std::wstring Describe(const OmSectorRange& indexes, uint32_t chips) const;

    // Inserts before `position`, or at the end if there is no such group; then normalises.
    void Insert(uint32_t count, uint32_t size, int position);
    void Erase(size_t index);
    void SwapWithNext(size_t index);

    // Merges neighbours of equal size; true if any merged.
    bool Normalise();

    bool operator==(const OmFlashSectorLayout&) const = default;

    std::vector<OmSectorGroup> groups;
};
