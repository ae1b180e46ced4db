#include "flash/TouchedSectors.h"

#include "data/DataImage.h"

#include <gtest/gtest.h>

namespace {

// Sectors 0 to 3 of 4 KiB, 4 and 5 of 64 KiB.
const OmFlashSectorLayout kLayout{{{4, 0x1000}, {2, 0x10000}}};

OmDataImage MakeImage(std::initializer_list<OmDataChunk> chunks) {
    OmDataImage image;
    for (const OmDataChunk& chunk : chunks)
        image.SetBytes(chunk.address, chunk.bytes);
    return image;
}

std::vector<uint8_t> Bytes(size_t count) {
    return std::vector<uint8_t>(count, 0x5A);
}

} // namespace

TEST(TouchedSectors, EmptyImageTouchesNothing) {
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, OmDataImage(), 0), OmSectorRange());
}

TEST(TouchedSectors, ChunksInOneSectorCountOnce) {
    const OmDataImage image = MakeImage({{0x10, Bytes(4)}, {0x800, Bytes(4)}});
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, image, 0), OmSectorRange({0}));
}

TEST(TouchedSectors, ChunkOverABorderTouchesBothSectors) {
    const OmDataImage image = MakeImage({{0x1FFF, Bytes(2)}, {0x13FFF, Bytes(2)}});
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, image, 0), OmSectorRange({1, 2, 4, 5}));
}

TEST(TouchedSectors, TwoChipsDoubleTheReachOfASector) {
    const OmDataImage image = MakeImage({{0x1FFF, Bytes(2)}});
    EXPECT_EQ(FindTouchedSectors(kLayout, 2, image, 0), OmSectorRange({0, 1}));
}

TEST(TouchedSectors, OffsetMovesTheData) {
    const OmDataImage image = MakeImage({{0x100000, Bytes(0x1001)}});
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, image, 0), OmSectorRange());
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, image, 0x1000u - 0x100000u), OmSectorRange({1, 2}));
}

TEST(TouchedSectors, DataMovedOverTheTopOfTheAddressSpaceGoesOnAtItsBottom) {
    const OmDataImage image = MakeImage({{0x1000, Bytes(0x20)}});
    EXPECT_EQ(FindTouchedSectors(kLayout, 1, image, 0xFFFFFFF0u - 0x1000u), OmSectorRange({0}));
}
