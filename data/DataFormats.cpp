#include "data/DataFormats.h"

#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "platform/Letters.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

constexpr const char* kSRecordExtensions[] = {"srec", "mot", "S19"};
constexpr const char* kIntelHexExtensions[] = {"hex"};
constexpr const char* kRawExtensions[] = {"bin", "raw", "dat"};

bool ReadAnyFile(const std::string& path, OmDataImage& image, int& records, std::string& error) {
    records = 0;
    return ReadRawFile(path, image, error);
}

bool WriteFirstChunk(const std::string& path, const OmDataImage& image) {
    return WriteRawChunk(path, image, 0);
}

constexpr OmDataFormat kFormats[] = {
    {"srec", ForTranslation("S-record"), kSRecordExtensions, true, ReadSRecordFile,
     WriteSRecordFile},
    {"hex", ForTranslation("Intel HEX"), kIntelHexExtensions, true, ReadIntelHexFile,
     WriteIntelHexFile},
    {"raw", ForTranslation("Raw binary"), kRawExtensions, false, ReadAnyFile, WriteFirstChunk},
};

bool HasExtension(const OmDataFormat& format, std::string_view extension) {
    return std::ranges::any_of(format.extensions,
                               [&](const char* own) { return EqualsIgnoringCase(own, extension); });
}

template <typename Condition>
const OmDataFormat* FindIf(Condition condition) {
    const auto* found = std::ranges::find_if(kFormats, condition);
    return found == std::end(kFormats) ? nullptr : found;
}

} // namespace

std::span<const OmDataFormat> GetDataFormats() {
    return kFormats;
}

const OmDataFormat* FindDataFormat(std::string_view name) {
    return FindIf([&](const OmDataFormat& format) { return name == format.name; });
}

const OmDataFormat* FindDataFormatOfPath(const std::string& path) {
    const std::string name = path.substr(path.find_last_of("/\\") + 1);
    const size_t dot = name.rfind('.');
    if (dot == std::string::npos)
        return nullptr;
    return FindIf(
        [&](const OmDataFormat& format) { return HasExtension(format, name.substr(dot + 1)); });
}

bool ReadDataFile(const std::string& path, OmDataImage& image, std::string& error) {
    for (const OmDataFormat& format : GetDataFormats()) {
        image.ClearImage();
        error.clear();
        int records = 0;
        if (format.read(path, image, records, error))
            return true;
        if (records > 0)
            return false; // damaged, and not of another format
    }
    return false;
}
