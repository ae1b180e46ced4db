#include "data/DataFormats.h"

#include "data/DataImage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(DataFormats, ExtensionTellsTheFormat) {
    struct {
        const char* path;
        const char* format; // null: none
    } const cases[] = {
        {"a.srec", "srec"},     {"a.S19", "srec"},  {"a.mot", "srec"}, {"dir.x/a.hex", "hex"},
        {"a.BIN", "raw"},       {"a.b.raw", "raw"}, {"a.dat", "raw"},  {"a", nullptr},
        {"dir.bin/a", nullptr}, {"a.txt", nullptr}, {"", nullptr},     {"a.", nullptr},
    };

    for (const auto& c : cases) {
        const OmDataFormat* format = FindDataFormatOfPath(c.path);
        EXPECT_STREQ(format ? format->name : nullptr, c.format) << c.path;
    }
}

TEST(DataFormats, NameFindsItsRow) {
    for (const OmDataFormat& format : GetDataFormats())
        EXPECT_EQ(FindDataFormat(format.name), &format) << format.name;
    EXPECT_EQ(FindDataFormat("elf"), nullptr);
    EXPECT_EQ(FindDataFormat("S-record"), nullptr);
}

TEST(DataFormats, NoTwoShareAnExtension) {
    std::set<std::string> seen;
    for (const OmDataFormat& format : GetDataFormats()) {
        EXPECT_FALSE(format.extensions.empty()) << format.name;
        for (const char* extension : format.extensions) {
            EXPECT_TRUE(seen.insert(extension).second) << extension;
            EXPECT_EQ(FindDataFormatOfPath(std::string("a.") + extension), &format) << extension;
        }
    }
}

TEST(DataFormats, EachReadsWhatItWrites) {
    const TemporaryFolder folder;
    OmDataImage image;
    image.SetBytes(0, std::vector<uint8_t>{1, 2, 3});
    for (const OmDataFormat& format : GetDataFormats()) {
        const std::string path = folder.Path(format.name);
        ASSERT_TRUE(format.write(path, image)) << format.name;
        OmDataImage back;
        int records = -1;
        std::string error;
        EXPECT_TRUE(format.read(path, back, records, error)) << format.name << error;
        EXPECT_EQ(back, image) << format.name;
    }
}

// The others would never be tried.
TEST(DataFormats, OnlyTheLastTakesAnyFile) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("x", "just text");
    for (const OmDataFormat& format : GetDataFormats()) {
        OmDataImage image;
        int records = -1;
        std::string error;
        EXPECT_EQ(format.read(path, image, records, error), &format == &GetDataFormats().back())
            << format.name;
        EXPECT_EQ(records, 0) << format.name;
    }
}

} // namespace
