#include "flash/FlashInfo.h"
#include "tests/flash/ProgrammerFixture.h"

namespace {

// Two 8-bit chips on a 16-bit bus, 256 words: 512 bytes.
class Operations : public ProgrammerFixture {
  protected:
    Operations() : ProgrammerFixture(2, 1, 8) {}

    // Fills the chips behind the program's back, from image address 0.
    void Fill(const std::vector<uint8_t>& bytes) {
        for (size_t i = 0; i < bytes.size(); ++i)
            target.chips[i % 2].cells[static_cast<uint32_t>(i / 2)] = bytes[i];
    }

    bool Saw(uint8_t command) const { return target.chips[0].Saw(command); }
};

using Bytes = std::vector<uint8_t>;

} // namespace

TEST_F(Operations, ReadBringsWholeBusWords) {
    Ready(OmCommandSet::AmdWord);
    Fill({0x10, 0x11, 0x12, 0x13, 0x14, 0x15});

    struct Case {
        uint32_t start;
        uint32_t size;
        uint32_t address;
        Bytes bytes;
    };

    const Case cases[] = {
        {0, 2, 0, {0x10, 0x11}},
        {1, 1, 0, {0x10, 0x11}},
        {1, 2, 0, {0x10, 0x11, 0x12, 0x13}},
        {2, 3, 2, {0x12, 0x13, 0x14, 0x15}},
        {511, 1, 510, {0xFF, 0xFF}},
        {510, 100, 510, {0xFF, 0xFF}}, // the flash ends
    };
    for (const Case& c : cases) {
        OmDataImage image;
        EXPECT_TRUE(programmer.ReadFlash(progress, c.start, c.size, image));
        EXPECT_EQ(BytesOf(image), c.bytes) << c.start << " " << c.size;
        EXPECT_EQ(image.GetChunks().front().address, c.address);
    }
    EXPECT_EQ(progress.reports.front(), (ProgressReport{0, L"Reading from flash..."}));
}

TEST_F(Operations, ReadOfNothingOrBeyondTheFlashBringsNothing) {
    Ready(OmCommandSet::AmdWord);
    OmDataImage image;
    EXPECT_TRUE(programmer.ReadFlash(progress, 4, 0, image));
    EXPECT_TRUE(programmer.ReadFlash(progress, 512, 4, image));
    EXPECT_TRUE(programmer.ReadFlash(progress, 0xFFFFFFFF, 0xFFFFFFFF, image));
    EXPECT_TRUE(image.IsEmpty());
}

TEST_F(Operations, AbortedReadKeepsWhatCameIn) {
    Ready(OmCommandSet::AmdWord);
    Fill({0x10, 0x11, 0x12, 0x13});
    OmDataImage image;
    progress.stopAtReport = 3; // the opening, nothing read, one word read
    ui.Expect(L"Flash reading was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.ReadFlash(progress, 0, 100, image));
    EXPECT_EQ(BytesOf(image), (Bytes{0x10, 0x11}));
    EXPECT_EQ(progress.finished, 1);
}

TEST_F(Operations, OpeningFollowsTheCommandSet) {
    struct Case {
        OmCommandSet commandSet;
        bool amdReset;
        bool intelReadArray;
    };

    const Case cases[] = {
        {OmCommandSet::AmdWord, true, false},       {OmCommandSet::AmdBuffered, true, false},
        {OmCommandSet::IntelStandard, false, true}, {OmCommandSet::IntelExtended, false, true},
        {OmCommandSet::Unknown, true, true},
    };
    for (const Case& c : cases) {
        Ready(OmCommandSet::AmdWord);
        programmer.commandSet = c.commandSet;
        target.chips[0].writes.clear();
        OmDataImage image;
        EXPECT_TRUE(programmer.ReadFlash(progress, 0, 2, image));
        EXPECT_EQ(Saw(0xF0), c.amdReset) << static_cast<int>(c.commandSet);
        EXPECT_EQ(Saw(0xFF), c.intelReadArray) << static_cast<int>(c.commandSet);
    }
}

TEST_F(Operations, ProgramChoosesTheMethodByCommandSet) {
    struct Case {
        OmCommandSet commandSet;
        bool blind;
        bool bypass;
        uint8_t command; // the flash sees it in this method alone
        uint8_t absent;
    };

    const Case cases[] = {
        {OmCommandSet::IntelStandard, false, false, 0x40, 0xE8},
        {OmCommandSet::IntelStandard, true, false, 0x40, 0xE8},
        {OmCommandSet::IntelExtended, false, false, 0xE8, 0x40},
        {OmCommandSet::IntelExtended, true, false, 0xE8, 0x40},
        {OmCommandSet::AmdWord, false, false, 0xA0, 0x20},
        {OmCommandSet::AmdWord, true, false, 0xA0, 0x20},
        {OmCommandSet::AmdWord, false, true, 0x20, 0x25},
        {OmCommandSet::AmdWord, true, true, 0x20, 0x25},
        {OmCommandSet::AmdBuffered, false, true, 0x25, 0xA0}, // bypass plays no part
        {OmCommandSet::AmdBuffered, true, true, 0x25, 0xA0},
    };
    const Bytes bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06};
    for (const Case& c : cases) {
        Ready(c.commandSet);
        programmer.setup.DontCheckStatus = c.blind;
        programmer.setup.UseUnlockBypass = c.bypass;
        programmer.bufferBytes = 4;
        for (FakeFlashChip& chip : target.chips) {
            chip.cells.clear();
            chip.writes.clear();
        }
        EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, bytes)));
        EXPECT_EQ(target.Content(8), (Bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0xFF, 0xFF}))
            << static_cast<int>(c.commandSet) << c.blind << c.bypass;
        EXPECT_TRUE(Saw(c.command)) << static_cast<int>(c.commandSet) << c.blind << c.bypass;
        EXPECT_FALSE(Saw(c.absent)) << static_cast<int>(c.commandSet) << c.blind << c.bypass;
        EXPECT_EQ(progress.reports.front(), (ProgressReport{0, L"Programming the flash..."}));
    }
}

