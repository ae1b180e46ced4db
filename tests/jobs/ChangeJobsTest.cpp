// The jobs that change the flash: what they check, in which order they go, what they say.
#include "jobs/EraseJob.h"
#include "jobs/LockJob.h"
#include "jobs/ProgramJob.h"
#include "tests/jobs/JobsFixture.h"

#include <algorithm>

namespace {

constexpr wchar_t kPastEnd[] = L"The data reach past the end of the flash: the last byte is at "
                               L"offset 00203h, the flash ends at 001FFh.";

// Sector numbers that were erased.
std::vector<uint32_t> Erased(const FakeTarget& target) {
    std::vector<uint32_t> sectors;
    for (const uint32_t word : target.chips[0].erased)
        sectors.push_back(word / target.chips[0].sectorWords);
    return sectors;
}

} // namespace

TEST_F(JobsTest, ProgramErasesWhatTheDataNeedThenProgramsThenVerifies) {
    UseSetup(kCmdSetAmd);
    FillFlash(Bytes(0x60, 0));
    const OmDataImage image = ImageOf(0x3F, {1, 2});
    OmProgramJob job(programmer);
    job.data = {&image};
    ASSERT_TRUE(job.Open());
    job.TakeUsualErase();
    ASSERT_TRUE(job.Check());
    ASSERT_TRUE(job.Run(steps));
    EXPECT_EQ(steps.steps, (Steps{"2 pieces", "Erasing sectors...", "Erasing sector 1 of 2...",
                                  "Erasing sector 2 of 2...", "2 bytes", "Programming the flash...",
                                  "2 bytes", "Verifying the programmed data..."}));
    EXPECT_EQ(Erased(target), (std::vector<uint32_t>{1, 2}));
    EXPECT_EQ(target.Content(0x41)[0x3F], 1);
    EXPECT_EQ(target.Content(0x41)[0x40], 2);
    EXPECT_EQ(job.DescribeSuccess(), L"Program operation completed and succesfully verified.");
}

TEST_F(JobsTest, ProgramWithoutVerifyAndEraseIsOneStep) {
    UseSetup(kCmdSetAmd);
    const OmDataImage image = ImageOf(0x20, {1, 2});
    OmProgramJob job(programmer);
    job.data = {&image};
    job.verify = false;
    ASSERT_TRUE(job.Open() && job.Check() && job.Run(steps));
    EXPECT_EQ(steps.steps, (Steps{"2 bytes", "Programming the flash..."}));
    EXPECT_EQ(job.DescribeSuccess(), L"Program operation completed.");
}

TEST_F(JobsTest, VerifyAfterProgramCountsToOneHundredOverAllBlocks) {
    UseSetup(kCmdSetAmd);
    const OmDataImage image = ImageOf(0, Bytes(512, 0x5A));
    OmProgramJob job(programmer);
    job.data = {&image};
    ASSERT_TRUE(job.Open() && job.Check());
    steps.percents.clear();
    ASSERT_TRUE(job.Run(steps));
    const auto verify = std::find(steps.percents.rbegin(), steps.percents.rend(), 0).base();
    EXPECT_TRUE(std::is_sorted(verify, steps.percents.end()));
    EXPECT_GE(steps.percents.back(), 95);
}

TEST_F(JobsTest, MovedDataAreErasedProgrammedAndVerifiedWhereTheyGo) {
    UseSetup(kCmdSetAmd);
    OmDataImage image = ImageOf(0x1000, {1, 2});
    image.SetBytes(0x1020, Bytes{3, 4});
    const OmDataImage before = image;
    OmProgramJob job(programmer);
    job.data = {&image, true, 0x40};
    ASSERT_TRUE(job.Open());
    job.TakeUsualErase();
    ASSERT_TRUE(job.Check() && job.Run(steps));
    EXPECT_EQ(Erased(target), (std::vector<uint32_t>{2, 3}));
    EXPECT_EQ(target.Content(0x42)[0x41], 2);
    EXPECT_EQ(image, before);
}

TEST_F(JobsTest, ChangingNeedsThePinsForCommands) {
    UseSetup(kCmdSetIntel);
    OmDesignSetup setup = programmer.setup;
    setup.we.Device = -1;
    programmer.SetDesignSetup(setup);
    const OmDataImage image = ImageOf(0, {1});
    OmProgramJob program(programmer);
    program.data = {&image};
    OmEraseJob erase(programmer);
    OmLockJob lock(programmer, OmLockAction::Lock);
    OmLockJob unlock(programmer, OmLockAction::Unlock);
    for (OmFlashJob* job : std::initializer_list<OmFlashJob*>{&program, &erase, &lock, &unlock}) {
        ui.Expect(L"OE (Output Enable) and WE (Write Enable) flash pins must be connected to "
                  L"certain pins of JTAG chain devices in order to perform info, erase, program or "
                  L"lock/unlock actions.",
                  kWarningBox, OmAnswer::Ok, L"Setup Integrity Check Error");
        EXPECT_FALSE(job->Open());
    }
    EXPECT_EQ(cablesMade, 0);
}

