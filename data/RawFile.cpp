#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/MemoryGuard.h"
#include "data/RecordText.h"
#include "platform/Memory.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

namespace {

constexpr uint64_t kAddressSpace = uint64_t{1} << 32;
constexpr size_t kBlock = size_t{256} * 1024;
constexpr const char* kTooLarge = ForTranslation("File is larger than 4 GiB.");

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool Fail(std::string& error, const char* text) {
    error = text;
    return false;
}

// Memory for the whole file is taken once. What has no size, such as a device, is read until the
// addresses end.
bool ReadBytes(std::FILE* file, uint64_t expectedSize, OmDataImage& image, std::string& error) {
    std::vector<uint8_t> bytes;
    bytes.reserve(static_cast<size_t>(expectedSize));
    PreferLargePages(bytes.data(), bytes.capacity());
    std::vector<uint8_t> block(kBlock);
    while (const size_t read = std::fread(block.data(), 1, block.size(), file)) {
        if (bytes.size() + read > kAddressSpace)
            return Fail(error, kTooLarge);
        bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<ptrdiff_t>(read));
    }
    if (std::ferror(file))
        return Fail(error, kOpenError);
    if (bytes.empty())
        return Fail(error, ForTranslation("File is empty."));
    image.TakeBytes(0, std::move(bytes));
    return true;
}

} // namespace

bool ReadRawFile(const std::string& path, OmDataImage& image, std::string& error) {
    const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return Fail(error, kOpenError);
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::error_code noSize; // a device has none
    const uint64_t size = std::filesystem::file_size(PathFromLocal(path), noSize);
    if (!noSize && size > kAddressSpace)
        return Fail(error, kTooLarge);
    return GuardMemory(error,
                       [&] { return ReadBytes(file.get(), noSize ? 0 : size, image, error); });
}

bool WriteRawChunk(const std::string& path, const OmDataImage& image, unsigned chunk) {
    if (chunk >= image.GetChunkCount())
        return false;
    const std::vector<uint8_t>& bytes =
        std::next(image.GetChunks().begin(), static_cast<ptrdiff_t>(chunk))->bytes;
    OmFileReplacement file(PathFromLocal(path), OmFileReplacement::Mode::Binary);
    file.Write({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return file.Commit();
}
