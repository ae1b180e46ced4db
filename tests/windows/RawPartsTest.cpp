#include "app/RawParts.h"

#include "data/DataImage.h"
#include "platform/Text.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr OmMessageStyle kSplitBox{OmButtons::OkCancel, OmIcon::Question};
constexpr wchar_t kSplitText[] =
    L"Unlike S-record and Intel HEX, raw binary file format stores only\n"
    L"one continuous uninterrupted piece of data.\n\n"
    L"Press OK to save each chunk of data as a separate binary file.\n\n"
    L"Files to save:\n";

class RawParts : public testing::Test {
  protected:
    RawParts() {
        image_.SetBytes(0, std::vector<uint8_t>{1, 2, 3});
        image_.SetBytes(0x10000, std::vector<uint8_t>{4, 5});
    }

    std::wstring Path(const std::string& name) const { return FromLocal(folder_.Path(name)); }

    void ExpectSplit(const std::wstring& names, OmAnswer answer) {
        user_.Expect(kSplitText + names, kSplitBox, answer);
    }

    bool Exists(const std::string& name) const {
        return std::filesystem::exists(folder_.path / name);
    }

    TemporaryFolder folder_;
    RecordingUserInterface user_;
    OmDataImage image_;
};

} // namespace

TEST_F(RawParts, NoChunksSucceedWithoutAFile) {
    EXPECT_TRUE(SaveRawParts(Path("a.bin"), OmDataImage()));
    EXPECT_FALSE(Exists("a.bin"));
}

TEST_F(RawParts, OneChunkIsOneFileOfThatName) {
    OmDataImage image;
    image.SetBytes(0x100, std::vector<uint8_t>{7, 8});
    EXPECT_TRUE(SaveRawParts(Path("a.bin"), image));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.bin")), "\x07\x08");
    EXPECT_EQ(user_.busyCount, 1);
}

TEST_F(RawParts, OneChunkThatCannotBeWrittenIsTold) {
    OmDataImage image;
    image.SetBytes(0x100, std::vector<uint8_t>{7, 8});
    user_.Expect(L"Failed to save '" + Path("no/a.bin") + L"'.", kErrorBox);
    EXPECT_FALSE(SaveRawParts(Path("no/a.bin"), image));
}

TEST_F(RawParts, EachChunkGetsAFileNamedByItsAddress) {
    ExpectSplit(Path("a.part1of2.00000.bin") + L"\n" + Path("a.part2of2.10000.bin"), OmAnswer::Ok);
    EXPECT_TRUE(SaveRawParts(Path("a.bin"), image_));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.part1of2.00000.bin")), "\x01\x02\x03");
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.part2of2.10000.bin")), "\x04\x05");
    EXPECT_FALSE(Exists("a.bin"));
}

TEST_F(RawParts, ExtensionBeginsAtTheLastDotOfTheWholePath) {
    const std::wstring folder = FromLocal(folder_.path.string());
    ExpectSplit(folder + L"/dir.part1of2.00000.x/a\n" + folder + L"/dir.part2of2.10000.x/a",
                OmAnswer::Cancel);
    EXPECT_FALSE(SaveRawParts(Path("dir.x/a"), image_));
}

TEST_F(RawParts, NameWithoutADotHasNoExtension) {
    ExpectSplit(L"a.part1of2.00000\na.part2of2.10000", OmAnswer::Cancel);
    EXPECT_FALSE(SaveRawParts(L"a", image_));
}

TEST_F(RawParts, CancelWritesNothing) {
    ExpectSplit(Path("a.part1of2.00000.bin") + L"\n" + Path("a.part2of2.10000.bin"),
                OmAnswer::Cancel);
    EXPECT_FALSE(SaveRawParts(Path("a.bin"), image_));
    EXPECT_FALSE(Exists("a.part1of2.00000.bin"));
}

TEST_F(RawParts, OneExistingFileIsAskedAbout) {
    folder_.Write("a.part2of2.10000.bin", "old");
    ExpectSplit(Path("a.part1of2.00000.bin") + L"\n" + Path("a.part2of2.10000.bin"), OmAnswer::Ok);
    user_.Expect(Path("a.part2of2.10000.bin") +
                     L" already exists.\nDo you want to replace the existing file?",
                 kLossQuestionBox, OmAnswer::No);
    EXPECT_FALSE(SaveRawParts(Path("a.bin"), image_));
    EXPECT_FALSE(Exists("a.part1of2.00000.bin"));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.part2of2.10000.bin")), "old");
}

TEST_F(RawParts, SeveralExistingFilesAreAskedAboutAtOnce) {
    folder_.Write("a.part1of2.00000.bin", "old");
    folder_.Write("a.part2of2.10000.bin", "old");
    const std::wstring names = Path("a.part1of2.00000.bin") + L"\n" + Path("a.part2of2.10000.bin");
    ExpectSplit(names, OmAnswer::Ok);
    user_.Expect(L"These files already exist:\n" + names +
                     L"\n\nDo you want to replace the existing files?",
                 kLossQuestionBox, OmAnswer::Yes);
    EXPECT_TRUE(SaveRawParts(Path("a.bin"), image_));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.part2of2.10000.bin")), "\x04\x05");
}

TEST_F(RawParts, GoesOnAfterAFailureAndTellsTheOne) {
    // A folder of that name cannot be replaced by a file.
    std::filesystem::create_directories(folder_.path / "a.part1of2.00000.bin" / "inside");
    ExpectSplit(Path("a.part1of2.00000.bin") + L"\n" + Path("a.part2of2.10000.bin"), OmAnswer::Ok);
    user_.Expect(L"Failed to save '" + Path("a.part1of2.00000.bin") + L"'.", kErrorBox);
    EXPECT_FALSE(SaveRawParts(Path("a.bin"), image_));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.part2of2.10000.bin")), "\x04\x05");
}

TEST_F(RawParts, SeveralFailuresAreToldTogether) {
    const std::wstring names =
        Path("no/a.part1of2.00000.bin") + L"\n" + Path("no/a.part2of2.10000.bin");
    ExpectSplit(names, OmAnswer::Ok);
    user_.Expect(L"Failed to save:\n" + names, kErrorBox);
    EXPECT_FALSE(SaveRawParts(Path("no/a.bin"), image_));
}
