#include "fuzz/MemoryFile.h"

#include "fuzz/Check.h"

#include <filesystem>
#include <sys/mman.h>
#include <unistd.h>

namespace {

class ScratchFolder {
  public:
    ScratchFolder() {
        char name[] = "/dev/shm/velflash-fuzz-XXXXXX";
        Check(mkdtemp(name) != nullptr, "a scratch folder can be made");
        path = name;
    }

    ~ScratchFolder() {
        std::error_code ignored; // nothing to be done about it
        std::filesystem::remove_all(path, ignored);
    }

    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path;
};

} // namespace

MemoryFile::MemoryFile(const uint8_t* data, size_t size)
    : descriptor_(memfd_create("input", 0)), path_("/proc/self/fd/" + std::to_string(descriptor_)) {
    Check(descriptor_ >= 0, "a file in memory can be made");
    Check(write(descriptor_, data, size) == static_cast<ssize_t>(size), "it takes the input");
}

MemoryFile::~MemoryFile() {
    close(descriptor_);
}

std::string ScratchPath() {
    static const ScratchFolder folder;
    return folder.path + "/written";
}
