#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/MemoryGuard.h"
#include "data/RecordText.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace {

constexpr uint64_t kAddressSpace = uint64_t{1} << 32;
constexpr size_t kBlock = 1024 * 1024;
constexpr char kTooLarge[] = "File is larger than 4 GiB.";

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool Fail(std::string& error, const char* text) {
    error = text;
    return false;
}

// A file that is too large is known before it has filled the memory, a device that never ends when
// the addresses do.
bool ReadBlocks(std::FILE* file, OmDataImage& image, std::string& error) {
    std::vector<uint8_t> block(kBlock);
    uint64_t address = 0;
    while (const size_t read = std::fread(block.data(), 1, block.size(), file)) {
        if (address + read > kAddressSpace)
            return Fail(error, kTooLarge);
        image.SetBytes(static_cast<uint32_t>(address), std::span(block).first(read));
        address += read;
    }
    if (std::ferror(file))
        return Fail(error, kOpenError);
    return address > 0 || Fail(error, "File is empty.");
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
    return GuardMemory(error, [&] { return ReadBlocks(file.get(), image, error); });
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
