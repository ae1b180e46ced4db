#include "cli/DataOutput.h"

#include "cli/Commands.h"
#include "data/DataFormats.h"
#include "data/DataImage.h"
#include "platform/FileReplacement.h"
#include "platform/Text.h"

#include <algorithm>
#include <cerrno>

namespace {

bool FailToSave(const std::string& path, int error) {
    return Fail(L"Failed to save '" + FromLocal(path) + L"'.\n" + DescribeSystemError(error));
}

} // namespace

bool CheckOutput(const std::string& path) {
    const std::filesystem::path target = PathFromLocal(path);
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(target, error);
    // A pipe would take this for the end.
    if (std::filesystem::is_other(status))
        return true;
    OmFileReplacement probe(target, OmFileReplacement::Mode::Binary);
    return probe.Write({}) || FailToSave(path, errno);
}

bool SaveData(const std::string& path, const OmDataFormat& format, const OmDataImage& image) {
    return format.write(path, image) || FailToSave(path, errno);
}

OmDataImage CropImage(const OmDataImage& image, uint32_t start, uint32_t size) {
    const uint64_t end = uint64_t{start} + size;
    OmDataImage cropped;
    for (const OmDataChunk& chunk : image.GetChunks()) {
        const uint64_t from = std::max<uint64_t>(chunk.address, start);
        const uint64_t to = std::min(chunk.End(), end);
        if (from < to)
            cropped.SetBytes(static_cast<uint32_t>(from),
                             std::span(chunk.bytes).subspan(from - chunk.address, to - from));
    }
    return cropped;
}
