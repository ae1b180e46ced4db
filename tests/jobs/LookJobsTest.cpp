// The jobs that change nothing in the flash.
#include "flash/FlashInfo.h"
#include "jobs/BlankCheckJob.h"
#include "jobs/InfoJob.h"
#include "jobs/ReadJob.h"
#include "jobs/VerifyJob.h"
#include "tests/jobs/JobsFixture.h"

namespace {

constexpr wchar_t kDataPastEnd[] = L"The data reach past the end of the flash: the last byte is at "
                                   L"offset 00203h, the flash ends at 001FFh.";

} // namespace

TEST_F(JobsTest, ReadTakesTheWholeFlashWithoutASize) {
    UseSetup(kCmdSetAmd);
    FillFlash({0x10, 0x11, 0x12});
    OmDataImage image;
    OmReadJob job(programmer);
    job.image = &image;
    ASSERT_TRUE(job.Open() && job.Check() && job.Run(steps));
    EXPECT_EQ(image.GetByteCount(), 512u);
    EXPECT_EQ(job.GetRange().size, 512u);
    EXPECT_EQ(steps.steps, (Steps{"512 bytes", "Reading from flash..."}));
}

TEST_F(JobsTest, ReadOfAPartPastTheEndIsRefused) {
    UseSetup(kCmdSetAmd);
    OmDataImage image = ImageOf(0, {1});
    OmReadJob job(programmer);
    job.part = {0x1FF, 2};
    job.image = &image;
    ASSERT_TRUE(job.Open());
    ui.Expect(L"The range reaches past the end of the flash: there is nothing at offset 00200h, "
              L"the flash ends at 001FFh.",
              kWarningBox);
    const int scans = target.boundaryScans;
    EXPECT_FALSE(job.Check());
    EXPECT_EQ(target.boundaryScans, scans);
    EXPECT_EQ(image.GetByteCount(), 1u);
}

TEST_F(JobsTest, LookingNeedsNoPinsForCommands) {
    UseSetup(kCmdSetAmd);
    OmDesignSetup setup = programmer.setup;
    setup.we.Device = -1;
    programmer.SetDesignSetup(setup);
    ui.Expect(
        L"It is usual, although not always necessary, for all three CE (Chip Enable), OE "
        L"(Output Enable) and WE (Write Enable) flash control pins to be connected to certain "
        L"pins of JTAG chain devices.\n\nIgnore this warning and proceed anyway?",
        kWarningQuestionBox, OmAnswer::Yes, L"Setup Integrity Check Warning");
    const OmDataImage image = ImageOf(0, {1});
    OmReadJob read(programmer);
    OmBlankCheckJob blankCheck(programmer);
    OmVerifyJob verify(programmer);
    verify.data = {&image};
    EXPECT_TRUE(read.Open());
    EXPECT_TRUE(blankCheck.Open());
    EXPECT_TRUE(verify.Open());
}

TEST_F(JobsTest, VerifyComparesMovedDataWhereTheyGo) {
    UseSetup(kCmdSetAmd);
    FillFlash({1, 2, 3, 4});
    const OmDataImage image = ImageOf(0x80, {3, 4});
    OmVerifyJob job(programmer);
    job.data = {&image, true, 2};
    ASSERT_TRUE(job.Open() && job.Check() && job.Run(steps));
    EXPECT_EQ(steps.steps, (Steps{"2 bytes", "Verifying the programmed data..."}));
    EXPECT_EQ(job.DescribeSuccess(), L"Data verification completed successfully.");
}

TEST_F(JobsTest, VerifyOfNoDataReachesNoCable) {
    UseSetup(kCmdSetAmd);
    OmVerifyJob job(programmer);
    ui.Expect(L"No data to verify.", kInformationBox);
    EXPECT_FALSE(job.Open());
    EXPECT_EQ(cablesMade, 0);
}

TEST_F(JobsTest, VerifyAndBlankCheckOfDataPastTheEndAreRefused) {
    UseSetup(kCmdSetAmd);
    const OmDataImage image = ImageOf(0x1FC, Bytes(8, 0xFF));
    OmVerifyJob verify(programmer);
    verify.data = {&image};
    ASSERT_TRUE(verify.Open());
    ui.Expect(kDataPastEnd, kWarningBox);
    EXPECT_FALSE(verify.Check());
    OmBlankCheckJob blankCheck(programmer);
    blankCheck.data = {&image};
    ASSERT_TRUE(blankCheck.Open());
    ui.Expect(kDataPastEnd, kWarningBox);
    EXPECT_FALSE(blankCheck.Check());
}

TEST_F(JobsTest, BlankCheckLooksOnlyWhereTheDataGo) {
    UseSetup(kCmdSetAmd);
    FillFlash(Bytes(0x20, 0));
    OmDataImage image = ImageOf(0x60, Bytes(4, 0xAA));
    image.SetBytes(0x80, Bytes(4, 0xAA));
    OmBlankCheckJob job(programmer);
    job.data = {&image, true, 0x20};
    ASSERT_TRUE(job.Open() && job.Check() && job.Run(steps));
    EXPECT_EQ(steps.steps.front(), "8 bytes");
    EXPECT_EQ(job.DescribeSuccess(), L"Selected flash region is blank.");
    target.chips[1].cells[0x21] = 0x12; // address 43h, where the second chunk goes
    ui.Expect(L"Flash memory is not blank: read 12h at offset 00043h.", kErrorBox);
    EXPECT_FALSE(job.Run(steps));
}

TEST_F(JobsTest, BlankCheckWithoutDataTakesAPart) {
    UseSetup(kCmdSetAmd);
    FillFlash({0, 0});
    OmBlankCheckJob job(programmer);
    job.part = {2, std::nullopt};
    ASSERT_TRUE(job.Open() && job.Check() && job.Run(steps));
    EXPECT_EQ(steps.steps.front(), "510 bytes");
    job.part = {0, 513};
    ui.Expect(L"The range reaches past the end of the flash: there is nothing at offset 00200h, "
              L"the flash ends at 001FFh.",
              kWarningBox);
    EXPECT_FALSE(job.Check());
}

TEST_F(JobsTest, InfoTellsNothingOfABoardWithoutAPod) {
    UseSetup(kCmdSetAmd);
    programmer.createCable = [](OmConnectionSettings&) { return nullptr; };
    OmFlashReport report;
    ui.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    EXPECT_FALSE(RunInfoJob(programmer, report));
}
