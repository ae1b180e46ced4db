#include "jobs/BlankCheckJob.h"

#include "platform/Translation.h"

#include <numeric>

namespace {

std::vector<OmAddressRange> RangesOf(const OmDataImage& image) {
    std::vector<OmAddressRange> ranges;
    ranges.reserve(image.GetChunkCount());
    for (const OmDataChunk& chunk : image.GetChunks())
        ranges.push_back({chunk.address, static_cast<uint32_t>(chunk.bytes.size())});
    return ranges;
}

} // namespace

OmBlankCheckJob::OmBlankCheckJob(OmFlashProgrammer& programmer)
    : OmFlashJob(programmer, kPrepareNone, ForTranslation("Selected flash region is blank.")) {}

bool OmBlankCheckJob::Check() {
    if (data.IsEmpty()) {
        ranges_.resize(1);
        return FindFlashPart(programmer_, part, ranges_.front());
    }
    OmPlacedData placed;
    placed.Place(data);
    ranges_ = RangesOf(placed.Get());
    return CheckDataFit(programmer_, placed.Get());
}

bool OmBlankCheckJob::Run(OmProgressCallback& progress) {
    progress.Begin(std::accumulate(
        ranges_.begin(), ranges_.end(), uint64_t{0},
        [](uint64_t bytes, const OmAddressRange& range) { return bytes + range.size; }));
    OmUnitedProgressCallback united(&progress);
    return programmer_.BlankCheckFlash(united, ranges_);
}
