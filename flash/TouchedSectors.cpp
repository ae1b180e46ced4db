#include "flash/TouchedSectors.h"

#include "data/DataImage.h"

#include <limits>
#include <utility>

namespace {

class TouchedSectors {
  public:
    TouchedSectors(const OmFlashSectorLayout& sectorMap, uint32_t chips)
        : sectorMap_(sectorMap), chips_(chips) {}

    void Add(uint32_t from, uint32_t to) {
        uint32_t first = 0;
        uint32_t count = 0;
        sectorMap_.GetSectorRange(chips_, from, to, first, count);
        for (uint32_t n = 0; n < count; ++n)
            sectors.insert(sectors.end(), first + n);
    }

    OmSectorRange sectors;

  private:
    const OmFlashSectorLayout& sectorMap_;
    const uint32_t chips_;
};

} // namespace

OmSectorRange FindTouchedSectors(const OmFlashSectorLayout& sectorMap, uint32_t chips,
                                 const OmDataImage& image, uint32_t dataOffset) {
    constexpr uint32_t kTop = std::numeric_limits<uint32_t>::max();
    TouchedSectors touched(sectorMap, chips);
    for (const OmDataChunk& chunk : image.GetChunks()) {
        const uint32_t from = chunk.address + dataOffset;
        const uint32_t to = chunk.LastAddress() + dataOffset;
        // The move may carry a chunk over the top of the address space.
        if (to < from)
            touched.Add(from, kTop);
        touched.Add(to < from ? 0 : from, to);
    }
    return std::move(touched.sectors);
}
