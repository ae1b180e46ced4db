#include "setup/SectorLayout.h"

#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

constexpr uint64_t kMax32 = std::numeric_limits<uint32_t>::max();
constexpr uint64_t kMaxChipBytes = uint64_t{1} << 32;
constexpr uint64_t kMaxSectors = uint64_t{1} << 20;

// How many of the group's sectors start at or below array address `to`, given that the group
// itself does. Worked out and not counted: a group may hold four billion sectors.
uint64_t CountStartsUpTo(uint64_t groupStart, const OmSectorGroup& group, uint32_t chips,
                         uint32_t to) {
    const uint64_t step = uint64_t{group.Size} * chips;
    return step == 0 ? group.Count : std::min<uint64_t>(group.Count, (to - groupStart) / step + 1);
}

// Sector indexes from `first` to `last` without a gap.
struct IndexRun {
    uint32_t first;
    uint32_t last;
};

std::vector<IndexRun> MergeRuns(const OmSectorRange& indexes, uint64_t sectorCount) {
    std::vector<IndexRun> runs;
    for (const uint32_t index : indexes) {
        if (index >= sectorCount)
            break;
        if (!runs.empty() && index - runs.back().last <= 1)
            runs.back().last = index;
        else
            runs.push_back({index, index});
    }
    return runs;
}

} // namespace

uint64_t OmFlashSectorLayout::GetSectorCount() const {
    uint64_t count = 0;
    for (const OmSectorGroup& group : groups)
        count += group.Count;
    return count;
}

uint64_t OmFlashSectorLayout::GetSizeBytes() const {
    uint64_t size = 0;
    for (const OmSectorGroup& group : groups)
        size += uint64_t{group.Count} * group.Size;
    return size;
}

bool OmFlashSectorLayout::FitsAChip() const {
    return GetSectorCount() <= kMaxSectors && GetSizeBytes() <= kMaxChipBytes;
}

void OmFlashSectorLayout::GetSectorRange(uint32_t chips, uint32_t from, uint32_t to,
                                         uint32_t& first, uint32_t& count) const {
    count = 0;
    uint64_t start = 0;
    uint64_t index = 0;
    for (const OmSectorGroup& group : groups) {
        if (start > to)
            break;
        const uint64_t end = start + uint64_t{group.Count} * group.Size * chips;
        if (from < end) {
            uint64_t sector = 0;
            if (from >= start) {
                sector = (from - start) / (uint64_t{group.Size} * chips);
                first = static_cast<uint32_t>(index + sector);
            }
            const uint64_t after = CountStartsUpTo(start, group, chips, to);
            if (after > sector)
                count += static_cast<uint32_t>(after - sector);
        }
        start = end;
        index += group.Count;
    }
}

// A sector that starts beyond 32 bits exists on no chip and counts as beyond the end.
bool OmFlashSectorLayout::GetSector(uint32_t index, uint32_t& offset, uint32_t& size) const {
    uint64_t start = 0;
    uint64_t before = 0;
    for (const OmSectorGroup& group : groups) {
        if (index < before + group.Count) {
            const uint64_t position = start + (index - before) * group.Size;
            offset = static_cast<uint32_t>(position);
            size = group.Size;
            return position <= kMax32;
        }
        start += uint64_t{group.Count} * group.Size;
        before += group.Count;
    }
    return false;
}

void OmFlashSectorLayout::ToOffsets(const OmSectorRange& indexes, OmSectorRange& offsets) const {
    offsets.clear();
    uint32_t offset = 0;
    uint32_t size = 0;
    for (const uint32_t index : indexes) {
        if (GetSector(index, offset, size))
            offsets.insert(offsets.end(), offset);
    }
}

std::wstring OmFlashSectorLayout::Describe(const OmSectorRange& indexes, uint32_t chips) const {
    if (indexes.empty() || groups.empty())
        return {};
    const auto count = static_cast<unsigned>(indexes.size());
    std::wstring text =
        OmFormat(TranslatedPlural("1 sector: ", "%u sectors: ", count).c_str(), count);
    const wchar_t* separator = L"";
    for (const IndexRun& run : MergeRuns(indexes, GetSectorCount())) {
        uint32_t firstOffset = 0;
        uint32_t lastOffset = 0;
        uint32_t size = 0;
        if (!GetSector(run.first, firstOffset, size) || !GetSector(run.last, lastOffset, size))
            continue;
        const unsigned long long firstByte = uint64_t{firstOffset} * chips;
        const unsigned long long lastByte = (uint64_t{lastOffset} + size) * chips - 1;
        text += OmFormat(L"%ls%05llXh - %05llXh", separator, firstByte, lastByte);
        separator = L", ";
    }
    return text;
}

void OmFlashSectorLayout::Insert(uint32_t count, uint32_t size, int position) {
    const bool inside = position >= 0 && static_cast<size_t>(position) < groups.size();
    groups.insert(inside ? groups.begin() + position : groups.end(), {count, size});
    Normalise();
}

void OmFlashSectorLayout::Erase(size_t index) {
    if (index >= groups.size())
        return;
    groups.erase(groups.begin() + static_cast<ptrdiff_t>(index));
    Normalise();
}

void OmFlashSectorLayout::SwapWithNext(size_t index) {
    if (groups.size() < 2 || index >= groups.size() - 1)
        return;
    std::swap(groups[index], groups[index + 1]);
    Normalise();
}

bool OmFlashSectorLayout::Normalise() {
    std::vector<OmSectorGroup> merged;
    for (const OmSectorGroup& group : groups) {
        if (!merged.empty() && merged.back().Size == group.Size)
            merged.back().Count = static_cast<uint32_t>(
                std::min<uint64_t>(kMax32, uint64_t{merged.back().Count} + group.Count));
        else
            merged.push_back(group);
    }
    const bool changed = merged.size() != groups.size();
    groups = std::move(merged);
    return changed;
}
