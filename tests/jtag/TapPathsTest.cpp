#include "jtag/TapPaths.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::string TmsOf(OmTapPath path) {
    std::string tms;
    for (unsigned clock = 0; clock < path.clocks; ++clock)
        tms += path.Tms(clock) ? '1' : '0';
    return tms;
}

struct PathCase {
    OmScanRegister which;
    int from;
    const char* tms;
};

constexpr PathCase kPaths[] = {
    {OmScanRegister::Data, 0, "0100"},        {OmScanRegister::Data, 1, "100"},
    {OmScanRegister::Data, 2, "10"},          {OmScanRegister::Data, -1, "10"},
    {OmScanRegister::Data, 99, "10"},         {OmScanRegister::Instruction, 0, "01100"},
    {OmScanRegister::Instruction, 1, "1100"}, {OmScanRegister::Instruction, 2, "10"},
    {OmScanRegister::Instruction, -1, "10"},
};

} // namespace

TEST(TapPaths, WalksToTheShiftState) {
    for (const PathCase& row : kPaths)
        EXPECT_EQ(TmsOf(GetPathToShift(row.which, row.from)), row.tms) << row.from;
}

TEST(TapPaths, WalksFromExit1ToTheEnd) {
    EXPECT_EQ(TmsOf(GetPathFromExit1(1)), "10");
    EXPECT_EQ(TmsOf(GetPathFromExit1(0)), "0");
    EXPECT_EQ(TmsOf(GetPathFromExit1(2)), "0");
}

TEST(TapPaths, ResetIsFiveOnesAndAZero) {
    EXPECT_EQ(TmsOf(kTapResetPath), "111110");
}

TEST(TapPaths, StartingAtResetIsOneLowClockBeforeStartingAtIdle) {
    for (const auto which : {OmScanRegister::Data, OmScanRegister::Instruction})
        EXPECT_EQ(TmsOf(GetPathToShift(which, 0)), "0" + TmsOf(GetPathToShift(which, 1)));
}

TEST(TapPaths, WithoutLastStopsOneStateEarly) {
    EXPECT_EQ(TmsOf(GetPathToShift(OmScanRegister::Data, 1).WithoutLast()), "10");
    EXPECT_EQ(TmsOf(GetPathToShift(OmScanRegister::Instruction, 0).WithoutLast()), "0110");
    EXPECT_EQ(GetPathFromExit1(0).WithoutLast().clocks, 0U);
}
