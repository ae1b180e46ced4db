#include "flash/CommandSets.h"

#include "flash/BulkProgramming.h"
#include "flash/Identification.h"
#include "tests/flash/ProgrammerFixture.h"

namespace {

// A set that no chip has: everything that asks for sets must find it by its row alone.
constexpr auto kMadeUp = static_cast<OmCommandSet>(70);
constexpr auto kMadeUpBuffered = static_cast<OmCommandSet>(71);
constexpr int kMadeUpChoice = 7;
constexpr uint16_t kMadeUpCodes[] = {0x7777};

std::vector<std::string> calls;

std::string WithOffset(const char* call, uint32_t chipOffset) {
    return call + (" " + std::to_string(chipOffset));
}

class MadeUpBulk : public OmBulkCommands {
  public:
    MadeUpBulk(const char* name, const OmProgramOptions& options)
        : OmBulkCommands(options.wordsPerBlock) {
        calls.push_back(std::string(name) + (options.bypass ? " with bypass, blocks of " : " ") +
                        std::to_string(options.wordsPerBlock));
    }

    void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const override {
        batch.AppendWrite(item.front().address, item.front().value);
        batch.AppendRise();
        AppendStatusRead(batch, wait);
    }

    int ClosingScans() const override { return 0; }

    void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                         int wait) const override {
        AppendItem(batch, item, wait);
    }

    OmItemState Judge(const OmBoundaryScanBus&, const OmProgramBlock&, uint32_t) const override {
        return OmItemState::Done;
    }

    void Resume(OmBusCycleBatch&, const OmProgramBlock&) const override {}

    void Renew(OmBusCycleBatch&) const override {}

    void Close(OmBusCycleBatch&) const override { calls.push_back("close"); }
};

template <bool Buffered>
std::unique_ptr<OmBulkCommands> MakeMadeUp(const OmProgramOptions& options) {
    return std::make_unique<MadeUpBulk>(Buffered ? "buffers" : "words", options);
}

const OmCommandSetRow kMadeUpRow = {
    .words = {kMadeUp, "Made-up", kMadeUpCodes, MakeMadeUp<false>},
    .buffers = {kMadeUpBuffered, "Made-up in buffers", kMadeUpCodes, MakeMadeUp<true>},
    .setupChoice = kMadeUpChoice,
    .hasBypass = true,
    .reset = [](OmBoundaryScanBus&) { calls.push_back("reset"); },
    .readIds =
        [](OmBoundaryScanBus&) {
            calls.push_back("readIds");
            return OmFlashIds{0x4D4D, 0x5555};
        },
    .eraseSector =
        [](OmBoundaryScanBus&, OmProgressCallback&, uint32_t chipOffset) {
            calls.push_back(WithOffset("erase", chipOffset));
            return OmFlashResult::Done;
        },
    .eraseChip = nullptr,
    .setLock =
        [](OmBoundaryScanBus&, OmProgressCallback&, bool lock, uint32_t chipOffset) {
            calls.push_back(WithOffset(lock ? "lock" : "unlock", chipOffset));
            return OmFlashResult::Done;
        },
};

OmCfiBuffer MadeUpTable(uint8_t bufferExponent) {
    OmCfiBuffer table(29);
    table[0] = 'Q';
    table[1] = 'R';
    table[2] = 'Y';
    table[3] = table[4] = 0x77;
    table[26] = bufferExponent;
    return table;
}

// The program's own rows and the made-up one behind them.
class ThirdSet : public ProgrammerFixture {
  protected:
    ThirdSet() : ProgrammerFixture(2, 1, 8) {
        rows_.assign(GetCommandSets().begin(), GetCommandSets().end());
        rows_.push_back(&kMadeUpRow);
        SetCommandSets(rows_);
        calls.clear();
    }

    ~ThirdSet() override { SetCommandSets({}); }

    void ReadyWith(OmCommandSet set) {
        Ready(OmCommandSet::AmdWord);
        programmer.commandSet = set;
        calls.clear();
    }

    using Calls = std::vector<std::string>;

  private:
    std::vector<const OmCommandSetRow*> rows_;
};

} // namespace

TEST(CommandSets, EveryRowIsWhole) {
    std::vector<OmCommandSet> seen;
    for (const OmCommandSetRow* row : GetCommandSets()) {
        EXPECT_TRUE(row->reset && row->readIds && row->eraseSector && row->words.make);
        for (const OmProgramForm* form : {&row->words, &row->buffers}) {
            if (!form->make)
                continue;
            EXPECT_TRUE(form->name && !form->cfiCodes.empty());
            EXPECT_NE(form->set, OmCommandSet::Unknown);
            EXPECT_EQ(std::count(seen.begin(), seen.end(), form->set), 0) << "one row a set";
            seen.push_back(form->set);
            EXPECT_EQ(FindCommandSet(form->set), row);
            EXPECT_EQ(FindProgramForm(form->set), form);
        }
    }
    EXPECT_EQ(seen.size(), 4u);
}

