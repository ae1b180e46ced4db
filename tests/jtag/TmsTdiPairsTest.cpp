#include "jtag/TmsTdiPairs.h"

#include <gtest/gtest.h>

namespace {

std::vector<uint8_t> BytesOf(const OmTmsTdiPairs& pairs) {
    return {pairs.Bytes().begin(), pairs.Bytes().end()};
}

} // namespace

TEST(TmsTdiPairs, FourPairsAByteWithTdiBelowTms) {
    OmTmsTdiPairs pairs;
    EXPECT_EQ(pairs.GetPosition(), 0U);
    EXPECT_TRUE(pairs.Bytes().empty());
    pairs.Put(false, true);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x01}));
    pairs.Put(true, false);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x09}));
    pairs.Put(true, true);
    pairs.Put(false, false);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x39}));
    pairs.Put(false, true);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x39, 0x01}));
    EXPECT_EQ(pairs.GetPosition(), 5U);
}

TEST(TmsTdiPairs, RestartForgetsAll) {
    OmTmsTdiPairs pairs;
    pairs.Put(true, true);
    pairs.Restart(100);
    EXPECT_EQ(pairs.GetPosition(), 0U);
    pairs.Put(false, true);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x01}));
}

TEST(TmsTdiPairs, PathsHoldTdiHigh) {
    OmTmsTdiPairs pairs;
    pairs.PutPath(kTapResetPath);
    EXPECT_EQ(pairs.GetPosition(), 6U);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0xFF, 0x07}));
}

TEST(TmsTdiPairs, LastBitGoesWithTmsHigh) {
    OmTmsTdiPairs pairs;
    pairs.PutBits(std::vector<uint8_t>{1, 0, 'X', 0});
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x81}));
    pairs.PutBits(std::vector<uint8_t>{1});
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x81, 0x03}));
}

TEST(TmsTdiPairs, RunsFromEveryPlaceInAByte) {
    const OmBitVector bits{1, 0, 'X', 1, 1, 1, 0, 0, 1, 0, 1};

    const struct {
        int ahead; // pairs of TMS and TDI high
        std::vector<uint8_t> bytes;
    } rows[] = {
        {0, {0x41, 0x05, 0x31}},
        {1, {0x07, 0x15, 0xC4}},
        {2, {0x1F, 0x54, 0x10, 0x03}},
        {3, {0x7F, 0x50, 0x41, 0x0C}},
    };

    for (const auto& row : rows) {
        OmTmsTdiPairs pairs;
        for (int i = 0; i < row.ahead; ++i)
            pairs.Put(true, true);
        pairs.PutBits(bits);
        EXPECT_EQ(pairs.GetPosition(), 11U + static_cast<size_t>(row.ahead));
        EXPECT_EQ(std::vector<uint8_t>(pairs.Bytes().begin(), pairs.Bytes().end()), row.bytes)
            << row.ahead;
    }
}
