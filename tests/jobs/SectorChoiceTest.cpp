#include "jobs/SectorChoice.h"
#include "tests/jobs/JobsFixture.h"

class SectorChoice : public JobsTest {
  protected:
    SectorChoice() {
        UseSetup(kCmdSetAmd);
        programmer.sectors.groups = {{4, 16}}; // of the 16 that the flash has
    }

    OmSectorRange indexes;
};

TEST_F(SectorChoice, RunsOfNumbersMayOverlap) {
    EXPECT_TRUE(ChooseSectors(programmer, {{0, 2}, {2, 3}}, indexes));
    EXPECT_EQ(indexes, (OmSectorRange{0, 1, 2, 3}));
}

TEST_F(SectorChoice, NumberThatIsNotThereIsNamed) {
    ui.Expect(L"There is no sector 4294967295: the flash has 4 sectors, from 0.", kWarningBox);
    EXPECT_FALSE(ChooseSectors(programmer, {{0, 0xFFFFFFFF}}, indexes));
    EXPECT_TRUE(indexes.empty());
}

TEST_F(SectorChoice, PartTakesEverySectorThatItTouches) {
    EXPECT_TRUE(ChooseSectors(programmer, OmFlashPart{0x1F, 2}, indexes));
    EXPECT_EQ(indexes, (OmSectorRange{0, 1}));
}

TEST_F(SectorChoice, PartWithoutSectorsIsTold) {
    ui.Expect(L"No sector lies in that part of the flash.", kWarningBox);
    EXPECT_FALSE(ChooseSectors(programmer, OmFlashPart{0x100, 2}, indexes));
}

TEST_F(SectorChoice, PartPastTheEndIsTold) {
    ui.Expect(L"The range reaches past the end of the flash: there is nothing at offset 00200h, "
              L"the flash ends at 001FFh.",
              kWarningBox);
    EXPECT_FALSE(ChooseSectors(programmer, OmFlashPart{0x1F0, 0x11}, indexes));
}

TEST_F(SectorChoice, UnknownSectorsCannotBeChosen) {
    programmer.sectors = OmFlashSectorLayout();
    for (int way = 0; way < 2; ++way) {
        ui.Expect(L"The sectors of the flash are unknown.", kWarningBox);
        EXPECT_FALSE(way == 0 ? ChooseSectors(programmer, {{0, 0}}, indexes)
                              : ChooseSectors(programmer, OmFlashPart{}, indexes));
    }
}