TEST_F(Operations, BufferOfLessThanAWordProgramsSingleWords) {
    Ready(OmCommandSet::IntelExtended);
    programmer.bufferBytes = 0;
    EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2, 3, 4})));
    EXPECT_EQ(target.Content(4), (Bytes{1, 2, 3, 4}));
}

TEST_F(Operations, BufferOfGigabytesIsNotLaidOut) {
    for (const OmCommandSet set : {OmCommandSet::IntelExtended, OmCommandSet::AmdBuffered}) {
        Ready(set);
        programmer.bufferBytes = 0x80000000;
        EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2, 3, 4})));
        EXPECT_EQ(target.Content(4), (Bytes{1, 2, 3, 4}));
    }
}

TEST_F(Operations, ProgramOfAnUnknownFlashDoesNothing) {
    Ready(OmCommandSet::AmdWord);
    programmer.commandSet = OmCommandSet::Unknown;
    const int scans = target.boundaryScans;
    EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2})));
    EXPECT_EQ(target.boundaryScans, scans);
}

TEST_F(Operations, ProgramStopsWhenTheUserWants) {
    Ready(OmCommandSet::AmdWord);
    progress.stopAtReport = 2;
    ui.Expect(L"Program operation was aborted by user.", kWarningBox);
    EXPECT_FALSE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2, 3, 4})));
    EXPECT_EQ(progress.finished, 1);
    EXPECT_EQ(target.Content(4), (Bytes{1, 2, 0xFF, 0xFF}));
}

TEST_F(Operations, ProgramOfALockedBlockIsRefused) {
    for (const OmCommandSet set : {OmCommandSet::IntelStandard, OmCommandSet::IntelExtended}) {
        Ready(set);
        target.chips[1].locked = {0};
        ui.Expect(L"An Intel Block Locked error occured while attempting to program the flash.\n"
                  L"To unlock erase blocks (sectors) go to menu Actions > Intel Specific > Unlock "
                  L"Sectors.",
                  kWarningBox);
        EXPECT_FALSE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2})));
    }
    EXPECT_EQ(progress.finished, 2);
}

TEST_F(Operations, ProgramPastTheEndWrapsAndVerifyDoesNotLook) {
    Ready(OmCommandSet::AmdWord);
    const OmDataImage image = ImageOf(510, {0x21, 0x22, 0x23, 0x24});
    EXPECT_TRUE(programmer.ProgramFlash(progress, image));
    EXPECT_EQ(target.Content(2), (Bytes{0x23, 0x24})); // the high address bits have fallen away
    EXPECT_TRUE(programmer.VerifyFlash(united, image));
    EXPECT_TRUE(programmer.VerifyFlash(united, ImageOf(512, {1, 2, 3})));
}

TEST_F(Operations, VerifyNamesTheFirstDifference) {
    Ready(OmCommandSet::AmdWord);
    Bytes bytes(300, 0x5A);
    Fill(bytes);
    EXPECT_TRUE(programmer.VerifyFlash(united, ImageOf(0, bytes)));
    EXPECT_EQ(progress.reports.front(), (ProgressReport{0, L"Verifying the programmed data..."}));
    bytes[259] = 0xA5;
    bytes[280] = 0xA5;
    ui.Expect(L"Data verification failed at offset 00103h.\n"
              L"Byte read from flash: 5Ah; byte expected: A5h.",
              kErrorBox);
    EXPECT_FALSE(programmer.VerifyFlash(united, ImageOf(0, bytes)));
    EXPECT_EQ(progress.finished, 1);
}

