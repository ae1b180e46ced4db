#include "app/HexLines.h"

#include "data/DataImage.h"

#include <chrono>
#include <gtest/gtest.h>
#include <numeric>

namespace {

OmDataImage MakeImage(std::initializer_list<std::pair<uint32_t, size_t>> chunks) {
    OmDataImage image;
    for (const auto& [address, size] : chunks)
        image.SetBytes(address, std::vector<uint8_t>(size, 0x41));
    return image;
}

OmHexLines MakeLines(const OmDataImage& image) {
    OmHexLines lines;
    lines.Attach(&image);
    return lines;
}

} // namespace

TEST(HexLines, NothingAttachedHasNoLines) {
    OmHexLines lines;
    lines.Attach(nullptr);
    uint32_t line = 7;
    EXPECT_EQ(lines.GetLineCount(), 0u);
    EXPECT_EQ(lines.GetLineText(0), L"");
    EXPECT_FALSE(lines.FindLine(0, line));
    EXPECT_EQ(line, 0u);
    EXPECT_EQ(lines.GetAddressDigits(), 0u);
}

TEST(HexLines, EmptyImageHasNoLines) {
    const OmDataImage image;
    EXPECT_EQ(MakeLines(image).GetLineCount(), 0u);
}

TEST(HexLines, DetachingForgetsTheImage) {
    const OmDataImage image = MakeImage({{0, 100}});
    OmHexLines lines = MakeLines(image);
    lines.Attach(nullptr);
    EXPECT_EQ(lines.GetLineCount(), 0u);
    EXPECT_EQ(lines.GetLineText(0), L"");
}

TEST(HexLines, CountsTouchedLinesAndTwoBetweenChunks) {
    const struct {
        const char* what;
        OmDataImage image;
        uint32_t lines;
    } cases[] = {
        {"one byte at the end of a line", MakeImage({{0x0F, 1}}), 1},
        {"a full line", MakeImage({{0x10, 16}}), 1},
        {"one more than a full line", MakeImage({{0x10, 17}}), 2},
        {"one byte here, a line there", MakeImage({{0x0F, 17}}), 2},
        {"one byte here, a line and a byte there", MakeImage({{0x0F, 18}}), 3},
        {"two chunks far apart", MakeImage({{0, 1}, {0xFFFF0000, 1}}), 4},
        {"two chunks within one line", MakeImage({{0, 1}, {8, 1}}), 4},
        {"three chunks", MakeImage({{0, 16}, {0x100, 17}, {0x200, 33}}), 1 + 2 + 2 + 2 + 3},
        {"up to the last address", MakeImage({{0xFFFFFFF0, 16}}), 1},
        {"across the last but one line", MakeImage({{0xFFFFFFEF, 17}}), 2},
    };

    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        EXPECT_EQ(MakeLines(test.image).GetLineCount(), test.lines);
    }
}

TEST(HexLines, ShowsBytesInTheirCellsAndCharacters) {
    OmDataImage image;
    image.SetBytes(0x12346, std::vector<uint8_t>{0x41, 0x00});
    EXPECT_EQ(MakeLines(image).GetLineText(0), L"12340:                     41 00                  "
                                               L"                A.        ");
}

TEST(HexLines, ShowsFullLineInFourGroups) {
    OmDataImage image;
    std::vector<uint8_t> bytes(16);
    std::iota(bytes.begin(), bytes.end(), uint8_t{0x4A});
    image.SetBytes(0x1000, bytes);
    EXPECT_EQ(MakeLines(image).GetLineText(0),
              L"1000:  4A 4B 4C 4D  4E 4F 50 51  52 53 54 55  56 57 58 59  JKLMNOPQRSTUVWXY");
}

TEST(HexLines, LastCellOfTheFirstLine) {
    const OmDataImage image = MakeImage({{0x0F, 1}});
    EXPECT_EQ(MakeLines(image).GetLineText(0),
              L"0:                                                  41                 A");
}

TEST(HexLines, AllAddressesHaveTheWidthOfTheHighest) {
    const struct {
        uint32_t address;
        size_t size;
        unsigned digits;
    } cases[] = {{0, 1, 1},      {0x0F, 1, 1},   {0x0F, 2, 2},
                 {0xFFFF, 1, 4}, {0xFFFF, 2, 5}, {0xFFFFFFFF, 1, 8}};

    for (const auto& test : cases)
        EXPECT_EQ(MakeLines(MakeImage({{test.address, test.size}})).GetAddressDigits(), test.digits)
            << std::hex << test.address;
    const OmDataImage image = MakeImage({{0, 1}, {0xFFFF0000, 1}});
    const OmHexLines lines = MakeLines(image);
    EXPECT_EQ(lines.GetLineText(0).substr(0, 13), L"00000000:  41");
    EXPECT_EQ(lines.GetLineText(3).substr(0, 13), L"FFFF0000:  41");
}

TEST(HexLines, LinesBetweenAndBehindChunksAreEmpty) {
    const OmDataImage image = MakeImage({{0, 16}, {0x100, 16}});
    const OmHexLines lines = MakeLines(image);
    EXPECT_EQ(lines.GetLineText(1), L"");
    EXPECT_EQ(lines.GetLineText(2), L"");
    EXPECT_EQ(lines.GetLineText(4), L"");
    EXPECT_EQ(lines.GetLineText(0xFFFFFFFF), L"");
}

TEST(HexLines, ControlCodesShowAsDotsInBothRanges) {
    OmDataImage image;
    image.SetBytes(
        0, std::vector<uint8_t>{0x00, 0x1F, 0x20, 0x7E, 0x7F, 0x80, 0x9F, 0xA1, 0xAD, 0xE9, 0xFF});
    // No byte from A0h up is a character in UTF-8, in which the tests run.
    EXPECT_EQ(MakeLines(image).GetLineText(0).substr(56), L".. ~...\u00A1-\u00E9\u00FF     ");
}

TEST(HexLines, FindsTheLineOfAnAddress) {
    const OmDataImage image = MakeImage({{0x0F, 17}, {0x100, 16}, {0x1000, 32}});
    const OmHexLines lines = MakeLines(image);

    const struct {
        uint32_t address;
        bool found;
        uint32_t line;
    } cases[] = {
        {0x00, false, 0},   {0x0E, false, 0},       {0x0F, true, 0},   {0x10, true, 1},
        {0x1F, true, 1},    {0x20, false, 4},       {0xFF, false, 4},  {0x100, true, 4},
        {0x10F, true, 4},   {0x110, false, 7},      {0x1000, true, 7}, {0x101F, true, 8},
        {0x1020, false, 9}, {0xFFFFFFFF, false, 9},
    };

    ASSERT_EQ(lines.GetLineCount(), 9u);
    for (const auto& test : cases) {
        uint32_t line = 0;
        EXPECT_EQ(lines.FindLine(test.address, line), test.found) << std::hex << test.address;
        EXPECT_EQ(line, test.line) << std::hex << test.address;
    }
}

TEST(HexLines, FindsTheLastAddressOfAll) {
    const OmDataImage image = MakeImage({{0xFFFFFFE0, 32}});
    uint32_t line = 0;
    EXPECT_TRUE(MakeLines(image).FindLine(0xFFFFFFFF, line));
    EXPECT_EQ(line, 1u);
}
