#include "jtag/JtagBitWriter.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<uint8_t>;

} // namespace

TEST(JtagBitWriter, SetsAndClearsEveryBitItPasses) {
    Bytes tms(2, 0xFF);
    Bytes tdi(2, 0x00);
    OmJtagBitWriter writer(tms.data(), tdi.data());
    EXPECT_EQ(writer.GetPosition(), 0U);
    writer.Put(false, true);
    writer.Put(true, false);
    writer.Put(false, true);
    EXPECT_EQ(writer.GetPosition(), 3U);
    EXPECT_EQ(tms[0], 0xFA);
    EXPECT_EQ(tdi[0], 0x05);
}

TEST(JtagBitWriter, LastBitGoesWithTmsHigh) {
    Bytes tms(2, 0xAA);
    Bytes tdi(2, 0xAA);
    OmJtagBitWriter writer(tms.data(), tdi.data());
    writer.PutPath({3, 0b001});
    writer.PutBits(Bytes{1, 0, 1, 1, 0, 0, 'X', 1});
    writer.PutPath({2, 0b01});
    EXPECT_EQ(writer.GetPosition(), 13U);
    EXPECT_EQ(tms[0], 0x01);
    EXPECT_EQ(tms[1] & 0x1F, 0x0C);
    EXPECT_EQ(tdi[0], 0x6F);
    EXPECT_EQ(tdi[1] & 0x1F, 0x1C);
}

TEST(JtagBitWriter, SingleBitIsTheLastBit) {
    Bytes tms(1, 0x00);
    Bytes tdi(1, 0xFF);
    OmJtagBitWriter writer(tms.data(), tdi.data());
    writer.PutBits(Bytes{0});
    EXPECT_EQ(writer.GetPosition(), 1U);
    EXPECT_EQ(tms[0], 0x01);
    EXPECT_EQ(tdi[0], 0xFE);
}

TEST(JtagBitWriter, LongRunsAtEveryOffsetClearTms) {
    for (unsigned offset = 0; offset < 8; ++offset) {
        Bytes tms(6, 0xFF);
        Bytes tdi(6, 0x00);
        OmJtagBitWriter writer(tms.data(), tdi.data());
        for (unsigned i = 0; i < offset; ++i)
            writer.Put(true, false);
        writer.PutBits(Bytes(33, 1));
        for (unsigned i = 0; i < offset + 33; ++i) {
            const bool inRun = i >= offset && i < offset + 32;
            EXPECT_EQ(tms[i / 8] >> i % 8 & 1, inRun ? 0 : 1) << offset << " " << i;
            EXPECT_EQ(tdi[i / 8] >> i % 8 & 1, i >= offset ? 1 : 0) << offset << " " << i;
        }
    }
}
