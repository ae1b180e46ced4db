#include "flash/Progress.h"

#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

namespace {

struct StepCase {
    uint32_t total, done, size;
    int percent;
    int shown;
};

} // namespace

TEST(UnitedProgress, ReportsOneStepAsTheWholeUntilAStepIsSet) {
    RecordingProgress target;
    OmUnitedProgressCallback united(&target);
    EXPECT_TRUE(united.OnProgress(37, L"Working..."));
    EXPECT_EQ(target.reports, (std::vector<ProgressReport>{{37, L"Working..."}}));
}

TEST(UnitedProgress, MapsAStepToItsShareOfTheWhole) {
    const StepCase cases[] = {
        {200, 0, 50, 0, 0},
        {200, 0, 50, 100, 25},
        {200, 50, 100, 50, 50},
        {200, 150, 50, 100, 100},
        {3, 1, 1, 0, 33},
        {3, 1, 1, 100, 66},
        {3, 2, 1, 50, 82},                             // 66 + truncated 16.67
        {0xFFFFFFFF, 0x80000000, 0x7FFFFFFF, 100, 99}, // figures above 2^31 are not negative
    };
    for (const StepCase& c : cases) {
        RecordingProgress target;
        OmUnitedProgressCallback united(&target);
        united.SetStep(c.total, c.done, c.size);
        united.OnProgress(c.percent, nullptr);
        EXPECT_EQ(target.reports.back().percent, c.shown)
            << c.total << " " << c.done << " " << c.size << " at " << c.percent;
    }
}

TEST(UnitedProgress, TotalOfZeroLeavesTheStepAsItWas) {
    RecordingProgress target;
    OmUnitedProgressCallback united(&target);
    united.SetStep(100, 50, 10);
    united.SetStep(0, 7, 9);
    EXPECT_EQ(united.base, 50u);
    EXPECT_EQ(united.scale, 0.1);
}

TEST(UnitedProgress, EmptyJobStillReportsThrough) {
    RecordingProgress target;
    OmUnitedProgressCallback united(&target);
    united.SetStep(0, 0, 0);
    united.OnProgress(100, L"Done");
    EXPECT_EQ(target.reports, (std::vector<ProgressReport>{{100, L"Done"}}));
}

TEST(UnitedProgress, ActivityOfUnknownLengthPassesUnchanged) {
    RecordingProgress target;
    OmUnitedProgressCallback united(&target);
    united.SetStep(100, 50, 10);
    united.OnProgress(-1, L"Busy");
    EXPECT_EQ(target.reports, (std::vector<ProgressReport>{{-1, L"Busy"}}));
}

TEST(UnitedProgress, PassesTheWishToStopBack) {
    RecordingProgress target;
    target.stopAtReport = 2;
    OmUnitedProgressCallback united(&target);
    EXPECT_TRUE(united.OnProgress(1, nullptr));
    EXPECT_FALSE(united.OnProgress(2, nullptr));
}

TEST(UnitedProgress, PassesTheFinishOn) {
    RecordingProgress target;
    OmUnitedProgressCallback united(&target);
    united.OnFinish();
    EXPECT_EQ(target.finished, 1);
}
