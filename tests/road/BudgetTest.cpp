// What an action costs, counted on the far side of the wire: scans by the board, transfers by the
// pod.
#include "tests/road/RoadFixture.h"

namespace {

// One 16-bit chip that is done before the first status read, so that no wait is needed.
vb::BoardBuilder QuickChip(const char* set, const char* bufferBytes) {
    vb::BoardBuilder builder;
    builder.Set("set", set).Set("buffer", bufferBytes).Set("sectors", "16x4K").Set("locks", "none");
    builder.Set("word-us", "0").Set("buffer-us", "0");
    return builder;
}

OmDataImage ImageOfWords(size_t words) {
    OmDataImage image;
    image.SetBytes(0, Firmware(words * 2, 7));
    return image;
}

struct Cost {
    uint64_t scans;
    uint64_t writes;
    uint64_t reads;
};

template <class Action>
Cost CostOf(Road& road, Action action) {
    road.ExpectNoViolation();
    road.board->ClearStatistics();
    EXPECT_TRUE(action());
    road.ExpectNoViolation();
    return {road.board->Chain().DataScans(), road.board->PodTraffic().writeCalls,
            road.board->PodTraffic().readCalls};
}

Cost CostOfProgram(Road& road, size_t words) {
    road.FillFlash(0xFF);
    const OmDataImage image = ImageOfWords(words);
    const Cost cost =
        CostOf(road, [&] { return road.programmer.ProgramFlash(road.progress, image); });
    road.ExpectContent(Firmware(words * 2, 7));
    return cost;
}

struct ProgramBudget {
    const char* name;
    const char* set;
    const char* bufferBytes;
    bool bypass;
    bool blind;
    int wait;
    uint64_t scansForTenWords; // on top of those for the ones before
};

} // namespace

TEST(Budget, ProgrammedWordCostsItsScansAndTheWait) {
    const ProgramBudget budgets[] = {
        {"AMD word", "amd", "0", false, false, 0, 120},
        {"AMD word, wait 7", "amd", "0", false, false, 7, 190},
        {"AMD bypass", "amd", "0", true, false, 0, 80},
        {"AMD word blind", "amd", "0", false, true, 0, 80},
        {"AMD bypass blind", "amd", "0", true, true, 0, 40},
        {"Intel word", "intel", "0", false, false, 0, 80},
        {"Intel word blind", "intel", "0", false, true, 0, 40},
    };
    for (const ProgramBudget& budget : budgets) {
        SCOPED_TRACE(budget.name);
        const RecordingUserInterface user;
        Road road(QuickChip(budget.set, budget.bufferBytes));
        road.programmer.setup.UseUnlockBypass = budget.bypass;
        road.programmer.setup.DontCheckStatus = budget.blind;
        ASSERT_TRUE(road.PrepareToProgram());
        road.programmer.waitScans = budget.wait;
        const uint64_t few = CostOfProgram(road, 10).scans;
        road.programmer.waitScans = budget.wait;
        const uint64_t more = CostOfProgram(road, 20).scans;
        EXPECT_EQ(more - few, budget.scansForTenWords);
    }
}

TEST(Budget, ProgrammedBufferCostsTwoScansAWord) {
    const ProgramBudget budgets[] = {
        // A buffer of 32 bytes holds 16 words: 14 + 2 * 16 + wait, and 11 + 2 * 16 + wait.
        {"AMD", "amd", "32", false, false, 0, 46},
        {"AMD, wait 9", "amd", "32", false, false, 9, 55},
        {"Intel", "intel", "32", false, false, 0, 43},
    };
    for (const ProgramBudget& budget : budgets) {
        SCOPED_TRACE(budget.name);
        const RecordingUserInterface user;
        Road road(QuickChip(budget.set, budget.bufferBytes));
        ASSERT_TRUE(road.PrepareToProgram());
        road.programmer.waitScans = budget.wait;
        const uint64_t few = CostOfProgram(road, 32).scans; // a wait is first tried on one buffer
        road.programmer.waitScans = budget.wait;
        const uint64_t more = CostOfProgram(road, 48).scans;
        EXPECT_EQ(more - few, budget.scansForTenWords);
    }
}

