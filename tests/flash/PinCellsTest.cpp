#include "flash/PinCells.h"

#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

namespace {

constexpr uint32_t kBase = 2; // place of the device's register in the images below

OmPinCellList Find(const std::vector<CellRow>& cells, const std::string& port, int index = -1) {
    const std::vector<OmChainDevice> chain{MakeDevice("dev", 8, cells)};
    OmPinCellList pin;
    FindPinCells(pin, MakePin(0, port, index), chain);
    return pin;
}

// The image after setting a pin, starting from all 'X', the two elements ahead of the register
// left out; element 0 first.
std::string Set(const OmPinCellList& pin, uint8_t value) {
    OmBitVector image(kBase + 8, kBitUnknown);
    SetPinValue(pin, value, image, kBase);
    EXPECT_EQ(image[kBase - 1], kBitUnknown) << "outside the register";
    return BitsToText(image, OmBitOrder::LowestFirst).substr(kBase);
}

uint8_t Get(const OmPinCellList& pin, const char* lowestFirst) {
    OmBitVector image(kBase, kBitUnknown);
    const std::string text(lowestFirst);
    AppendBits(image, BitsFromText(std::string(text.rbegin(), text.rend())));
    return GetPinValue(pin, image, kBase);
}

const std::vector<CellRow> kSplit{{0, "*", "CONTROL", "0"},
                                  {1, "D(3)", "OUTPUT3", "X", "0", "0"},
                                  {2, "D(3)", "INPUT"},
                                  {3, "D(4)", "INPUT"}};

} // namespace

TEST(PinCells, SplitBidirectionalPortHasBothItsEntries) {
    const OmPinCellList pin = Find(kSplit, "D", 3);
    ASSERT_EQ(pin.cells.size(), 2u);
    EXPECT_EQ(pin.cells[0].cellNumber, 1u);
    EXPECT_EQ(pin.cells[1].cellNumber, 2u);
}

TEST(PinCells, SecondEntryOfACellIsFound) {
    const OmPinCellList pin = Find({{5, "P", "INPUT"}, {5, "Q", "OUTPUT2"}}, "Q");
    ASSERT_EQ(pin.cells.size(), 1u);
    EXPECT_EQ(pin.cells[0].cellNumber, 5u);
    EXPECT_EQ(pin.cells[0].entryIndex, 1u);
}

TEST(PinCells, PortNamesMatchWithoutRegardToCase) {
    EXPECT_EQ(Find({{0, "flash_we", "OUTPUT2"}}, "FLASH_WE").cells.size(), 1u);
}

TEST(PinCells, ScalarPortMatchesOnlyWithoutAnIndex) {
    EXPECT_EQ(Find({{0, "WE", "OUTPUT2"}}, "WE", -1).cells.size(), 1u);
    EXPECT_TRUE(Find({{0, "WE", "OUTPUT2"}}, "WE", 0).cells.empty());
    EXPECT_TRUE(Find({{0, "WE(0)", "OUTPUT2"}}, "WE", -1).cells.empty());
}

TEST(PinCells, CellsOfNoPortMatchNothing) {
    EXPECT_TRUE(Find({{0, "*", "CONTROL"}}, "*").cells.empty());
}

TEST(PinCells, DeviceWithoutBsdlDataOrOutsideTheChainHasNoCells) {
    const std::vector<OmChainDevice> chain(1);
    OmPinCellList pin;
    pin.cells.resize(3);
    EXPECT_FALSE(FindPinCells(pin, MakePin(0, "A"), chain));
    EXPECT_TRUE(pin.cells.empty());
    EXPECT_FALSE(FindPinCells(pin, MakePin(1, "A"), chain));
}

TEST(PinCells, PinNameNamesDeviceEntityPortAndIndex) {
    const std::vector<OmChainDevice> chain{MakeDevice("xc9572", 1, {}), OmChainDevice()};
    EXPECT_EQ(FormatPinName(chain, MakePin(0, "PB00_04")), L"Dev1 (xc9572) PB00_04");
    EXPECT_EQ(FormatPinName(chain, MakePin(1, "D", 7)), L"Dev2 D(7)");
    EXPECT_EQ(FormatPinName(chain, MakePin(2, "D", 7)), L"<invalid_signal>");
    EXPECT_EQ(FormatPinName(chain, MakePin(-1, "D", 7)), L"<invalid_signal>");
}