TEST_F(Operations, VerifyComparesOnlyWhatTheImageHolds) {
    Ready(OmCommandSet::AmdWord);
    Fill({0x10, 0x11, 0x12, 0x13});
    OmDataImage image = ImageOf(1, {0x11, 0x12});
    EXPECT_TRUE(programmer.VerifyFlash(united, image));
    image.SetByte(9, 0x00);
    ui.Expect(L"Data verification failed at offset 00009h.\n"
              L"Byte read from flash: FFh; byte expected: 00h.",
              kErrorBox);
    EXPECT_FALSE(programmer.VerifyFlash(united, image));
}

TEST_F(Operations, BlankCheckNamesTheFirstByteThatIsNotErased) {
    Ready(OmCommandSet::AmdWord);
    target.chips[1].cells[130] = 0xFE; // image address 261
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {{0, 261}, {262, 250}}));
    EXPECT_EQ(progress.reports.front(), (ProgressReport{0, L"Checking flash memory for blank..."}));
    ui.Expect(L"Flash memory is not blank: read FEh at offset 00105h.", kErrorBox);
    EXPECT_FALSE(programmer.BlankCheckFlash(united, {{0, 100}, {250, 12}}));
    EXPECT_EQ(progress.finished, 1);
}

TEST_F(Operations, BlankCheckOfNothingOrBeyondTheFlashIsGood) {
    Ready(OmCommandSet::AmdWord);
    target.chips[0].cells[0] = 0;
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {}));
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {{0, 0}}));
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {{600, 4}}));
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {{0xFFFFFFF0, 0x20}})) << "addresses wrapped";
}

TEST_F(Operations, VerifyAndBlankCheckStopWhenTheUserWants) {
    Ready(OmCommandSet::AmdWord);
    Fill(Bytes(400, 0));
    // At the opening the wish is not looked at; the first report of a block is the next.
    for (const size_t report : {1u, 2u, 3u, 50u}) {
        progress.reports.clear();
        progress.stopAtReport = report;
        ui.Expect(L"Verify operation was aborted by user.", kWarningBox);
        EXPECT_FALSE(programmer.VerifyFlash(united, ImageOf(0, Bytes(400, 0))));
        progress.reports.clear();
        ui.Expect(L"Blank check operation was aborted by user.", kWarningBox);
        EXPECT_FALSE(programmer.BlankCheckFlash(united, {{400, 112}}));
    }
    EXPECT_EQ(progress.finished, 8);
}

namespace {

// The sizes of the blocks in words, from the steps that the united callback has been given.
class BlockWatcher : public OmUnitedProgressCallback {
  public:
    explicit BlockWatcher(OmProgressCallback* callback) : OmUnitedProgressCallback(callback) {}

    bool OnProgress(int percent, const wchar_t* message) override {
        if (base != lastBase_ || scale != lastScale_)
            blocks.push_back(static_cast<int>(scale * total + 0.5));
        lastBase_ = base;
        lastScale_ = scale;
        return OmUnitedProgressCallback::OnProgress(percent, message);
    }

    double total = 0;
    std::vector<int> blocks;

  private:
    uint32_t lastBase_ = 0;
    double lastScale_ = 1.0; // as the opening reports
};

} // namespace

TEST_F(Operations, CompareBlocksFollowTheClock) {
    struct Case {
        uint64_t microsecondsPerScan;
        std::vector<int> blocks; // in words, of 256; the first one is always 100
    };

    const Case cases[] = {
        {0, {100, 156}},             // no time passed: twice as many, 56 are left over
        {20000, {100, 98, 58}},      // 102 scans, one of them idle, take 2040 ms
        {200000, {100, 9, 8, 8, 8}}, // 102 scans take 20.4 s, 11 take 2.2 s
    };
    for (const Case& c : cases) {
        Ready(OmCommandSet::AmdWord);
        BlockWatcher watcher(&progress);
        watcher.total = 257;
        target.onScan = [&] { clock.microseconds += c.microsecondsPerScan; };
        EXPECT_TRUE(programmer.BlankCheckFlash(watcher, {{0, 512}}));
        target.onScan = nullptr;
        ASSERT_GE(watcher.blocks.size(), c.blocks.size()) << c.microsecondsPerScan;
        watcher.blocks.resize(c.blocks.size());
        EXPECT_EQ(watcher.blocks, c.blocks) << c.microsecondsPerScan;
    }
}

