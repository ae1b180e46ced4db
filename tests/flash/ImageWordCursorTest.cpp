#include "flash/ImageWordCursor.h"

#include <gtest/gtest.h>

namespace {

OmDataImage ImageOf(std::initializer_list<std::pair<uint32_t, uint8_t>> bytes) {
    OmDataImage image;
    for (const auto& [address, value] : bytes)
        image.SetByte(address, value);
    return image;
}

std::vector<OmFlashWord> Words(const OmDataImage& image, unsigned wordBytes, uint8_t fill) {
    std::vector<OmFlashWord> words;
    OmImageWordCursor cursor(image, wordBytes, fill);
    for (; !cursor.finished; cursor.Advance()) {
        words.push_back({cursor.address, cursor.word});
        EXPECT_EQ(cursor.count, words.size());
    }
    return words;
}

// A run of words of one byte each, value = low byte of the address.
OmDataImage RunOf(uint32_t first, uint32_t count) {
    OmDataImage image;
    for (uint32_t i = 0; i < count; ++i)
        image.SetByte(first + i, static_cast<uint8_t>(first + i));
    return image;
}

std::vector<std::vector<uint32_t>> AddressesOf(const std::vector<OmProgramBlock>& blocks) {
    std::vector<std::vector<uint32_t>> addresses;
    for (const OmProgramBlock& block : blocks) {
        addresses.emplace_back();
        for (const OmFlashWord& word : block)
            addresses.back().push_back(word.address);
    }
    return addresses;
}

} // namespace

void PrintTo(const OmFlashWord& word, std::ostream* stream) {
    *stream << std::hex << word.address << ':' << word.value;
}

TEST(ImageWordCursor, EmptyImageIsFinishedFromTheStart) {
    const OmDataImage image;
    const OmImageWordCursor cursor(image, 2, 0);
    EXPECT_TRUE(cursor.finished);
    EXPECT_EQ(cursor.count, 0u);
}

TEST(ImageWordCursor, WordsTakeTheirBytesLowFirst) {
    const OmDataImage image =
        ImageOf({{8, 0x11}, {9, 0x22}, {10, 0x33}, {11, 0x44}, {12, 0x55}, {13, 0x66}});
    using Words16 = std::vector<OmFlashWord>;
    EXPECT_EQ(Words(image, 1, 0),
              (Words16{{8, 0x11}, {9, 0x22}, {10, 0x33}, {11, 0x44}, {12, 0x55}, {13, 0x66}}));
    EXPECT_EQ(Words(image, 2, 0), (Words16{{4, 0x2211}, {5, 0x4433}, {6, 0x6655}}));
    EXPECT_EQ(Words(image, 4, 0), (Words16{{2, 0x44332211}, {3, 0x00006655}}));
    EXPECT_EQ(Words(image, 3, 0), (Words16{{2, 0x00110000}, {3, 0x443322}, {4, 0x6655}}));
}

TEST(ImageWordCursor, MissingBytesOfAWordAreTheFill) {
    // A hole that starts inside a word, ends inside another, and a last word cut short.
    const OmDataImage image = ImageOf({{1, 0x11}, {2, 0x22}, {9, 0x99}, {12, 0xCC}});
    EXPECT_EQ(Words(image, 4, 0),
              (std::vector<OmFlashWord>{{0, 0x00221100}, {2, 0x00009900}, {3, 0x000000CC}}));
    EXPECT_EQ(Words(image, 4, 0xFF),
              (std::vector<OmFlashWord>{{0, 0xFF2211FF}, {2, 0xFFFF99FF}, {3, 0xFFFFFFCC}}));
}

TEST(ImageWordCursor, ImageEndingAtTheLastAddressEnds) {
    const OmDataImage image = ImageOf({{0xFFFFFFFE, 0x11}, {0xFFFFFFFF, 0x22}});
    EXPECT_EQ(Words(image, 4, 0), (std::vector<OmFlashWord>{{0x3FFFFFFF, 0x22110000}}));
}

TEST(ImageWordCursor, WordCountOfAnImageIsItsBytesRoundedUp) {
    EXPECT_EQ(ImageWordCount(OmDataImage(), 2), 0u);
    EXPECT_EQ(ImageWordCount(RunOf(1, 4), 2), 2u); // touches three words: wanted as it is
    EXPECT_EQ(ImageWordCount(RunOf(0, 5), 2), 3u);
    EXPECT_EQ(ImageWordCount(RunOf(0, 5), 4), 2u);
}

TEST(CollectBlocks, CutsAtGapsAndAtMultiplesOfTheBlockSize) {
    using Blocks = std::vector<std::vector<uint32_t>>;
    const OmDataImage thirties = RunOf(30, 4);
    OmDataImage gap = RunOf(0, 3);
    gap.MergeFrom(RunOf(4, 1));

    const struct {
        const char* what;
        const OmDataImage& image;
        unsigned maxBlocks;
        unsigned wordsPerBlock;
        unsigned total;
        Blocks blocks;
    } cases[] = {
        {"limit of 32", thirties, 9, 32, 4, {{30, 31}, {32, 33}}},
        {"one block only", thirties, 1, 32, 2, {{30, 31}}},
        {"gap", gap, 9, 32, 4, {{0, 1, 2}, {4}}},
        {"gap, one block", gap, 1, 32, 3, {{0, 1, 2}}},
        {"single words", gap, 9, 1, 4, {{0}, {1}, {2}, {4}}},
        {"two single words", gap, 2, 1, 2, {{0}, {1}}},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        OmImageWordCursor cursor(row.image, 1, 0);
        std::vector<OmProgramBlock> blocks;
        EXPECT_EQ(CollectBlocks(cursor, blocks, row.maxBlocks, row.wordsPerBlock), row.total);
        EXPECT_EQ(AddressesOf(blocks), row.blocks);
    }
}

TEST(CollectBlocks, GoesOnWithTheWordLeftInTheCursor) {
    const OmDataImage image = RunOf(30, 4);
    OmImageWordCursor cursor(image, 1, 0);
    std::vector<OmProgramBlock> blocks;
    CollectBlocks(cursor, blocks, 1, 32);
    EXPECT_FALSE(cursor.finished);
    blocks.clear();
    EXPECT_EQ(CollectBlocks(cursor, blocks, 1, 32), 2u);
    EXPECT_EQ(AddressesOf(blocks), (std::vector<std::vector<uint32_t>>{{32, 33}}));
    EXPECT_TRUE(cursor.finished);
    EXPECT_EQ(CollectBlocks(cursor, blocks, 1, 32), 0u);
}
