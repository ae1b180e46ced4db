// A folder for the files of one test, removed with all it holds when the test ends.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // Full path of a file in the folder.
    std::string Path(const std::string& name) const { return (path / name).string(); }

    // Writes a file, byte for byte, and returns its path.
    std::string Write(const std::string& name, std::string_view content) const;

    std::filesystem::path path;
};

// A whole file, byte for byte; fails the test if it cannot be read.
std::string ReadWholeFile(const std::string& path);