TEST_F(Operations, CompareBlockNeverShrinksToNothing) {
    Ready(OmCommandSet::AmdWord);
    target.chips[1].cells[255] = 0;
    target.onScan = [&] { clock.AdvanceMilliseconds(60000); }; // a hopeless cable
    ui.Expect(L"Flash memory is not blank: read 00h at offset 001FFh.", kErrorBox);
    EXPECT_FALSE(programmer.BlankCheckFlash(united, {{0, 512}}));
}

TEST_F(Operations, CompareMovesOneBarOverTheWhole) {
    Ready(OmCommandSet::AmdWord);
    progress.reports.clear();
    EXPECT_TRUE(programmer.BlankCheckFlash(united, {{0, 256}, {256, 256}}));
    int last = 0;
    for (const ProgressReport& report : progress.reports) {
        EXPECT_GE(report.percent, last);
        last = report.percent;
    }
    EXPECT_GE(last, 97);
    EXPECT_LE(last, 100);
}

TEST_F(Operations, BrokenConnectionEndsEachOperationWithABox) {
    const OmDataImage image = ImageOf(0, Bytes(32, 0x5A));
    OmDataImage readInto;
    const std::function<bool()> operations[] = {
        [&] { return programmer.ReadFlash(progress, 0, 32, readInto); },
        [&] { return programmer.ProgramFlash(progress, image); },
        [&] { return programmer.VerifyFlash(united, image); },
        [&] {
            return programmer.BlankCheckFlash(united, {{64, 32}});
        },
        [&] { return programmer.EraseSectors(progress, {0}); },
        [&] { return programmer.EraseChip(progress); },
        [&] { return programmer.LockSectors(progress, {0}); },
        [&] { return programmer.UnlockSectors(progress, {0}); },
    };
    for (size_t i = 0; i < std::size(operations); ++i) {
        for (const int calls : {0, 1, 5, 15}) {
            Ready(i < 6 ? OmCommandSet::AmdWord : OmCommandSet::IntelStandard);
            progress.finished = 0;
            target.callsUntilFailure = calls;
            ui.Expect(L"The pod has gone.", kErrorBox);
            EXPECT_FALSE(operations[i]()) << i << " after " << calls;
            EXPECT_EQ(progress.finished, 1);
            ExpectClosed();
            target.callsUntilFailure = -1;
        }
    }
}

TEST_F(Operations, DeadChainIsNoticedByTheFirstWordRead) {
    Ready(OmCommandSet::AmdWord);
    OmDataImage image;
    target.tdoStuckAt = 0; // every control cell seems to drive
    ui.Expect(L"ERROR: invalid bit sequence received from the JTAG chain. Check power and JTAG "
              L"adapter connections.",
              kErrorBox);
    const bool good = programmer.ReadFlash(progress, 0, 8, image);
    EXPECT_FALSE(good);
    ExpectClosed();
}

TEST_F(Operations, InfoReportsAFlashThatDoesNotAnswer) {
    programmer.SetDesignSetup(target.MakeSetup(kCmdSetAuto));
    ASSERT_TRUE(programmer.Prepare(kPrepareFlashCommands));
    OmFlashReport report;
    EXPECT_TRUE(programmer.GetFlashInfo(report));
    EXPECT_EQ(report.commandSet.values, std::vector<std::wstring>{L"Unknown"});
    EXPECT_EQ(report.heading.values.size(), 2u);
    EXPECT_EQ(report.chips.front().values.front(), L"00h (Unknown)");
    EXPECT_EQ(programmer.commandSet, OmCommandSet::Unknown);
    EXPECT_TRUE(programmer.sectorsValid) << "from the setup";
}

TEST_F(Operations, InfoShowsWhatWasFoundAndNotWhatTheSetupSays) {
    Ready(OmCommandSet::AmdWord); // the setup names the set, the flash gives no identifier
    OmFlashReport report;
    EXPECT_TRUE(programmer.GetFlashInfo(report));
    EXPECT_FALSE(report.commandSetKnown);
    EXPECT_EQ(programmer.commandSet, OmCommandSet::AmdWord);
}

TEST_F(Operations, BrokenConnectionEndsTheInfoWithABox) {
    Ready(OmCommandSet::AmdWord);
    target.callsUntilFailure = 9;
    OmFlashReport report;
    ui.Expect(L"The pod has gone.", kErrorBox);
    EXPECT_FALSE(programmer.GetFlashInfo(report));
    ExpectClosed();
}
