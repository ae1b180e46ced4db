#include "cli/DataOutput.h"

#include "data/DataFiles.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(DataOutput, ExtensionTellsTheFormat) {
    struct {
        const char* path;
        std::optional<OmDataFormat> format;
    } const cases[] = {
        {"a.srec", OmDataFormat::SRecord},
        {"a.S19", OmDataFormat::SRecord},
        {"a.mot", OmDataFormat::SRecord},
        {"dir.x/a.hex", OmDataFormat::IntelHex},
        {"a.BIN", OmDataFormat::Raw},
        {"a.b.raw", OmDataFormat::Raw},
        {"a.dat", OmDataFormat::Raw},
        {"a", std::nullopt},
        {"dir.bin/a", std::nullopt},
        {"a.txt", std::nullopt},
        {"", std::nullopt},
        {"a.", std::nullopt},
    };

    for (const auto& c : cases)
        EXPECT_TRUE(GuessFormat(c.path) == c.format) << c.path;
}

TEST(DataOutput, SavesInTheFormatAsked) {
    const TemporaryFolder folder;
    OmDataImage image;
    image.SetBytes(0x12, std::vector<uint8_t>{1});
    ASSERT_TRUE(SaveData(folder.Path("s"), OmDataFormat::SRecord, image));
    ASSERT_TRUE(SaveData(folder.Path("h"), OmDataFormat::IntelHex, image));
    ASSERT_TRUE(SaveData(folder.Path("r"), OmDataFormat::Raw, image));
    EXPECT_EQ(ReadWholeFile(folder.Path("s")), "S0030000FC\nS104001201E8\nS9030000FC\n");
    EXPECT_EQ(ReadWholeFile(folder.Path("h")), ":0100120001EC\n:00000001FF\n");
    EXPECT_EQ(ReadWholeFile(folder.Path("r")), "\x01");
}

TEST(DataOutput, FailureIsToldWithThePath) {
    RecordingUserInterface user;
    OmDataImage image;
    image.SetByte(0, 1);
    user.Expect(L"Failed to save '/missing/folder/x.bin'.\nNo such file or directory.", kErrorBox);
    EXPECT_FALSE(SaveData("/missing/folder/x.bin", OmDataFormat::Raw, image));
}

TEST(DataOutput, CropKeepsTheAskedBytesAlone) {
    OmDataImage image;
    image.SetBytes(0x10, std::vector<uint8_t>{1, 2, 3, 4});
    image.SetBytes(0x20, std::vector<uint8_t>{5, 6});
    OmDataImage expected;
    expected.SetBytes(0x11, std::vector<uint8_t>{2, 3, 4});
    expected.SetByte(0x20, 5);
    EXPECT_EQ(CropImage(image, 0x11, 0x10), expected);
    EXPECT_TRUE(CropImage(image, 0x30, 0xFFFFFFFF).IsEmpty());
}

} // namespace
