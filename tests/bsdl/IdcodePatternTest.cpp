#include "bsdl/IdcodePattern.h"

#include <gtest/gtest.h>

namespace {

const std::string kExact = "01011001001000110100000000101111";
const std::string kOtherVersion = "01111001001000110100000000101111"; // bit 29
const std::string kThirdVersion = "11011001001000110100000000101111"; // bit 31
const std::string kAnyVersion = "XXXX1001001000110100000000101111";
const std::string kOtherPart = "01010001001000110100000000101111";  // bit 27
const std::string kOtherMaker = "01011001001000110100000000101101"; // bit 1

std::string Best(const std::vector<std::string>& patterns) {
    return MatchIdcode(BitsFromText(kExact), patterns).pattern;
}

} // namespace

TEST(IdcodePattern, FitsWithFixedBitsAndWildcards) {
    EXPECT_EQ(Best({kExact}), kExact);
    EXPECT_EQ(Best({kAnyVersion}), kAnyVersion);
    EXPECT_EQ(Best({std::string(32, '-')}), std::string(32, '-'));
    EXPECT_EQ(Best({kOtherPart}), "");
    EXPECT_EQ(Best({kOtherMaker}), "");
    EXPECT_EQ(Best({}), "");
}

TEST(IdcodePattern, VersionAloneMayDiffer) {
    EXPECT_EQ(Best({kOtherVersion}), kOtherVersion);
    EXPECT_EQ(Best({kOtherVersion, kThirdVersion}), kOtherVersion);
    EXPECT_EQ(Best({kThirdVersion, kOtherVersion}), kThirdVersion);
    EXPECT_EQ(Best({kOtherPart, kThirdVersion}), kThirdVersion);
}

TEST(IdcodePattern, ExactFitWinsWhereverItStands) {
    EXPECT_EQ(Best({kOtherVersion, kExact}), kExact);
    EXPECT_EQ(Best({kExact, kOtherVersion}), kExact);
    EXPECT_EQ(Best({kOtherVersion, kAnyVersion, kExact}), kAnyVersion);
}

TEST(IdcodePattern, OfAnotherLengthIsCountedAndPassedOver) {
    const OmBitVector idcode = BitsFromText(kExact);
    const OmIdcodeMatch match = MatchIdcode(idcode, {"01", kExact + "0", "", kExact, "01"});
    EXPECT_EQ(match.pattern, kExact);
    EXPECT_EQ(match.badPatterns, 3);
}

TEST(IdcodePattern, UnknownBitsOfTheDeviceFitWildcardsOnly) {
    OmBitVector idcode = BitsFromText(kExact);
    idcode[30] = kBitUnknown;
    EXPECT_EQ(MatchIdcode(idcode, {kAnyVersion}).pattern, kAnyVersion);
    idcode[5] = kBitUnknown;
    EXPECT_EQ(MatchIdcode(idcode, {kAnyVersion}).pattern, "");
    EXPECT_EQ(MatchIdcode({}, {kAnyVersion}).pattern, "");
}
