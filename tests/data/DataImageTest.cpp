#include "data/DataImage.h"

#include "tests/data/ImageText.h"

#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace {

using Bytes = std::vector<uint8_t>;

// Bytes by address, -1 where there is none; chunks that touch or overlap fail.
std::vector<int> ArrayOf(const OmDataImage& image, size_t size) {
    std::vector<int> array(size, -1);
    uint64_t end = 0;
    for (const OmDataChunk& chunk : image.GetChunks()) {
        EXPECT_FALSE(chunk.bytes.empty());
        EXPECT_TRUE(end == 0 || chunk.address > end);
        std::copy(chunk.bytes.begin(), chunk.bytes.end(), array.begin() + chunk.address);
        end = chunk.End();
    }
    return array;
}

TEST(DataImage, ByteIntoTheGapJoinsTwoChunks) {
    OmDataImage image;
    image.SetByte(5, 0x10);
    image.SetByte(7, 0x12);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{5, {0x10}}, {7, {0x12}}}));

    image.SetByte(6, 0x11);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{5, {0x10, 0x11, 0x12}}}));
}

TEST(DataImage, ByteInsideAChunkIsOverwritten) {
    OmDataImage image = MakeImage({{100, {1, 2, 3}}, {200, {4}}});
    image.SetByte(101, 9);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{100, {1, 9, 3}}, {200, {4}}}));
}

TEST(DataImage, ByteRightBelowTheFirstChunkJoinsIt) {
    OmDataImage image = MakeImage({{8, {2, 3}}});
    image.SetByte(7, 1);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{7, {1, 2, 3}}}));
}

TEST(DataImage, ChunksComeInAddressOrder) {
    const OmDataImage image = MakeImage({{30, {3}}, {10, {1}}, {40, {4}}, {20, {2}}});
    EXPECT_EQ(ChunksOf(image),
              (std::vector<OmDataChunk>{{10, {1}}, {20, {2}}, {30, {3}}, {40, {4}}}));
    EXPECT_EQ(image.GetLastChunk(), (OmDataChunk{40, {4}}));
}

TEST(DataImage, NewImageIsEmpty) {
    const OmDataImage image;
    EXPECT_TRUE(image.IsEmpty());
    EXPECT_EQ(image.GetChunkCount(), 0u);
    EXPECT_EQ(image.GetByteCount(), 0u);
}

struct RunCase {
    const char* name;
    OmDataChunk run; // written over {10: 1 2 3 4} and {20: 5 6 7 8}
    std::vector<OmDataChunk> expected;
};

TEST(DataImage, RunsLieInEveryWayOverTwoChunks) {
    const RunCase cases[] = {
        {"below", {2, {9, 9}}, {{2, {9, 9}}, {10, {1, 2, 3, 4}}, {20, {5, 6, 7, 8}}}},
        {"touching the first from below",
         {8, {9, 9}},
         {{8, {9, 9, 1, 2, 3, 4}}, {20, {5, 6, 7, 8}}}},
        {"over the start", {9, {9, 9}}, {{9, {9, 9, 2, 3, 4}}, {20, {5, 6, 7, 8}}}},
        {"inside", {11, {9, 9}}, {{10, {1, 9, 9, 4}}, {20, {5, 6, 7, 8}}}},
        {"exactly", {10, {9, 9, 9, 9}}, {{10, {9, 9, 9, 9}}, {20, {5, 6, 7, 8}}}},
        {"over the end", {13, {9, 9}}, {{10, {1, 2, 3, 9, 9}}, {20, {5, 6, 7, 8}}}},
        {"appended", {14, {9, 9}}, {{10, {1, 2, 3, 4, 9, 9}}, {20, {5, 6, 7, 8}}}},
        {"in the gap", {16, {9, 9}}, {{10, {1, 2, 3, 4}}, {16, {9, 9}}, {20, {5, 6, 7, 8}}}},
        {"touching the second", {18, {9, 9}}, {{10, {1, 2, 3, 4}}, {18, {9, 9, 5, 6, 7, 8}}}},
        {"filling the gap",
         {14, {9, 9, 9, 9, 9, 9}},
         {{10, {1, 2, 3, 4, 9, 9, 9, 9, 9, 9, 5, 6, 7, 8}}}},
        {"overlapping both",
         {13, {9, 9, 9, 9, 9, 9, 9, 9, 9}},
         {{10, {1, 2, 3, 9, 9, 9, 9, 9, 9, 9, 9, 9, 7, 8}}}},
        {"covering the second and more",
         {19, {9, 9, 9, 9, 9, 9, 9}},
         {{10, {1, 2, 3, 4}}, {19, {9, 9, 9, 9, 9, 9, 9}}}},
        {"after", {30, {9, 9}}, {{10, {1, 2, 3, 4}}, {20, {5, 6, 7, 8}}, {30, {9, 9}}}},
        {"nothing", {12, {}}, {{10, {1, 2, 3, 4}}, {20, {5, 6, 7, 8}}}},
    };
    for (const RunCase& c : cases) {
        SCOPED_TRACE(c.name);
        OmDataImage image = MakeImage({{10, {1, 2, 3, 4}}, {20, {5, 6, 7, 8}}});
        image.SetBytes(c.run.address, c.run.bytes);
        EXPECT_EQ(ChunksOf(image), c.expected);
    }
}

