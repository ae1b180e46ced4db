#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdlib.h>

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velflash-XXXXXX").string();
    const char* made = mkdtemp(pattern.data());
    if (!made)
        throw std::filesystem::filesystem_error("mkdtemp",
                                                std::error_code(errno, std::generic_category()));
    path = made;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored; // a leftover folder in the temporary directory does no harm
    std::filesystem::remove_all(path, ignored);
}

std::string TemporaryFolder::Write(const std::string& name, std::string_view content) const {
    const std::string file = Path(name);
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    EXPECT_TRUE(stream.good()) << "cannot write " << file;
    return file;
}

std::string ReadWholeFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.good()) << "cannot read " << path;
    return {std::istreambuf_iterator<char>(stream), {}};
}
