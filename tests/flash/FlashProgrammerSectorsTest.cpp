#include "tests/flash/ProgrammerFixture.h"

namespace {

// Two 16-bit chips: a sector is 16 words, 32 bytes of one chip.
class Sectors : public ProgrammerFixture {
  protected:
    Sectors() : ProgrammerFixture(2, 2, 8) {}

    const std::vector<uint32_t>& Erased() const { return target.chips[0].erased; }
};

using Words = std::vector<uint32_t>;

constexpr wchar_t kLockedAdvice[] =
    L".\n\nTo unlock sectors go to menu Actions > Intel Specific > Unlock Sectors.";

} // namespace

TEST_F(Sectors, EraseTakesTheSectorsInAscendingOrder) {
    for (const OmCommandSet set : {OmCommandSet::IntelStandard, OmCommandSet::IntelExtended,
                                   OmCommandSet::AmdWord, OmCommandSet::AmdBuffered}) {
        Ready(set);
        for (FakeFlashChip& chip : target.chips) {
            chip.erased.clear();
            chip.cells = {{17, 0}, {33, 0}};
        }
        EXPECT_TRUE(programmer.EraseSectors(progress, {96, 32}));
        EXPECT_EQ(Erased(), (Words{16, 48})); // words
        EXPECT_EQ(target.chips[1].erased, (Words{16, 48}));
        EXPECT_EQ(target.chips[0].cells.size(), 1u) << "the neighbour has lost its data";
        EXPECT_EQ(progress.WithText(),
                  (std::vector<ProgressReport>{{-1, L"Erasing sectors..."},
                                               {-1, L"Erasing sector 1 of 2..."},
                                               {-1, L"Erasing sector 2 of 2..."}}));
        EXPECT_EQ(progress.finished, 0);
    }
}

TEST_F(Sectors, EraseOfNoSectorsOnlyOpens) {
    Ready(OmCommandSet::AmdWord);
    EXPECT_TRUE(programmer.EraseSectors(progress, {}));
    EXPECT_TRUE(Erased().empty());
    EXPECT_EQ(progress.reports, (std::vector<ProgressReport>{{-1, L"Erasing sectors..."}}));
}

TEST_F(Sectors, EraseOfAnUnknownFlashDoesNothing) {
    Ready(OmCommandSet::AmdWord);
    programmer.commandSet = OmCommandSet::Unknown;
    const int scans = target.boundaryScans;
    EXPECT_TRUE(programmer.EraseSectors(progress, {0}));
    EXPECT_FALSE(programmer.EraseChip(progress));
    EXPECT_EQ(target.boundaryScans, scans);
}

TEST_F(Sectors, OneSectorThatFailsIsNamed) {
    for (const OmCommandSet set : {OmCommandSet::IntelStandard, OmCommandSet::AmdWord}) {
        Ready(set);
        target.chips[1].failing = {32};
        ui.Expect(L"An erase error occured while attempting to erase sector 00040h.", kErrorBox);
        EXPECT_FALSE(programmer.EraseSectors(progress, {0, 64}));
    }
    EXPECT_EQ(progress.finished, 2);
}

TEST_F(Sectors, SeveralFailingSectorsAreListedAndTheOthersErased) {
    Ready(OmCommandSet::AmdWord);
    target.chips[0].failing = {0, 32};
    ui.Expect(L"An erase error occured while attempting to erase the following sectors: 00000h, "
              L"00040h.",
              kErrorBox);
    EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32, 64, 96}));
    EXPECT_EQ(Erased(), (Words{16, 48}));
}

TEST_F(Sectors, LockedSectorsAreListedAfterTheFailedOnes) {
    Ready(OmCommandSet::IntelStandard);
    target.chips[0].failing = {0};
    target.chips[0].locked = {16};
    ui.Expect(L"An erase error occured while attempting to erase sector 00000h.", kErrorBox);
    ui.Expect(std::wstring(L"An Intel Block Locked error occured while attempting to erase sector "
                           L"00020h") +
                  kLockedAdvice,
              kWarningBox);
    EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32, 64}));
    EXPECT_EQ(Erased(), (Words{32}));
    EXPECT_EQ(progress.finished, 2);

    target.chips[0].failing.clear();
    target.chips[0].locked = {0, 16};
    ui.Expect(std::wstring(L"An Intel Block Locked error occured while attempting to erase the "
                           L"following sectors: 00000h, 00020h") +
                  kLockedAdvice,
              kWarningBox);
    EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32, 64}));
}