TEST(DataImage, RunOverManyChunksLeavesOne) {
    OmDataImage image;
    for (uint32_t address = 0; address < 1000; address += 2)
        image.SetByte(address, 1);
    EXPECT_EQ(image.GetChunkCount(), 500u);
    image.SetBytes(0, Bytes(1000, 7));
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{0, Bytes(1000, 7)}}));
    // What was joined is found again at its new place.
    image.SetByte(500, 8);
    EXPECT_EQ(image.GetChunkCount(), 1u);
}

TEST(DataImage, BytesBehindTheLastAddressAreDropped) {
    OmDataImage image;
    image.SetBytes(0xFFFFFFFE, Bytes{1, 2, 3, 4});
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{0xFFFFFFFE, {1, 2}}}));
    EXPECT_EQ(image.GetHighestAddress(), 0xFFFFFFFFu);
    EXPECT_EQ(image.GetLastChunk().End(), 0x100000000u);
}

TEST(DataImage, TheTwoEndsOfTheAddressSpaceDoNotTouch) {
    const OmDataImage image = MakeImage({{0xFFFFFFFF, {1}}, {0, {2}}});
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{0, {2}}, {0xFFFFFFFF, {1}}}));
}

TEST(DataImage, TakenBytesLieWhereSetBytesLie) {
    OmDataImage image;
    Bytes bytes{1, 2, 3};
    const uint8_t* place = bytes.data();
    image.TakeBytes(10, std::move(bytes));
    EXPECT_EQ(image.GetLastChunk().bytes.data(), place) << "copied";
    image.TakeBytes(13, {4});
    image.TakeBytes(20, {5});
    image.SetByte(11, 9);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{10, {1, 9, 3, 4}}, {20, {5}}}));

    OmDataImage atTheEnd;
    atTheEnd.TakeBytes(0xFFFFFFFF, {1, 2});
    EXPECT_EQ(ChunksOf(atTheEnd), (std::vector<OmDataChunk>{{0xFFFFFFFF, {1}}}));
    OmDataImage nothing;
    nothing.TakeBytes(5, {});
    EXPECT_TRUE(nothing.IsEmpty());
}

TEST(DataImage, MergeTakesEveryByteOfTheOther) {
    OmDataImage image = MakeImage({{0, {1, 1, 1}}, {10, {1}}});
    image.MergeFrom(MakeImage({{2, {2, 2}}, {11, {2}}, {20, {2}}}));
    EXPECT_EQ(ChunksOf(image),
              (std::vector<OmDataChunk>{{0, {1, 1, 2, 2}}, {10, {1, 2}}, {20, {2}}}));
    EXPECT_EQ(image.GetByteCount(), 7u);
}