TEST(PinCells, SettingWritesTheOutputAndItsControlCellOnly) {
    const struct {
        const char* what;
        std::vector<CellRow> cells;
        uint8_t value;
        const char* image;
    } cases[] = {
        {"split, 0", kSplit, 0, "10XXXXXX"},
        {"split, 1", kSplit, 1, "11XXXXXX"},
        {"split, Z", kSplit, 'Z', "0XXXXXXX"},
        {"disable value 1", {{0, "D(3)", "OUTPUT3", "X", "7", "1"}}, 1, "1XXXXXX0"},
        {"disable value 1, Z", {{0, "D(3)", "OUTPUT3", "X", "7", "1"}}, 'Z', "XXXXXXX1"},
        {"BIDIR", {{4, "D(3)", "BIDIR", "X", "5", "0"}}, 1, "XXXX11XX"},
        {"BIDIR without control, Z", {{4, "D(3)", "BIDIR"}}, 'Z', "XXXXXXXX"},
        {"BIDIR without control", {{4, "D(3)", "BIDIR"}}, 0, "XXXX0XXX"},
        {"OUTPUT2", {{4, "D(3)", "OUTPUT2"}}, 1, "XXXX1XXX"},
        {"OUTPUT2 leaves a control cell", {{4, "D(3)", "OUTPUT2", "X", "5", "0"}}, 1, "XXXX1XXX"},
        {"OUTPUT2, Z", {{4, "D(3)", "OUTPUT2"}}, 'Z', "XXXXXXXX"},
        {"INPUT", {{4, "D(3)", "INPUT"}}, 1, "XXXXXXXX"},
        {"CLOCK", {{4, "D(3)", "CLOCK"}}, 1, "XXXXXXXX"},
        {"INTERNAL", {{4, "D(3)", "INTERNAL"}}, 1, "XXXXXXXX"},
        {"OBSERVE_ONLY", {{4, "D(3)", "OBSERVE_ONLY"}}, 1, "XXXXXXXX"},
    };

    for (const auto& row : cases)
        EXPECT_EQ(Set(Find(row.cells, "D", 3), row.value), row.image) << row.what;
}

TEST(PinCells, ReadingTakesTheLastCellThatSensesThePin) {
    const std::vector<CellRow> bidir{{4, "D(3)", "BIDIR", "X", "5", "0"}};

    const struct {
        const char* what;
        std::vector<CellRow> cells;
        const char* image;
        uint8_t value;
    } cases[] = {
        {"split, 1", kSplit, "00100000", 1},
        {"split, 0, driver on", kSplit, "11010000", 0},
        {"BIDIR released, 1", bidir, "00001000", 1},
        {"BIDIR released, 0", bidir, "11110011", 0},
        {"BIDIR driven", bidir, "00001100", 'X'},
        {"BIDIR without control", {{4, "D(3)", "BIDIR"}}, "00001000", 'X'},
        {"OUTPUT3", {{4, "D(3)", "OUTPUT3", "X", "5", "0"}}, "00001000", 'X'},
        {"CLOCK", {{4, "D(3)", "CLOCK"}}, "00001000", 1},
        {"INTERNAL", {{4, "D(3)", "INTERNAL"}}, "00001000", 1},
        {"OBSERVE_ONLY", {{4, "D(3)", "OBSERVE_ONLY"}}, "00001000", 1},
        {"two, the last", {{1, "D(3)", "INPUT"}, {2, "D(3)", "INPUT"}}, "01000000", 0},
        {"INPUT, then BIDIR driven",
         {{1, "D(3)", "INPUT"}, {4, "D(3)", "BIDIR", "X", "5", "0"}},
         "01000100",
         1},
    };

    for (const auto& row : cases)
        EXPECT_EQ(Get(Find(row.cells, "D", 3), row.image), row.value) << row.what;
}

TEST(PinCells, PinWithoutCellsIsLeftAloneAndReadsAsUnknown) {
    EXPECT_EQ(Set({}, 1), "XXXXXXXX");
    EXPECT_EQ(Get({}, "11111111"), 'X');
}