TEST_F(Sectors, TimeOutLeavesTheSectorsAfterItAlone) {
    for (const OmCommandSet set : {OmCommandSet::IntelStandard, OmCommandSet::AmdWord}) {
        Ready(set);
        for (FakeFlashChip& chip : target.chips)
            chip.erased.clear();
        target.chips[0].failing = {16};
        target.chips[0].neverReady = {32};
        target.onScan = [this] { clock.AdvanceMilliseconds(100); };
        ui.Expect(L"Erase timeout error.", kErrorBox);
        ui.Expect(L"An erase error occured while attempting to erase sector 00020h.", kErrorBox);
        EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32, 64, 96, 128}));
        EXPECT_EQ(Erased(), (Words{0}));
        target.onScan = nullptr;
    }
}

TEST_F(Sectors, EraseStopsAheadOfASector) {
    Ready(OmCommandSet::AmdWord);
    progress.stopAtReport =
        3; // the opening, sector 1, sector 2; the flash is done at its first poll
    ui.Expect(L"Erase operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32, 64}));
    EXPECT_EQ(Erased(), (Words{0}));
    EXPECT_EQ(progress.finished, 1);
}

TEST_F(Sectors, EraseStopsInsideASector) {
    Ready(OmCommandSet::AmdWord);
    target.chips[0].neverReady = {0};
    progress.stopAtReport = 3; // the first poll of sector 1
    ui.Expect(L"Erase operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.EraseSectors(progress, {0, 32}));
    EXPECT_TRUE(Erased().empty());
}

TEST_F(Sectors, AmdChipIsErasedAtOnce) {
    Ready(OmCommandSet::AmdBuffered);
    target.chips[0].cells = {{100, 0}};
    EXPECT_TRUE(programmer.EraseChip(progress));
    EXPECT_TRUE(target.chips[0].cells.empty());
    EXPECT_EQ(Erased(), (Words{0}));
    EXPECT_EQ(progress.reports.front(), (ProgressReport{-1, L"Erasing the entire flash..."}));
}

TEST_F(Sectors, IntelChipIsErasedBySectors) {
    Ready(OmCommandSet::IntelStandard);
    programmer.sectors.groups = {{2, 32}, {1, 64}, {1, 32}};
    EXPECT_TRUE(programmer.EraseChip(progress));
    EXPECT_EQ(Erased(), (Words{0, 16, 32, 64}));
    EXPECT_EQ(progress.WithText().back(), (ProgressReport{-1, L"Erasing sector 4 of 4..."}));
}

TEST_F(Sectors, IntelChipWithoutKnownSectorsHasNothingToErase) {
    Ready(OmCommandSet::IntelStandard);
    programmer.sectors = OmFlashSectorLayout();
    EXPECT_TRUE(programmer.EraseChip(progress));
    EXPECT_TRUE(Erased().empty());
}

// As many as a user may enter by hand. They are not written out ahead of the work.
TEST_F(Sectors, IntelChipOfBillionsOfSectorsIsErasedOneByOne) {
    Ready(OmCommandSet::IntelStandard);
    programmer.sectors.groups = {{4, 32}, {4000000000, 64}};
    progress.stopAtReport = 8; // the opening, six sectors, the seventh
    ui.Expect(L"Erase operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.EraseChip(progress));
    EXPECT_EQ(Erased(), (Words{0, 16, 32, 48, 64, 96}));
    EXPECT_EQ(progress.WithText().back(), (ProgressReport{-1, L"Erasing sector 7 of 67108866..."}));
}

// A sector that starts beyond 32 bits exists on no chip.
TEST_F(Sectors, IntelChipIsErasedUpToTheEndOfTheAddresses) {
    Ready(OmCommandSet::IntelStandard);
    programmer.sectors.groups = {{1, 0x80000000}, {4, 0x40000000}};
    EXPECT_TRUE(programmer.EraseChip(progress));
    EXPECT_EQ(progress.WithText().size(), 4u) << "the opening and three sectors";
}

TEST_F(Sectors, ChipEraseSaysHowItFailed) {
    Ready(OmCommandSet::AmdWord);
    target.chips[1].failing = {0};
    ui.Expect(L"An erase error occured.", kErrorBox);
    EXPECT_FALSE(programmer.EraseChip(progress));

    target.chips[1].failing.clear();
    target.chips[1].neverReady = {0};
    progress.reports.clear();
    progress.stopAtReport = 5;
    ui.Expect(L"Erase operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.EraseChip(progress));

    progress.stopAtReport = SIZE_MAX;
    target.onScan = [this] { clock.AdvanceMilliseconds(100); };
    ui.Expect(L"Erase timeout error.", kErrorBox);
    EXPECT_FALSE(programmer.EraseChip(progress));
    EXPECT_EQ(progress.finished, 3);
}

TEST_F(Sectors, LockAndUnlockTakeEachSector) {
    Ready(OmCommandSet::IntelExtended);
    EXPECT_TRUE(programmer.LockSectors(progress, {64, 0}));
    EXPECT_EQ(target.chips[0].lockChanges, (Words{0, 32}));
    EXPECT_EQ(progress.WithText(),
              (std::vector<ProgressReport>{{-1, L"Locking sectors..."},
                                           {-1, L"Locking sector 1 of 2..."},
                                           {-1, L"Locking sector 2 of 2..."}}));
    progress.reports.clear();
    EXPECT_TRUE(programmer.UnlockSectors(progress, {96}));
    EXPECT_EQ(target.chips[1].lockChanges, (Words{0, 32, 48}));
    EXPECT_EQ(progress.WithText(),
              (std::vector<ProgressReport>{{-1, L"Unlocking sectors..."},
                                           {-1, L"Unlocking sector 1 of 1..."}}));
}

// The user may have insisted against an unknown command set.
TEST_F(Sectors, LockOpensInIntelLanguageWhateverTheFlash) {
    Ready(OmCommandSet::AmdWord);
    target.chips[0].writes.clear();
    target.chips[0].family = FakeFlashFamily::Intel;
    target.chips[1].family = FakeFlashFamily::Intel;
    EXPECT_TRUE(programmer.LockSectors(progress, {0}));
    ASSERT_FALSE(target.chips[0].writes.empty());
    EXPECT_EQ(target.chips[0].writes.front().data, 0xFFFFu);
    EXPECT_FALSE(target.chips[0].Saw(0xF0));
}

TEST_F(Sectors, LockAndUnlockNameWhatFailed) {
    Ready(OmCommandSet::IntelStandard);
    target.chips[0].failing = {16};
    ui.Expect(L"Sector lock operation failed while attempting to lock sector 00020h.", kErrorBox);
    EXPECT_FALSE(programmer.LockSectors(progress, {0, 32, 64}));
    ui.Expect(L"Sector unlock operation failed while attempting to unlock sector 00020h.",
              kErrorBox);
    EXPECT_FALSE(programmer.UnlockSectors(progress, {0, 32, 64}));
    EXPECT_EQ(target.chips[0].lockChanges.size(), 6u) << "the others are not left out";

    target.chips[0].failing = {0, 16};
    ui.Expect(L"Sector lock operation failed while attempting to lock following sectors: 00000h, "
              L"00020h.",
              kErrorBox);
    EXPECT_FALSE(programmer.LockSectors(progress, {0, 32}));
    ui.Expect(L"Sector unlock operation failed while attempting to unlock following sectors: "
              L"00000h, 00020h.",
              kErrorBox);
    EXPECT_FALSE(programmer.UnlockSectors(progress, {0, 32}));
    EXPECT_EQ(progress.finished, 4);
}

TEST_F(Sectors, LockAndUnlockStopAndTimeOut) {
    Ready(OmCommandSet::IntelStandard);
    progress.stopAtReport = 2;
    ui.Expect(L"Sector lock operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.LockSectors(progress, {0, 32}));
    ui.Expect(L"Sector unlock operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.UnlockSectors(progress, {0, 32}));
    EXPECT_TRUE(target.chips[0].lockChanges.empty());

    progress.stopAtReport = SIZE_MAX;
    target.chips[0].neverReady = {0};
    target.onScan = [this] { clock.AdvanceMilliseconds(100); };
    ui.Expect(L"Sector lock timeout error.", kErrorBox);
    EXPECT_FALSE(programmer.LockSectors(progress, {0, 32}));
    ui.Expect(L"Sector unlock timeout error.", kErrorBox);
    EXPECT_FALSE(programmer.UnlockSectors(progress, {0, 32}));
    EXPECT_EQ(target.chips[0].lockChanges, (Words{0, 0}));
}
