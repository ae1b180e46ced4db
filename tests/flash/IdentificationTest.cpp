#include "flash/Identification.h"

#include "flash/InstructionTable.h"
#include "tests/flash/FlashBench.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kTableWins[] =
    L"The detected flash is CFI-compliant and provides information on sectors in the CFI table. "
    L"Therefore the user-defined sectors configuration is ignored.\n\nTo disable this alert, "
    L"please clear sectors configuration in Setup dialog by checking 'Flash is CFI-compliant -- no "
    L"need to define sectors info' checkbox.";
constexpr wchar_t kNobodyKnows[] =
    L"The detected flash is not CFI-compliant and does not provide sectors information. For "
    L"non-CFI devices, sectors configuration can be manually entered using Setup dialog. Without "
    L"this information it will not be possible to erase individual sectors and to lock/unlock "
    L"sectors. In addition, if a chip does not support the 'full chip erase' command the entire "
    L"flash erase operation will also be disabled.";

// One 16-bit chip that answers to identifier and query commands.
struct ModelChip {
    bool speaksIntel = false;
    bool speaksAmd = false;
    uint16_t manufacturer = 0;
    uint16_t device = 0;
    uint16_t array[2] = {0xFFFF, 0xFFFF}; // at the places of the identifiers
    std::vector<uint8_t> cfi = {};        // from query address 10h; empty for none

    enum { Array, Ids, Query } mode = Array;

    int unlocked = 0; // unlock cycles seen

    void Write(uint32_t address, uint8_t command) {
        if (command == 0xF0 || command == 0xFF) {
            mode = Array;
        } else if (command == 0x90) {
            if (speaksIntel || (speaksAmd && unlocked == 2))
                mode = Ids;
        } else if (command == 0x98 && address == 0x55 && !cfi.empty()) {
            mode = Query;
        }
        const bool first = command == 0xAA && address == 0x55555;
        const bool second = command == 0x55 && address == 0xAAAAA && unlocked == 1;
        unlocked = first ? 1 : second ? 2 : 0;
    }

    uint16_t Read(uint32_t address) const {
        if (mode == Ids)
            return address == 0 ? manufacturer : address == 1 ? device : 0;
        if (mode == Query)
            return address >= 0x10 && address - 0x10 < cfi.size() ? cfi[address - 0x10] : 0;
        return address < 2 ? array[address] : 0xFFFF;
    }
};

// The boot-sector table of an AMD or Intel chip with a write buffer of 32 bytes.
std::vector<uint8_t> CfiOf(uint8_t primary) {
    std::vector<uint8_t> bytes(37);
    bytes[0] = 'Q';
    bytes[1] = 'R';
    bytes[2] = 'Y';
    bytes[3] = primary;
    bytes[5] = 0x40;
    bytes[26] = 5;
    bytes[28] = 2;
    bytes[29] = 7;
    bytes[31] = 0x20;
    bytes[33] = 126;
    bytes[36] = 1;
    return bytes;
}

ModelChip AmdChip() {
    return {.speaksAmd = true, .manufacturer = 0x0001, .device = 0x227E};
}

ModelChip IntelChip() {
    return {.speaksIntel = true, .manufacturer = 0x0089, .device = 0x8922};
}

ModelChip WithCfi(ModelChip chip, uint8_t primary) {
    chip.cfi = CfiOf(primary);
    return chip;
}

class Board {
  public:
    explicit Board(std::vector<ModelChip> someChips)
        : chips(std::move(someChips)), bench({.chips = static_cast<int>(chips.size())}) {
        FillInstructionTable(bench.setup.devices, bench.analyzer);
        bench.cable.keepLog = false;
        bench.cable.onWrite = [this](uint32_t address, uint32_t data) {
            for (size_t i = 0; i < chips.size(); ++i)
                chips[i].Write(address, static_cast<uint8_t>(data >> (16 * i)));
        };
        bench.cable.flash = [this](const BenchPins& pins) {
            uint32_t word = 0;
            for (size_t i = 0; i < chips.size(); ++i)
                word |= uint32_t{chips[i].Read(pins.address)} << (16 * i);
            return word;
        };
    }

    bool IsInReadMode() const {
        for (const ModelChip& chip : chips)
            if (chip.mode != ModelChip::Array)
                return false;
        return true;
    }

    std::vector<ModelChip> chips;
    FlashBench bench;
    OmFlashIdentifier identifier{bench.setup, bench.analyzer};
};

OmFlashSectorLayout UserSectors() {
    OmFlashSectorLayout layout;
    layout.groups = {{4, 0x4000}};
    return layout;
}