TEST_F(JobsTest, ProgramOfNoDataReachesNoCable) {
    UseSetup(kCmdSetAmd);
    const OmDataImage none;
    OmProgramJob job(programmer);
    job.data = {&none};
    ui.Expect(L"No data to program.", kInformationBox);
    EXPECT_FALSE(job.Open());
    EXPECT_EQ(cablesMade, 0);
}

// Between the identification and the refusal not one scan.
TEST_F(JobsTest, DataPastTheEndAreRefusedBeforeAnythingIsSent) {
    UseSetup(kCmdSetAmd);
    const OmDataImage past = ImageOf(0x1FC, Bytes(8, 0x11));
    const OmDataImage fits = ImageOf(0, Bytes(8, 0x11));
    const OmDataChoice cases[] = {{&past}, {&fits, true, 0x1FC}};
    for (const OmDataChoice& data : cases) {
        OmProgramJob program(programmer);
        program.data = data;
        OmEraseJob erase(programmer);
        erase.erase.mode = OmEraseMode::SectorsForData;
        erase.data = data;
        ASSERT_TRUE(program.Open() && erase.Open());
        program.TakeUsualErase();
        const int scans = target.boundaryScans;
        ui.Expect(kPastEnd, kWarningBox);
        EXPECT_FALSE(program.Check());
        ui.Expect(kPastEnd, kWarningBox);
        EXPECT_FALSE(erase.Check());
        EXPECT_EQ(target.boundaryScans, scans);
    }
}

TEST_F(JobsTest, DataUpToTheLastByteFit) {
    UseSetup(kCmdSetAmd);
    const OmDataImage image = ImageOf(0x1F8, Bytes(8, 0x11));
    OmProgramJob job(programmer);
    job.data = {&image};
    ASSERT_TRUE(job.Open());
    EXPECT_TRUE(job.Check());
}

// They would be programmed over what was there.
TEST_F(JobsTest, DataInNoKnownSectorAreNotErasedAndTold) {
    UseSetup(kCmdSetAmd);
    OmDesignSetup setup = programmer.setup;
    setup.sectors.groups = {{4, 16}};
    programmer.SetDesignSetup(setup);
    const OmDataImage image = ImageOf(0x100, {1});
    OmProgramJob job(programmer);
    job.data = {&image};
    ASSERT_TRUE(job.Open());
    job.TakeUsualErase();
    ui.Expect(L"Nothing to erase -- data starting address is beyond flash address space",
              kWarningBox);
    EXPECT_FALSE(job.Check());
}

TEST_F(JobsTest, UsualEraseIsWhatTheFlashCan) {
    struct {
        int commandSet;
        bool sectors;
        std::optional<OmEraseOptions> usual;
    } const cases[] = {
        {kCmdSetAmd, true, OmEraseOptions{OmEraseMode::SectorsForData, {}}},
        {kCmdSetIntel, true, OmEraseOptions{OmEraseMode::SectorsForData, {}}},
        {kCmdSetAmd, false, OmEraseOptions{OmEraseMode::EntireFlash, {}}},
        {kCmdSetIntel, false, std::nullopt},
    };

    const OmDataImage image = ImageOf(0, {1});
    for (const auto& c : cases) {
        UseSetup(c.commandSet, c.sectors);
        OmProgramJob job(programmer);
        job.data = {&image};
        if (!c.sectors)
            ExpectMissingSectorsBox();
        ASSERT_TRUE(job.Open());
        if (!c.usual)
            ui.Expect(kEraseImpossible, kWarningBox);
        job.TakeUsualErase();
        EXPECT_EQ(job.erase, c.usual);
        EXPECT_TRUE(job.Check()); // no erase is no reason not to program
    }
}

TEST_F(JobsTest, EraseThatIsImpossibleIsToldAtOnceAndWhereItIsAskedFor) {
    UseSetup(kCmdSetIntel, false);
    OmEraseJob erase(programmer);
    ExpectMissingSectorsBox();
    ui.Expect(kEraseImpossible, kWarningBox);
    EXPECT_FALSE(erase.Open());

    const OmDataImage image = ImageOf(0, {1});
    OmProgramJob program(programmer);
    program.data = {&image};
    program.erase = OmEraseOptions{OmEraseMode::EntireFlash, {}};
    ExpectMissingSectorsBox();
    ASSERT_TRUE(program.Open());
    ui.Expect(kEraseImpossible, kWarningBox);
    EXPECT_FALSE(program.Check());
}

TEST_F(JobsTest, EraseBySectorsNeedsToKnowThem) {
    UseSetup(kCmdSetAmd, false);
    OmEraseJob job(programmer);
    job.erase = {OmEraseMode::SelectedSectors, {0}};
    ExpectMissingSectorsBox();
    ASSERT_TRUE(job.Open());
    ui.Expect(L"The sectors of the flash are unknown.", kWarningBox);
    EXPECT_FALSE(job.Check());
}