// Each action searches below the wait that it was given, with the same result: what is left between
// a long action and a longer one is what a word costs.
TEST(Budget, WaitThatWasFoundIsPaidByEveryWord) {
    struct Case {
        bool bypass;
        uint64_t scansOfAWord;
    };

    for (const Case& c : {Case{false, 12}, Case{true, 8}}) {
        SCOPED_TRACE(c.scansOfAWord);
        const RecordingUserInterface user;
        Road road(QuickChip("amd", "0").Set("word-us", "40"));
        road.programmer.setup.UseUnlockBypass = c.bypass;
        ASSERT_TRUE(road.PrepareToProgram());
        CostOfProgram(road, 1000);
        const int wait = road.programmer.waitScans;
        EXPECT_GT(wait, 0);
        const uint64_t few = CostOfProgram(road, 1000).scans;
        const uint64_t more = CostOfProgram(road, 1010).scans;
        EXPECT_EQ(road.programmer.waitScans, wait);
        EXPECT_EQ(more - few, 10 * (c.scansOfAWord + static_cast<uint64_t>(wait)));
    }
}

TEST(Budget, ReadOfOneBatchCostsOneScanMoreThanWords) {
    const RecordingUserInterface user;
    Road road(QuickChip("amd", "0"));
    ASSERT_TRUE(road.PrepareToProgram());
    for (const uint32_t words : {1u, 10u, 50u}) {
        OmDataImage image;
        const Cost cost = CostOf(
            road, [&] { return road.programmer.ReadFlash(road.progress, 0, words * 2, image); });
        // PRELOAD, three for the reset, the words and one, and the idle bus.
        EXPECT_EQ(cost.scans, 1 + 3 + (words + 1) + 1);
        // TAP reset, two instructions, PRELOAD, reset, words, idle; all but the first captured.
        EXPECT_EQ(cost.writes, 7u);
        EXPECT_EQ(cost.reads, 6u);
    }
}

TEST(Budget, BlindBatchIsOneWriteAndNoRead) {
    const RecordingUserInterface user;
    Road road(QuickChip("amd", "0"));
    road.programmer.setup.DontCheckStatus = true;
    ASSERT_TRUE(road.PrepareToProgram());
    const Cost small = CostOfProgram(road, 1);
    const Cost large = CostOfProgram(road, 20000);
    EXPECT_EQ(large.reads, small.reads);
    const size_t batches = road.progress.reports.size() - 2 - 1; // two openings, one batch
    EXPECT_GT(batches, 1u);
    EXPECT_EQ(large.writes - small.writes, batches - 1);
}

TEST(Budget, BatchWithStatusIsOneWriteAndOneRead) {
    const RecordingUserInterface user;
    Road road(QuickChip("amd", "0"));
    ASSERT_TRUE(road.PrepareToProgram());
    const Cost small = CostOfProgram(road, 1);
    road.progress.reports.clear();
    const Cost large = CostOfProgram(road, 2000);
    const size_t batches = road.progress.reports.size() - 1; // the opening
    EXPECT_GT(batches, 1u);
    EXPECT_EQ(large.reads - small.reads, batches - 1);
    EXPECT_EQ(large.writes - small.writes, batches - 1);
}

// Polls are told by their reports: the opening, the sector, and each poll but the last.
TEST(Budget, ErasePollCostsOneScanForAmdAndTwoForIntel) {
    struct Case {
        const char* set;
        uint64_t fixedScans;
        uint64_t scansOfAPoll;
    };

    const Case cases[] = {
        // PRELOAD, reset, six cycles with their end, the bus turned round, reset, idle bus.
        {"amd", 1 + 3 + 13 + 2 + 3 + 1, 1},
        // PRELOAD, read array, clear status, two cycles with an end each, the bus released, clear
        // status, read array, idle bus.
        {"intel", 1 + 3 + 2 + 5 + 1 + 2 + 3 + 1, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.set);
        const RecordingUserInterface user;
        Road road(QuickChip(c.set, "0").Set("sector-us", "1000"));
        ASSERT_TRUE(road.PrepareToProgram());
        road.progress.reports.clear();
        const Cost cost =
            CostOf(road, [&] { return road.programmer.EraseSectors(road.progress, {0}); });
        const size_t polls = road.progress.reports.size() - 2 + 1;
        EXPECT_GT(polls, 50u);
        EXPECT_EQ(cost.scans, c.fixedScans + polls * c.scansOfAPoll);
    }
}
