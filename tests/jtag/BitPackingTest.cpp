#include "jtag/BitPacking.h"

#include "jtag/BitVector.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes Pack(const OmBitVector& bits) {
    Bytes packed(PackedSize(bits.size()), 0xEE);
    PackBits(bits, packed.data());
    return packed;
}

OmBitVector Unpack(const Bytes& packed, size_t firstBit, size_t count) {
    OmBitVector bits(count, 0xEE);
    UnpackBits(packed.data(), firstBit, bits);
    return bits;
}

// The rightmost character is element 0, so a literal reads like the number that it packs into.
struct PackCase {
    const char* bits;
    Bytes packed;
};

const PackCase kCases[] = {
    {"", {}},
    {"1", {0x01}},
    {"0", {0x00}},
    {"101", {0x05}},
    {"1000000", {0x40}},
    {"10000001", {0x81}},
    {"110000001", {0x81, 0x01}},
    {"1010010111000011", {0xC3, 0xA5}},
    {"00010010001101000101011001111000100110101011", {0xAB, 0x89, 0x67, 0x45, 0x23, 0x01}},
};

} // namespace

TEST(BitPacking, PacksLowBitFirstAndZeroFillsTheLastByte) {
    for (const PackCase& row : kCases)
        EXPECT_EQ(Pack(BitsFromText(row.bits)), row.packed) << row.bits;
}

TEST(BitPacking, UnpacksWhatWasPacked) {
    for (const PackCase& row : kCases) {
        const OmBitVector bits = BitsFromText(row.bits);
        EXPECT_EQ(Unpack(row.packed, 0, bits.size()), bits) << row.bits;
    }
}

TEST(BitPacking, OnlyExactlyOneCountsAsOne) {
    for (int value = 0; value < 256; ++value) {
        for (size_t place = 0; place < 11; ++place) { // in a whole group, and past it
            OmBitVector bits(11, 0);
            bits[place] = static_cast<uint8_t>(value);
            Bytes expected{0, 0};
            if (value == 1)
                expected[place / 8] = static_cast<uint8_t>(1 << place % 8);
            EXPECT_EQ(Pack(bits), expected) << value << " at " << place;
        }
    }
}

TEST(BitPacking, NeighboursOfAnyValueDoNotDisturbAOne) {
    for (int value = 0; value < 256; ++value) {
        OmBitVector bits(8, static_cast<uint8_t>(value));
        bits[3] = 1;
        EXPECT_EQ(Pack(bits), Bytes{static_cast<uint8_t>(value == 1 ? 0xFF : 0x08)}) << value;
    }
}

TEST(BitPacking, EveryByteUnpacksToItsBits) {
    for (int value = 0; value < 256; ++value) {
        OmBitVector expected;
        for (int bit = 0; bit < 8; ++bit)
            expected.push_back(value >> bit & 1);
        EXPECT_EQ(Unpack({static_cast<uint8_t>(value)}, 0, 8), expected);
    }
}

TEST(BitPacking, UnpacksFromAnyBit) {
    const Bytes packed{0xC3, 0xA5, 0x0F};
    const OmBitVector all = BitsFromText("000011111010010111000011");
    for (size_t first = 0; first < 24; ++first) {
        for (size_t count = 0; first + count <= 24; ++count) {
            const auto start = all.begin() + static_cast<ptrdiff_t>(first);
            EXPECT_EQ(Unpack(packed, first, count),
                      OmBitVector(start, start + static_cast<ptrdiff_t>(count)))
                << count << " from " << first;
        }
    }
}

TEST(BitPacking, UnpackingReadsNoByteBeyondItsBits) {
    // Each vector ends with its storage, so that the address sanitizer sees a read past it.
    for (size_t first = 0; first < 8; ++first) {
        Bytes packed(2, 0xFF);
        packed.shrink_to_fit();
        EXPECT_EQ(Unpack(packed, first, 16 - first), OmBitVector(16 - first, 1));
    }
}

TEST(BitPacking, PacksFromAnyBitAndKeepsWhatIsBelow) {
    const OmBitVector all = BitsFromText("111111111010010111000011");
    for (size_t first = 0; first < 24; ++first) {
        for (size_t count = 0; first + count <= 24; ++count) {
            const auto start = all.begin() + static_cast<ptrdiff_t>(first);
            const OmBitVector bits(start, start + static_cast<ptrdiff_t>(count));
            Bytes packed{0xC3, 0xA5, 0xFF, 0xEE};
            PackBits(bits, packed.data(), first);
            OmBitVector expected = all;
            const size_t end = first + count;
            const size_t touched = count == 0 && first % 8 == 0 ? end : (end + 7) / 8 * 8;
            std::fill(expected.begin() + static_cast<ptrdiff_t>(end),
                      expected.begin() + static_cast<ptrdiff_t>(touched), 0);
            EXPECT_EQ(Unpack(packed, 0, 24), expected) << count << " at " << first;
            EXPECT_EQ(packed[3], 0xEE) << count << " at " << first;
        }
    }
}
