// What the program takes each kind of array for, and what it says where it cannot tell.
#include "flash/Identification.h"
#include "tests/road/RoadFixture.h"

#include <functional>
#include <tuple>

namespace {

using Groups = std::vector<OmSectorGroup>;
using Set = OmCommandSet;

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
constexpr wchar_t kUnidentified[] =
    L"Failed to identify flash command set (or command set is unsupported).";

vb::BoardBuilder BoardOf(const char* set, const char* bufferBytes) {
    vb::BoardBuilder builder;
    builder.Devices(1).Set("set", set).Set("buffer", bufferBytes);
    return builder.Set("sectors", "4x1K,15x4K");
}

const Groups kTableGroups{{4, 1024}, {15, 4096}};

struct Bus {
    const char* name;
    unsigned chips;
    const char* widthBits;
    const char* shift;
    OmFlashIds ids; // of chips that say 0001h and 227Eh
};

constexpr Bus kBuses[] = {
    {"OneBy8", 1, "8", "0", {0x01, 0x7E}},
    {"TwoBy8", 2, "8", "0", {0x0101, 0x7E7E}},
    {"ThreeBy8", 3, "8", "0", {0x010101, 0x7E7E7E}},
    {"FourBy8", 4, "8", "0", {0x01010101, 0x7E7E7E7E}},
    {"OneBy16", 1, "16", "0", {0x0001, 0x227E}},
    {"TwoBy16", 2, "16", "0", {0x00010001, 0x227E227E}},
    {"OneBy32", 1, "32", "0", {0x00000001, 0x0000227E}},
    {"X16InX8", 1, "8", "1", {0x01, 0x7E}},
    {"FourX16InX8", 4, "8", "1", {0x01010101, 0x7E7E7E7E}},
    {"X32InX16", 1, "16", "1", {0x0001, 0x227E}},
    {"TwoX32InX16", 2, "16", "1", {0x00010001, 0x227E227E}},
    {"X32InX8", 1, "8", "2", {0x01, 0x7E}},
};

struct Chip {
    const char* name;
    const char* set;
    const char* bufferBytes;
    Set byTable;
    uint32_t tableBufferBytes;
    Set byIdentifiers;
};

constexpr Chip kChips[] = {
    {"AmdWord", "amd", "0", Set::AmdWord, 0, Set::AmdWord},
    {"AmdBuffered", "amd", "32", Set::AmdBuffered, 32, Set::AmdWord},
    {"IntelStandard", "intel", "0", Set::IntelStandard, 0, Set::IntelStandard},
    {"IntelExtended", "intel", "64", Set::IntelExtended, 64, Set::IntelStandard},
};

struct Table {
    const char* name;
    const char* cfi;
    bool isThere;
    bool tellsSectors;
    Groups groups;
};

const Table kTables[] = {
    {"Full", "full", true, true, kTableGroups},
    {"Alternative", "alternative", true, true, kTableGroups},
    {"NoRegions", "no-regions", true, true, {}},
    {"Short", "short", true, false, {}}, // ends ahead of the regions
    {"None", "none", false, false, {}},
};

using Case = std::tuple<size_t, size_t, size_t>; // bus, chip, table

std::string NameOf(const ::testing::TestParamInfo<Case>& info) {
    const auto& [bus, chip, table] = info.param;
    return std::string(kBuses[bus].name) + kChips[chip].name + kTables[table].name;
}

class EveryArray : public ::testing::TestWithParam<Case> {
  protected:
    const Bus& bus = kBuses[std::get<0>(GetParam())];
    const Chip& chip = kChips[std::get<1>(GetParam())];
    const Table& table = kTables[std::get<2>(GetParam())];
};

} // namespace

TEST_P(EveryArray, IsTakenForWhatItIs) {
    RecordingUserInterface user;
    Road road(BoardOf(chip.set, chip.bufferBytes)
                  .Chips(bus.chips)
                  .Set("width", bus.widthBits)
                  .Set("shift", bus.shift)
                  .Set("cfi", table.cfi));
    if (!table.tellsSectors)
        user.Expect(kNobodyKnows, kWarningBox);
    ASSERT_TRUE(road.PrepareToProgram());
    EXPECT_EQ(road.programmer.commandSet, table.isThere ? chip.byTable : chip.byIdentifiers);
    EXPECT_EQ(road.programmer.bufferBytes, table.isThere ? chip.tableBufferBytes : 0);
    EXPECT_EQ(road.programmer.sectorsValid, table.tellsSectors);
    EXPECT_EQ(road.programmer.sectors.groups, table.groups);

    OmDetectedFlash found;
    EXPECT_TRUE(OmFlashIdentifier(road.programmer.setup, *road.programmer.analyzer)
                    .DetectCommandSet(found));
    EXPECT_EQ(found.ids, bus.ids) << std::hex << found.ids.manufacturer << ' ' << found.ids.device;
}

INSTANTIATE_TEST_SUITE_P(All, EveryArray,
                         ::testing::Combine(::testing::Range<size_t>(0, std::size(kBuses)),
                                            ::testing::Range<size_t>(0, std::size(kChips)),
                                            ::testing::Range<size_t>(0, std::size(kTables))),
                         NameOf);

