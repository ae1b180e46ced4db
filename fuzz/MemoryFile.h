// An input as a file, for code that reads files by name; it never touches a disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class MemoryFile {
  public:
    MemoryFile(const uint8_t* data, size_t size);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const std::string& Path() const { return path_; }

  private:
    int descriptor_;
    std::string path_;
};

// A name in a folder of this run alone, in memory, for code that replaces files beside their
// targets. The folder goes with the process.
std::string ScratchPath();