TEST(DataImage, CopyIsIndependent) {
    OmDataImage image = MakeImage({{10, {1}}, {20, {2}}});
    OmDataImage copy = image;
    copy.SetByte(21, 3);
    image.SetByte(9, 0);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{9, {0, 1}}, {20, {2}}}));
    EXPECT_EQ(ChunksOf(copy), (std::vector<OmDataChunk>{{10, {1}}, {20, {2, 3}}}));
    EXPECT_NE(image, copy);
    copy = image;
    EXPECT_EQ(image, copy);
}

TEST(DataImage, MovedFromImageIsEmptyAndUsable) {
    OmDataImage image = MakeImage({{10, {1}}});
    OmDataImage moved = std::move(image);
    image.SetByte(11, 2);
    moved.SetByte(11, 3);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{11, {2}}}));
    EXPECT_EQ(ChunksOf(moved), (std::vector<OmDataChunk>{{10, {1, 3}}}));
}

TEST(DataImage, ClearRemovesAll) {
    OmDataImage image = MakeImage({{10, {1}}});
    image.ClearImage();
    EXPECT_TRUE(image.IsEmpty());
    image.SetByte(11, 2);
    EXPECT_EQ(ChunksOf(image), (std::vector<OmDataChunk>{{11, {2}}}));
}

TEST(DataImage, ShiftMovesEveryChunk) {
    const OmDataImage image = MakeImage({{0x10, {1, 2}}, {0x20, {3}}});
    EXPECT_EQ(ChunksOf(image.ShiftedBy(0x1000)),
              (std::vector<OmDataChunk>{{0x1010, {1, 2}}, {0x1020, {3}}}));
    EXPECT_EQ(ChunksOf(image.ShiftedBy(0xFFFFFFF0)),
              (std::vector<OmDataChunk>{{0, {1, 2}}, {0x10, {3}}}));
}

TEST(DataImage, ShiftWrapsAChunkAroundTheEnd) {
    const OmDataImage image = MakeImage({{0x10, {1, 2, 3}}, {0x20, {4}}});
    EXPECT_EQ(ChunksOf(image.ShiftedBy(0xFFFFFFEE)),
              (std::vector<OmDataChunk>{{0, {3}}, {0xE, {4}}, {0xFFFFFFFE, {1, 2}}}));
}

// A quarter of a million separate bytes, written downwards: a walk from the first chunk or a
// capacity of many kilobytes for each chunk would show as minutes or gigabytes.
TEST(DataImage, ManyChunksMayComeInAnyOrder) {
    OmDataImage image;
    constexpr uint32_t kChunks = 250000;
    for (uint32_t n = kChunks; n-- > 0;)
        image.SetByte(n * 7919 % kChunks * 2, static_cast<uint8_t>(n));
    EXPECT_EQ(image.GetChunkCount(), kChunks);
    EXPECT_EQ(image.GetHighestAddress(), 2 * kChunks - 2);
}

// Eight megabytes that arrive downwards, sixteen bytes at a time: moving the whole for every run
// would move two terabytes.
TEST(DataImage, DataThatArrivesDownwardsIsOneChunk) {
    constexpr uint32_t kRuns = 1 << 19;
    OmDataImage image;
    for (uint32_t run = kRuns; run-- > 0;)
        image.SetBytes(run * 16, Bytes(16, static_cast<uint8_t>(run)));
    ASSERT_EQ(image.GetChunkCount(), 1u);
    EXPECT_EQ(image.GetByteCount(), kRuns * 16u);
    for (uint32_t run = 0; run < kRuns; ++run)
        ASSERT_EQ(image.GetLastChunk().bytes[run * 16 + 15], run & 0xFF);
}

// The image against one plain array, under random runs and looks.
TEST(DataImage, AgreesWithAnArrayUnderRandomRuns) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        OmDataImage image;
        std::vector<int> model(300, -1);
        for (int write = 0; write < 40; ++write) {
            const uint32_t address = random() % 280;
            Bytes run(random() % 20);
            for (size_t index = 0; index < run.size(); ++index)
                model[address + index] = run[index] = static_cast<uint8_t>(random());
            image.SetBytes(address, run);
            if (random() % 4 == 0) {
                ASSERT_EQ(ArrayOf(image, model.size()), model);
            }
        }
        const OmDataImage copy = image;
        ASSERT_EQ(ArrayOf(copy, model.size()), model);
    }
}

} // namespace