TEST(CommandSets, TellWhatASetCanDo) {
    EXPECT_TRUE(CanEraseChip(OmCommandSet::AmdBuffered));
    EXPECT_FALSE(CanEraseChip(OmCommandSet::IntelExtended));
    EXPECT_FALSE(CanEraseChip(OmCommandSet::Unknown));
    EXPECT_TRUE(CanLockSectors(OmCommandSet::IntelStandard));
    EXPECT_FALSE(CanLockSectors(OmCommandSet::AmdWord));
    EXPECT_FALSE(CanLockSectors(OmCommandSet::Unknown));
    EXPECT_EQ(WordByWord(OmCommandSet::IntelExtended), OmCommandSet::IntelStandard);
    EXPECT_EQ(WordByWord(OmCommandSet::AmdBuffered), OmCommandSet::AmdWord);
    EXPECT_EQ(WordByWord(OmCommandSet::Unknown), OmCommandSet::Unknown);
    EXPECT_EQ(FindCommandSet(OmCommandSet::Unknown), nullptr);
    EXPECT_EQ(FindCommandSetOfSetup(kCmdSetAuto), nullptr);
    EXPECT_EQ(FindCommandSetOfSetup(kCmdSetAmd)->words.set, OmCommandSet::AmdWord);
}

TEST_F(ThirdSet, IsFoundInTheTablesOfTheFlash) {
    const std::vector<OmCfiBuffer> buffered{MadeUpTable(5), MadeUpTable(6)};
    EXPECT_EQ(FindCommandSetInCfi(buffered), (OmCfiFindings{kMadeUpBuffered, 32}));
    const std::vector<OmCfiBuffer> plain{MadeUpTable(0), MadeUpTable(5)};
    EXPECT_EQ(FindCommandSetInCfi(plain), (OmCfiFindings{kMadeUp, 0}));
}

TEST_F(ThirdSet, IsFoundByItsIdentifiers) {
    programmer.SetDesignSetup(target.MakeSetup(kCmdSetAuto));
    EXPECT_TRUE(programmer.Prepare(kPrepareFlashCommands | kPrepareIdentify));
    EXPECT_EQ(programmer.commandSet, kMadeUp);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "readIds"), 1);
}

TEST_F(ThirdSet, CanBeFixedByTheSetup) {
    OmDesignSetup setup = target.MakeSetup(kCmdSetAuto);
    setup.CmdSet = kMadeUpChoice;
    programmer.SetDesignSetup(setup);
    EXPECT_TRUE(programmer.Prepare(kPrepareFlashCommands | kPrepareIdentify));
    EXPECT_EQ(programmer.commandSet, kMadeUp);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "readIds"), 0);
}

TEST_F(ThirdSet, HasItsName) {
    EXPECT_EQ(GetCommandSetName(kMadeUp), L"Made-up");
    EXPECT_EQ(GetCommandSetName(kMadeUpBuffered), L"Made-up in buffers");
}

TEST_F(ThirdSet, ErasesItsSectorsAndWithoutAChipEraseAllOfThem) {
    ReadyWith(kMadeUpBuffered);
    EXPECT_TRUE(programmer.EraseSectors(progress, {16}));
    EXPECT_EQ(calls, (Calls{"reset", "erase 16"}));
    calls.clear();
    programmer.sectors.groups = {{3, 16}};
    EXPECT_TRUE(programmer.EraseChip(progress));
    EXPECT_EQ(calls, (Calls{"reset", "erase 0", "erase 16", "erase 32"}));
}

TEST_F(ThirdSet, LocksAndUnlocksWithoutAQuestion) {
    ReadyWith(kMadeUp);
    EXPECT_TRUE(programmer.ConfirmIntelCommandSet());
    EXPECT_TRUE(programmer.LockSectors(progress, {16}));
    EXPECT_TRUE(programmer.UnlockSectors(progress, {32}));
    EXPECT_EQ(calls, (Calls{"reset", "lock 16", "reset", "unlock 32"}));
}

TEST_F(ThirdSet, ProgramsInItsOwnForms) {
    ReadyWith(kMadeUp);
    programmer.setup.UseUnlockBypass = true;
    EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2})));
    EXPECT_EQ(calls, (Calls{"reset", "words with bypass, blocks of 1", "close"}));
    ReadyWith(kMadeUpBuffered);
    programmer.bufferBytes = 8;
    EXPECT_TRUE(programmer.ProgramFlash(progress, ImageOf(0, {1, 2})));
    EXPECT_EQ(calls, (Calls{"reset", "buffers 8", "close"}));
}
