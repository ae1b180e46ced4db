// The search for the wait between a word and its status, seen from the whole programmer: what it
// tries on chips that need longer and longer, and what the next action starts with.
#include "tests/road/RoadFixture.h"

namespace {

// A scan of the board's 38 bits takes 43 us at this frequency, and the longest wait is 132 scans.
constexpr int32_t kTck = 1000000;

// Keeps the wait that stands at each report: at the opening the one that the action begins with,
// then the one chosen after each pass.
class WaitRecorder : public OmProgressCallback {
  public:
    explicit WaitRecorder(const OmFlashProgrammer& programmer) : programmer_(programmer) {}

    bool OnProgress(int, const wchar_t*) override {
        waits.push_back(programmer_.waitScans);
        return true;
    }

    void OnFinish() override {}

    std::vector<int> waits;

  private:
    const OmFlashProgrammer& programmer_;
};

class SlowChip {
  public:
    SlowChip(const char* set, unsigned wordMicroseconds)
        : road(BoardFor(set, std::to_string(wordMicroseconds))) {
        road.programmer.settings.ftd2xxFrequency = kTck;
        EXPECT_TRUE(road.PrepareToProgram());
    }

    // The waits of a program of so many words at that address; at least `shown` of them.
    std::vector<int> WaitsOf(uint32_t address, size_t words, size_t shown) {
        OmDataImage image;
        image.SetBytes(address, Firmware(words * 2, 31));
        WaitRecorder recorder(road.programmer);
        EXPECT_TRUE(road.programmer.ProgramFlash(recorder, image));
        EXPECT_GE(recorder.waits.size(), shown);
        recorder.waits.resize(shown);
        return recorder.waits;
    }

    RecordingUserInterface user;
    Road road;

  private:
    static vb::BoardBuilder BoardFor(const char* set, const std::string& wordMicroseconds) {
        vb::BoardBuilder builder;
        builder.Devices(1).Set("set", set).Set("buffer", "0").Set("locks", "none");
        return builder.Set("sectors", "16x4K").Set("word-us", wordMicroseconds);
    }
};

} // namespace

TEST(WaitSearch, FindsTheShortestWaitInBothLanguages) {
    const struct {
        unsigned wordMicroseconds;
        int least;
        int most;
    } cases[] = {{0, 0, 0}, {110, 1, 1}, {285, 5, 5}, {1660, 37, 42}};

    for (const char* set : {"amd", "intel"})
        for (const auto& row : cases) {
            SCOPED_TRACE(std::string(set) + " " + std::to_string(row.wordMicroseconds));
            SlowChip chip(set, row.wordMicroseconds);
            chip.WaitsOf(0, 1500, 1);
            EXPECT_GE(chip.road.programmer.waitScans, row.least);
            EXPECT_LE(chip.road.programmer.waitScans, row.most);
            chip.road.ExpectContent(Firmware(3000, 31));
        }
}

TEST(WaitSearch, EndsAtTheLongestWaitAndLeavesAFewHolesToTheVerify) {
    for (const char* set : {"amd", "intel"}) {
        SCOPED_TRACE(set);
        SlowChip chip(set, 200000);
        chip.WaitsOf(0, 3, 3);
        EXPECT_EQ(chip.road.programmer.waitScans, 0);
        chip.road.time.SleepMilliseconds(200);
        OmDataImage image;
        image.SetBytes(0, Firmware(6, 31));
        chip.user.Expect(L"Data verification failed at offset 00002h.\n"
                         L"Byte read from flash: FFh; byte expected: 0Bh.",
                         kErrorBox);
        EXPECT_FALSE(chip.road.programmer.VerifyFlash(chip.road.united, image));
    }
}

TEST(WaitSearch, HopelessProgramStopsEarly) {
    for (const char* set : {"amd", "intel"}) {
        SCOPED_TRACE(set);
        SlowChip chip(set, 200000);
        OmDataImage image;
        image.SetBytes(0, Firmware(20000, 31));
        chip.user.Expect(L"4 words could not be programmed so far, the first at offset 00000h.\n"
                         L"The flash may be not erased, protected, defective or not connected as "
                         L"the setup says.\n\nGo on programming the rest?",
                         kLossQuestionBox, OmAnswer::No);
        chip.user.Expect(L"Program operation was aborted by user.", kWarningBox);
        EXPECT_FALSE(chip.road.programmer.ProgramFlash(chip.road.progress, image));
    }
}

TEST(WaitSearch, NextActionStartsWithTheWaitFoundUntilTheSetupChanges) {
    for (const char* set : {"amd", "intel"}) {
        SCOPED_TRACE(set);
        SlowChip chip(set, 285);
        chip.WaitsOf(0, 1500, 1);
        EXPECT_EQ(chip.WaitsOf(4096, 1, 2), (std::vector<int>{5, 5}));
        EXPECT_EQ(chip.road.Content(4098)[4096], Firmware(1, 31)[0]);
        EXPECT_EQ(chip.WaitsOf(4098, 3, 3), (std::vector<int>{5, 5, 5}));
        const OmDesignSetup setup = chip.road.programmer.setup;
        chip.road.programmer.SetDesignSetup(setup);
        ASSERT_TRUE(chip.road.PrepareToProgram());
        EXPECT_EQ(chip.WaitsOf(8192, 1500, 3), (std::vector<int>{0, 0, 0}));
    }
}