OmFlashSectorLayout TableSectors() {
    OmFlashSectorLayout layout;
    layout.groups = {{8, 0x2000}, {127, 0x10000}};
    return layout;
}

} // namespace

TEST(Identification, NeutralModeSpeaksBothLanguages) {
    FlashBench bench;
    ResetFlashModes(bench.bus);
    EXPECT_EQ(bench.TakeLog(),
              std::string("\n") + kIdleLog + kAmdResetLog + kIntelReadArrayLog + kIdleLog);
}

TEST(Identification, CommandSetAndIdentifiersAreDetected) {
    using Set = OmCommandSet;
    ModelChip mute; // neither language
    ModelChip contentsAreIds = AmdChip();
    contentsAreIds.array[0] = 0x0001;
    contentsAreIds.array[1] = 0x227E;
    ModelChip firstContentIsId = AmdChip();
    firstContentIsId.array[0] = 0x0001;
    ModelChip zeroManufacturer = AmdChip();
    zeroManufacturer.manufacturer = 0x0100; // low byte 0
    ModelChip amdCfiWithoutIds;
    amdCfiWithoutIds.cfi = CfiOf(2);
    ModelChip bilingual = AmdChip();
    bilingual.speaksIntel = true;

    const struct {
        const char* what;
        std::vector<ModelChip> chips;
        bool found;
        Set set;
        OmFlashIds ids;
        uint32_t bufferBytes;
    } cases[] = {
        {"AMD identifiers", {AmdChip()}, true, Set::AmdWord, {0x0001, 0x227E}, 0},
        {"Intel identifiers", {IntelChip()}, true, Set::IntelStandard, {0x0089, 0x8922}, 0},
        {"AMD with a table", {WithCfi(AmdChip(), 2)}, true, Set::AmdBuffered, {0x0001, 0x227E}, 32},
        {"Intel with a table",
         {WithCfi(IntelChip(), 1)},
         true,
         Set::IntelExtended,
         {0x0089, 0x8922},
         32},
        {"two chips",
         {WithCfi(AmdChip(), 2), WithCfi(AmdChip(), 2)},
         true,
         Set::AmdBuffered,
         {0x00010001, 0x227E227E},
         32},
        {"two chips, one table",
         {WithCfi(AmdChip(), 2), AmdChip()},
         true,
         Set::AmdWord,
         {0x00010001, 0x227E227E},
         0},
        {"no answer", {mute}, false, Set::Unknown, {}, 0},
        {"array holds the identifiers", {contentsAreIds}, false, Set::Unknown, {}, 0},
        {"array holds one of them", {firstContentIsId}, true, Set::AmdWord, {0x0001, 0x227E}, 0},
        {"manufacturer 0", {zeroManufacturer}, false, Set::Unknown, {}, 0},
        {"manufacturer 0 in one lane", {AmdChip(), zeroManufacturer}, false, Set::Unknown, {}, 0},
        {"table without identifiers",
         {amdCfiWithoutIds},
         true,
         Set::AmdBuffered,
         {0xFFFF, 0xFFFF},
         32},
        {"Intel answers, table says AMD",
         {WithCfi(bilingual, 2)},
         true,
         Set::AmdBuffered,
         {0x0001, 0x227E},
         32},
    };

    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        RecordingUserInterface user;
        Board board(row.chips);
        OmDetectedFlash found;
        found.bufferBytes = 99;
        EXPECT_EQ(board.identifier.DetectCommandSet(found), row.found);
        EXPECT_EQ(found.commandSet, row.set);
        EXPECT_EQ(found.ids.manufacturer, row.ids.manufacturer);
        EXPECT_EQ(found.ids.device, row.ids.device);
        EXPECT_EQ(found.bufferBytes, row.bufferBytes);
        EXPECT_TRUE(board.IsInReadMode());
        EXPECT_EQ(user.busyDepth, 0);
        EXPECT_GT(user.busyCount, 0);
    }
}

TEST(Identification, TablesAreReadOnce) {
    RecordingUserInterface user;
    Board board({WithCfi(AmdChip(), 2)});
    EXPECT_EQ(board.identifier.EnsureCfi().chips[0], CfiOf(2));
    const size_t scans = board.bench.cable.scanCount;
    EXPECT_TRUE(board.identifier.EnsureCfi().read);
    EXPECT_EQ(board.bench.cable.scanCount, scans);
}

