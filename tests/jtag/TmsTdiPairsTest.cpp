#include "jtag/TmsTdiPairs.h"

#include <gtest/gtest.h>

namespace {

std::vector<uint8_t> BytesOf(const OmTmsTdiPairs& pairs) {
    return {pairs.Bytes().begin(), pairs.Bytes().end()};
}

} // namespace

TEST(TmsTdiPairs, FourPairsAByteWithTdiBelowTms) {
    OmTmsTdiPairs pairs;
    EXPECT_EQ(pairs.Count(), 0U);
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
    EXPECT_EQ(pairs.Count(), 5U);
}

TEST(TmsTdiPairs, RestartForgetsAll) {
    OmTmsTdiPairs pairs;
    pairs.Put(true, true);
    pairs.Restart(100);
    EXPECT_EQ(pairs.Count(), 0U);
    pairs.Put(false, true);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x01}));
}

TEST(TmsTdiPairs, PathsHoldTdiHigh) {
    OmTmsTdiPairs pairs;
    pairs.PutPath(kTapResetPath);
    EXPECT_EQ(pairs.Count(), 6U);
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0xFF, 0x07}));
}

TEST(TmsTdiPairs, LastBitGoesWithTmsHigh) {
    OmTmsTdiPairs pairs;
    pairs.PutBits(std::vector<uint8_t>{1, 0, 'X', 0});
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x81}));
    pairs.PutBits(std::vector<uint8_t>{1});
    EXPECT_EQ(BytesOf(pairs), (std::vector<uint8_t>{0x81, 0x03}));
}
