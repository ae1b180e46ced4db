// The commands that read the flash.
#include "cli/Commands.h"
#include "cli/ConsoleProgress.h"
#include "cli/DataOutput.h"
#include "cli/FlashAction.h"

namespace {

std::vector<OmAddressRange> GetChunkRanges(const OmDataImage& image) {
    std::vector<OmAddressRange> ranges;
    for (const OmDataChunk& chunk : image.GetChunks())
        ranges.push_back({chunk.address, static_cast<uint32_t>(chunk.bytes.size())});
    return ranges;
}

bool GetRangesToCheck(const OmCliOptions& options, const OmDataImage& image,
                      std::vector<OmAddressRange>& ranges) {
    if (!image.IsEmpty()) {
        ranges = GetChunkRanges(image);
        return CheckDataFits(image);
    }
    ranges.resize(1);
    return GetFlashRange(options, ranges.front());
}

} // namespace

bool RunRead(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmAddressRange range;
    if (!CheckOutput(options.outputFile) || !programmer.Prepare(kPrepareNone) ||
        !GetFlashRange(options, range))
        return false;
    progress.Begin(range.size);
    OmDataImage image;
    if (!programmer.ReadFlash(progress, range.start, range.size, image))
        return false;
    progress.OnFinish();
    const OmDataImage wanted = CropImage(image, range.start, range.size);
    if (wanted.GetByteCount() != range.size)
        return Fail(L"The flash was not read as a whole.");
    return SaveData(options.outputFile, *options.format, wanted);
}

bool RunBlankCheck(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmDataImage image;
    std::vector<OmAddressRange> ranges;
    if ((!options.dataFile.empty() && !LoadActionData(options, image)) ||
        !programmer.Prepare(kPrepareNone) || !GetRangesToCheck(options, image, ranges))
        return false;
    progress.Begin(image.IsEmpty() ? ranges.front().size : image.GetByteCount());
    OmUnitedProgressCallback united(&progress);
    if (!programmer.BlankCheckFlash(united, ranges))
        return false;
    progress.OnFinish();
    ReportSuccess(L"Selected flash region is blank.");
    return true;
}

bool RunVerify(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmDataImage image;
    if (!LoadActionData(options, image) || !programmer.Prepare(kPrepareNone) ||
        !CheckDataFits(image))
        return false;
    progress.Begin(image.GetByteCount());
    OmUnitedProgressCallback united(&progress);
    if (!programmer.VerifyFlash(united, image))
        return false;
    progress.OnFinish();
    ReportSuccess(L"Data verification completed successfully.");
    return true;
}