namespace {

struct Oddity {
    const char* name;
    std::function<void(vb::BoardBuilder&)> change; // of two AMD chips of 16 bits with a buffer
    Set commandSet;                                // unknown: not identified
    uint32_t bufferBytes;
    bool userSectors; // the setup defines some
    const wchar_t* box;
    Groups sectors;
};

using Builder = vb::BoardBuilder;

const Groups kUserGroups{{16, 4096}};

void NameNoManufacturer(Builder& builder) {
    builder.Set("cfi", "none").Set("manufacturer", "0x100");
}

// Both chips hold at both places what they would say in identifier mode.
void HoldTheIdentifiers(Builder& builder) {
    builder.Set("cfi", "none");
    for (const char* chip : {"F1", "F2"})
        builder.Line(std::string("poke ") + chip + " 0x0 0x0001")
            .Line(std::string("poke ") + chip + " 0x1 0x227E");
}

// In a narrower mode the second place is two words on.
void HoldTheShiftedIdentifiers(Builder& builder) {
    builder.Set("cfi", "none").Set("width", "8").Set("shift", "1");
    for (const char* chip : {"F1", "F2"})
        builder.Line(std::string("poke ") + chip + " 0x0 0x01")
            .Line(std::string("poke ") + chip + " 0x2 0x7E");
}

void BeDead(Builder& builder) {
    builder.Line("fault dead F1").Line("fault dead F2");
    for (int bit = 0; bit < 32; ++bit)
        builder.Line("pull D" + std::to_string(bit) + " up");
}

const Oddity kOddities[] = {
    {"OneTableOfTwoIsNone", [](Builder& b) { b.SetChip(1, "cfi", "none"); }, Set::AmdWord, 0, true,
     nullptr, kUserGroups},
    {"OneTableOfTwoAndNoSectors",
     [](Builder& b) { b.SetChip(0, "cfi", "none"); },
     Set::AmdWord,
     0,
     false,
     kNobodyKnows,
     {}},
    {"ADamagedQueryIsNoTable", [](Builder& b) { b.Line("fault query-byte F2 0x11 0x00"); },
     Set::AmdWord, 0, true, nullptr, kUserGroups},
    {"TheSmallerBufferCounts", [](Builder& b) { b.SetChip(1, "buffer", "16"); }, Set::AmdBuffered,
     16, false, nullptr, kTableGroups},
    {"ABufferInOneChipIsNone", [](Builder& b) { b.SetChip(1, "buffer", "0"); }, Set::AmdWord, 0,
     false, nullptr, kTableGroups},
    {"UnequalSectorsAreNone", [](Builder& b) { b.SetChip(1, "sectors", "16x4K"); },
     Set::AmdBuffered, 32, true, nullptr, kUserGroups},
    {"UnequalSectorsAndNoOthers",
     [](Builder& b) { b.SetChip(1, "sectors", "16x4K"); },
     Set::AmdBuffered,
     32,
     false,
     kNobodyKnows,
     {}},
    {"TheTableWins", [](Builder&) {}, Set::AmdBuffered, 32, true, kTableWins, kTableGroups},
    {"ATableOfNoRegionsWinsToo",
     [](Builder& b) { b.Set("cfi", "no-regions"); },
     Set::AmdBuffered,
     32,
     true,
     kTableWins,
     {}},
    {"ASizeOfZeroIs128Bytes",
     [](Builder& b) { b.Set("sectors", "32x128"); },
     Set::AmdBuffered,
     32,
     false,
     nullptr,
     {{32, 128}}},
    {"AForeignPrimaryCodeLeavesTheIdentifiers", [](Builder& b) { b.Set("primary", "6"); },
     Set::AmdWord, 0, false, nullptr, kTableGroups},
    {"ManufacturerZeroIsNoAnswer", NameNoManufacturer, Set::Unknown, 0, false, kUnidentified, {}},
    {"ContentsThatEqualTheIdentifiers",
     HoldTheIdentifiers,
     Set::Unknown,
     0,
     false,
     kUnidentified,
     {}},
    {"ContentsThatEqualTheShiftedIdentifiers",
     HoldTheShiftedIdentifiers,
     Set::Unknown,
     0,
     false,
     kUnidentified,
     {}},
    {"DeadChips", BeDead, Set::Unknown, 0, false, kUnidentified, {}},
};

class OddArray : public ::testing::TestWithParam<Oddity> {};

} // namespace

TEST_P(OddArray, IsTakenForTheSafest) {
    const Oddity& odd = GetParam();
    RecordingUserInterface user;
    vb::BoardBuilder builder = BoardOf("amd", "32").Chips(2);
    odd.change(builder);
    Road road(builder);
    if (odd.userSectors)
        road.programmer.setup.sectors.groups = kUserGroups;
    if (odd.box)
        user.Expect(odd.box, odd.box == kTableWins ? kInformationBox : kWarningBox);
    EXPECT_EQ(road.PrepareToProgram(), odd.commandSet != Set::Unknown);
    EXPECT_EQ(road.programmer.commandSet, odd.commandSet);
    EXPECT_EQ(road.programmer.bufferBytes, odd.bufferBytes);
    EXPECT_EQ(road.programmer.sectors.groups, odd.sectors);
}

INSTANTIATE_TEST_SUITE_P(Odd, OddArray, ::testing::ValuesIn(kOddities),
                         [](const auto& odd) { return std::string(odd.param.name); });