TEST(Identification, CommandSetOfTheSetupNeedsNoFlash) {
    const struct {
        int32_t setting;
        OmCommandSet set;
    } cases[] = {{kCmdSetIntel, OmCommandSet::IntelStandard}, {kCmdSetAmd, OmCommandSet::AmdWord}};

    for (const auto& row : cases) {
        Board board({WithCfi(AmdChip(), 2)});
        board.bench.setup.CmdSet = row.setting;
        OmCommandSet set = OmCommandSet::Unknown;
        uint32_t bufferBytes = 0;
        EXPECT_TRUE(board.identifier.EnsureCommandSet(set, bufferBytes));
        EXPECT_EQ(set, row.set);
        EXPECT_EQ(board.bench.cable.scanCount, 0u);
    }
}

TEST(Identification, KnownCommandSetIsKept) {
    Board board({AmdChip()});
    OmCommandSet set = OmCommandSet::IntelExtended;
    uint32_t bufferBytes = 7;
    EXPECT_TRUE(board.identifier.EnsureCommandSet(set, bufferBytes));
    EXPECT_EQ(set, OmCommandSet::IntelExtended);
    EXPECT_EQ(bufferBytes, 7u);
    EXPECT_EQ(board.bench.cable.scanCount, 0u);
}

TEST(Identification, BufferedProgrammingNeedsTheUsersConsent) {
    const struct {
        ModelChip chip;
        bool buffered;
        OmCommandSet set;
    } cases[] = {{WithCfi(AmdChip(), 2), true, OmCommandSet::AmdBuffered},
                 {WithCfi(AmdChip(), 2), false, OmCommandSet::AmdWord},
                 {WithCfi(IntelChip(), 1), true, OmCommandSet::IntelExtended},
                 {WithCfi(IntelChip(), 1), false, OmCommandSet::IntelStandard}};

    for (const auto& row : cases) {
        RecordingUserInterface user;
        Board board({row.chip});
        board.bench.setup.UseBufferedProg = row.buffered;
        OmCommandSet set = OmCommandSet::Unknown;
        uint32_t bufferBytes = 0;
        EXPECT_TRUE(board.identifier.EnsureCommandSet(set, bufferBytes));
        EXPECT_EQ(set, row.set);
        EXPECT_EQ(bufferBytes, 32u);
    }
}

TEST(Identification, FailedDetectionLeavesTheCommandSetUnknown) {
    RecordingUserInterface user;
    Board board({ModelChip()});
    OmCommandSet set = OmCommandSet::Unknown;
    uint32_t bufferBytes = 7;
    EXPECT_FALSE(board.identifier.EnsureCommandSet(set, bufferBytes));
    EXPECT_EQ(set, OmCommandSet::Unknown);
    EXPECT_EQ(bufferBytes, 0u);
}

TEST(Identification, SectorsComeFromTheTables) {
    RecordingUserInterface user;
    Board board({WithCfi(AmdChip(), 2), WithCfi(AmdChip(), 2)});
    OmFlashSectorLayout sectors;
    bool valid = false;
    EXPECT_TRUE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_TRUE(valid);
    EXPECT_TRUE(sectors == TableSectors());
    const size_t scans = board.bench.cable.scanCount;
    EXPECT_TRUE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_EQ(board.bench.cable.scanCount, scans);
}

TEST(Identification, TablesWinOverTheUsersSectorsWithAnAlert) {
    RecordingUserInterface user;
    user.Expect(kTableWins, kInformationBox);
    Board board({WithCfi(AmdChip(), 2)});
    board.bench.setup.sectors = UserSectors();
    OmFlashSectorLayout sectors;
    bool valid = false;
    EXPECT_TRUE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_TRUE(sectors == TableSectors());
}

TEST(Identification, UsersSectorsCountWhereTheTablesDoNotTell) {
    RecordingUserInterface user;
    Board board({WithCfi(AmdChip(), 2), AmdChip()});
    board.bench.setup.sectors = UserSectors();
    OmFlashSectorLayout sectors;
    bool valid = false;
    EXPECT_TRUE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_TRUE(valid);
    EXPECT_TRUE(sectors == UserSectors());
}

TEST(Identification, SectorsThatNobodyKnowsAreReported) {
    RecordingUserInterface user;
    user.Expect(kNobodyKnows, kWarningBox);
    Board board({AmdChip()});
    OmFlashSectorLayout sectors = UserSectors();
    bool valid = false;
    EXPECT_FALSE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_FALSE(valid);
    EXPECT_TRUE(sectors.IsEmpty());
}

TEST(Identification, TableOfNoRegionsGivesAnEmptyValidLayout) {
    RecordingUserInterface user;
    ModelChip chip = WithCfi(AmdChip(), 2);
    chip.cfi.resize(29);
    chip.cfi[28] = 0;
    Board board({chip});
    OmFlashSectorLayout sectors = UserSectors();
    bool valid = false;
    EXPECT_TRUE(board.identifier.EnsureSectors(sectors, valid));
    EXPECT_TRUE(sectors.IsEmpty());
}
