#include "jtag/BitVector.h"

#include <gtest/gtest.h>

namespace {

struct HexCase {
    const char* bits;
    const char* hex;
};

} // namespace

TEST(BitVector, RightmostCharacterOfTextIsElementZero) {
    EXPECT_EQ(BitsFromText("0011"), (OmBitVector{1, 1, 0, 0}));
    EXPECT_EQ(BitsFromText(L"0011"), (OmBitVector{1, 1, 0, 0}));
}

TEST(BitVector, TextKnowsReleasedInBothCasesAndTakesAllElseForUnknown) {
    EXPECT_EQ(BitsFromText("zZxX?1"), (OmBitVector{1, 'X', 'X', 'X', 'Z', 'Z'}));
    EXPECT_EQ(BitsFromText(L"zZxX\u20AC1"), (OmBitVector{1, 'X', 'X', 'X', 'Z', 'Z'}));
}

TEST(BitVector, EmptyTextGivesAnEmptyVector) {
    EXPECT_TRUE(BitsFromText("").empty());
    EXPECT_TRUE(BitsFromText(L"").empty());
    EXPECT_TRUE(BitsFromAscii("").empty());
    EXPECT_EQ(BitsToText({}), "");
}

TEST(BitVector, AsciiGivesTheLowBitOfTheFirstCharacterFirst) {
    // 'A' is 0x41, 'r' is 0x72, 0xE4 checks that a character above 0x7F is not sign-extended.
    EXPECT_EQ(BitsFromAscii("Ar\xE4"), (OmBitVector{1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0,
                                                    1, 1, 1, 0, 0, 0, 1, 0, 0, 1, 1, 1}));
}

TEST(BitVector, TextReadsInEitherOrder) {
    const OmBitVector bits{1, 0, 'Z', 'X', 2};
    EXPECT_EQ(BitsToText(bits), "XXZ01");
    EXPECT_EQ(BitsToText(bits, OmBitOrder::HighestFirst), "XXZ01");
    EXPECT_EQ(BitsToText(bits, OmBitOrder::LowestFirst), "10ZXX");
}

TEST(BitVector, HexReadsLikeANumberWithTheTopGroupZeroFilled) {
    const HexCase cases[] = {
        {"", ""},
        {"1", "1"},
        {"1010", "A"},
        {"11111", "1F"},
        {"0000", "0"},
        {"110111101010110110111110111011110000", "DEADBEEF0"},
        {"01001100110100010111100000011111", "4CD1781F"},
    };
    for (const HexCase& row : cases) {
        std::string hex = "stale";
        EXPECT_TRUE(BitsToHex(BitsFromText(row.bits), hex)) << row.bits;
        EXPECT_EQ(hex, row.hex) << row.bits;
    }
}

TEST(BitVector, HexFailsAtAnElementThatIsNotALevel) {
    std::string hex;
    EXPECT_FALSE(BitsToHex(BitsFromText("1X01"), hex));
    EXPECT_FALSE(BitsToHex(BitsFromText("Z"), hex));
    EXPECT_FALSE(BitsToHex({0, 0, 0, 0, 2}, hex));
}

TEST(BitVector, FindGivesTheFirstPlaceOfAWholeOccurrence) {
    EXPECT_EQ(FindBits({0, 1, 1, 0, 1, 1}, {1, 1}), 1);
    EXPECT_EQ(FindBits({1, 1, 0}, {1, 1}), 0);
    EXPECT_EQ(FindBits({0, 1}, {1, 1}), -1);
    EXPECT_EQ(FindBits({1}, {1, 1}), -1);
    EXPECT_EQ(FindBits({}, {1}), -1);
}

TEST(BitVector, AnEmptyNeedleIsFoundAtOnce) {
    EXPECT_EQ(FindBits({0, 1}, {}), 0);
    EXPECT_EQ(FindBits({}, {}), 0);
}

TEST(BitVector, ResolvingReplacesUnknownAndReleasedAndNothingElse) {
    OmBitVector bits{0, 1, 'X', 'Z', 1};
    ResolveUnknowns(bits, 0);
    EXPECT_EQ(bits, (OmBitVector{0, 1, 0, 0, 1}));
    bits = {'X', 0, 'Z'};
    ResolveUnknowns(bits, 1);
    EXPECT_EQ(bits, (OmBitVector{1, 0, 1}));
}

TEST(BitVector, AppendingAVectorOrACountOfOneValue) {
    OmBitVector bits{0};
    AppendBits(bits, OmBitVector{1, 'X'});
    AppendBits(bits, 3, 1);
    AppendBits(bits, 0, 0);
    EXPECT_EQ(bits, (OmBitVector{0, 1, 'X', 1, 1, 1}));
}

TEST(BitVector, AVectorCanBeAppendedToItself) {
    OmBitVector bits{0, 1, 1};
    bits.shrink_to_fit();
    AppendBits(bits, bits);
    EXPECT_EQ(bits, (OmBitVector{0, 1, 1, 0, 1, 1}));
}
