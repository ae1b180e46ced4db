#include "cli/DataOutput.h"

#include "data/DataFormats.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(DataOutput, SavesInTheFormatAsked) {
    const TemporaryFolder folder;
    OmDataImage image;
    image.SetBytes(0x12, std::vector<uint8_t>{1});
    ASSERT_TRUE(SaveData(folder.Path("s"), *FindDataFormat("srec"), image));
    ASSERT_TRUE(SaveData(folder.Path("h"), *FindDataFormat("hex"), image));
    ASSERT_TRUE(SaveData(folder.Path("r"), *FindDataFormat("raw"), image));
    EXPECT_EQ(ReadWholeFile(folder.Path("s")), "S0030000FC\nS104001201E8\nS9030000FC\n");
    EXPECT_EQ(ReadWholeFile(folder.Path("h")), ":0100120001EC\n:00000001FF\n");
    EXPECT_EQ(ReadWholeFile(folder.Path("r")), "\x01");
}

TEST(DataOutput, FailureIsToldWithThePath) {
    RecordingUserInterface user;
    OmDataImage image;
    image.SetByte(0, 1);
    user.Expect(L"Failed to save '/missing/folder/x.bin'.\nNo such file or directory.", kErrorBox);
    EXPECT_FALSE(SaveData("/missing/folder/x.bin", *FindDataFormat("raw"), image));
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
