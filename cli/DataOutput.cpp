#include "cli/DataOutput.h"

#include "bsdl/BsdlData.h"
#include "cli/Commands.h"
#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "platform/FileReplacement.h"
#include "platform/Text.h"

#include <algorithm>
#include <cerrno>

namespace {

struct Extension {
    const char* text;
    OmDataFormat format;
};

constexpr Extension kExtensions[] = {
    {".srec", OmDataFormat::SRecord},  {".mot", OmDataFormat::SRecord},
    {".s19", OmDataFormat::SRecord},   {".s28", OmDataFormat::SRecord},
    {".s37", OmDataFormat::SRecord},   {".hex", OmDataFormat::IntelHex},
    {".ihex", OmDataFormat::IntelHex}, {".bin", OmDataFormat::Raw},
    {".raw", OmDataFormat::Raw},       {".dat", OmDataFormat::Raw},
};

bool Write(const std::string& path, OmDataFormat format, const OmDataImage& image) {
    switch (format) {
    case OmDataFormat::SRecord:
        return WriteSRecordFile(path, image);
    case OmDataFormat::IntelHex:
        return WriteIntelHexFile(path, image);
    case OmDataFormat::Raw:
        break;
    }
    return WriteRawChunk(path, image, 0); // what was read is one piece
}

bool FailToSave(const std::string& path, int error) {
    return Fail(L"Failed to save '" + FromLocal(path) + L"'.\n" + DescribeSystemError(error));
}

} // namespace

std::optional<OmDataFormat> GuessFormat(const std::string& path) {
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    const size_t dot = name.rfind('.');
    if (dot == std::string::npos)
        return std::nullopt;
    const auto* found = std::ranges::find_if(kExtensions, [&](const Extension& extension) {
        return EqualsIgnoringCase(name.substr(dot), extension.text);
    });
    return found == std::end(kExtensions) ? std::nullopt : std::optional(found->format);
}

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

bool SaveData(const std::string& path, OmDataFormat format, const OmDataImage& image) {
    return Write(path, format, image) || FailToSave(path, errno);
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