TEST_F(JobsTest, EraseCountsItsPieces) {
    struct {
        int commandSet;
        OmEraseOptions erase;
        const char* pieces;
    } const cases[] = {
        {kCmdSetAmd, {OmEraseMode::EntireFlash, {}}, "0 pieces"}, // one command
        {kCmdSetIntel, {OmEraseMode::EntireFlash, {}}, "16 pieces"},
        {kCmdSetAmd, {OmEraseMode::SelectedSectors, {3, 5}}, "2 pieces"},
    };

    for (const auto& c : cases) {
        UseSetup(c.commandSet);
        OmEraseJob job(programmer);
        job.erase = c.erase;
        ASSERT_TRUE(job.Open() && job.Check());
        steps.steps.clear();
        EXPECT_TRUE(job.Run(steps));
        EXPECT_EQ(steps.steps.front(), c.pieces);
        EXPECT_EQ(job.DescribeSuccess(), L"Erase operation completed successfully.");
    }
}

TEST_F(JobsTest, FailedEraseEndsProgramBeforeItWrites) {
    UseSetup(kCmdSetAmd);
    target.chips[0].failing.insert(0);
    const OmDataImage image = ImageOf(0, {1, 2});
    OmProgramJob job(programmer);
    job.data = {&image};
    ASSERT_TRUE(job.Open());
    job.TakeUsualErase();
    ASSERT_TRUE(job.Check());
    ui.Expect(L"An erase error occured while attempting to erase sector 00000h.", kErrorBox);
    EXPECT_FALSE(job.Run(steps));
    EXPECT_FALSE(target.chips[0].Saw(0xA0)); // Program
}

TEST_F(JobsTest, LockAndUnlockTakeTheirSectorsAndSaySo) {
    struct {
        OmLockAction action;
        const wchar_t* success;
        const char* heading;
    } const cases[] = {
        {OmLockAction::Lock, L"Lock sectors operation completed successfully.",
         "Locking sectors..."},
        {OmLockAction::Unlock, L"Unlock sectors operation completed successfully.",
         "Unlocking sectors..."},
    };

    UseSetup(kCmdSetIntel);
    for (const auto& c : cases) {
        OmLockJob job(programmer, c.action);
        ASSERT_TRUE(job.Open());
        job.selected = {2, 5};
        target.chips[0].lockChanges.clear();
        steps.steps.clear();
        ASSERT_TRUE(job.Check() && job.Run(steps));
        EXPECT_EQ(target.chips[0].lockChanges, (std::vector<uint32_t>{2 * 16, 5 * 16}));
        EXPECT_EQ(job.DescribeSuccess(), c.success);
        EXPECT_EQ(steps.steps[0], "2 pieces");
        EXPECT_EQ(steps.steps[1], c.heading);
    }
}

TEST_F(JobsTest, LockWithoutSectorsEndsSilentlyAndUnlockAsksAboutSectorZero) {
    UseSetup(kCmdSetIntel, false);
    OmLockJob lock(programmer, OmLockAction::Lock);
    ExpectMissingSectorsBox();
    EXPECT_FALSE(lock.Open());

    OmLockJob unlock(programmer, OmLockAction::Unlock);
    ExpectMissingSectorsBox();
    ASSERT_TRUE(unlock.Open());
    ui.Expect(L"Unlock sector at zero address?", kQuestionBox, OmAnswer::No);
    EXPECT_FALSE(unlock.Check());
    ui.Expect(L"Unlock sector at zero address?", kQuestionBox, OmAnswer::Yes);
    ASSERT_TRUE(unlock.Check() && unlock.Run(steps));
    EXPECT_EQ(target.chips[0].lockChanges, (std::vector<uint32_t>{0}));
}

// Lock and Unlock ask; Erase and Program do not go on.
TEST_F(JobsTest, UnknownCommandSetStopsEraseAndProgramOnly) {
    UseSetup(kCmdSetAuto);
    const OmDataImage image = ImageOf(0, {1});
    OmProgramJob program(programmer);
    program.data = {&image};
    OmEraseJob erase(programmer);
    for (OmFlashJob* job : std::initializer_list<OmFlashJob*>{&program, &erase}) {
        ui.Expect(L"Failed to identify flash command set (or command set is unsupported).",
                  kWarningBox);
        EXPECT_FALSE(job->Open());
    }
    OmLockJob lock(programmer, OmLockAction::Lock);
    ui.Expect(L"It seems like the connected flash does not support neither Intel Standard (Basic) "
              L"nor Intel Extended (Scaleable) command set.\n\nIgnore this warning and proceed "
              L"anyway?",
              kWarningQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_TRUE(lock.Open());
}
