#include "bsdl/BsdlData.h"

#include <gtest/gtest.h>

namespace {

OmBsdlData DataWithLength(const std::string& length) {
    OmBsdlData data;
    data.entity = "CHIP";
    data.AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", length);
    return data;
}

int InstructionLengthOf(const std::string& value) {
    OmBsdlData data;
    data.entity = "CHIP";
    data.AddAttribute("INSTRUCTION_LENGTH", "CHIP", "entity", value);
    return data.GetInstructionLength();
}

// A well-formed cell of which a test spoils one field.
struct CellTexts {
    std::string number = "1";
    std::string function = "output3";
    std::string safe = "x";
    std::string controlCell = "0";
    std::string disableValue = "1";
};

bool Add(OmBsdlData& data, const CellTexts& texts) {
    return data.AddCell(texts.number, "bc_1", "D(3)", texts.function, texts.safe, texts.controlCell,
                        texts.disableValue, "Z");
}

} // namespace

TEST(BsdlData, BoundaryLengthOfTheEntitySizesTheCellTable) {
    const struct {
        const char* name;
        const char* target;
        const char* targetClass;
        const char* value;
        size_t cells;
    } cases[] = {
        {"BOUNDARY_LENGTH", "CHIP", "entity", "3", 3},
        {"Boundary_Length", "chip", "ENTITY", "3", 3},
        {"BOUNDARY_LENGTH", "CHIP", "entity", " 12 bits", 12},
        {"BOUNDARY_LENGTH", "OTHER", "entity", "3", 0},
        {"BOUNDARY_LENGTH", "CHIP", "signal", "3", 0},
        {"BOUNDARY_LENGTHS", "CHIP", "entity", "3", 0},
        {"BOUNDARY_LENGTH", "CHIP", "entity", "0", 0},
        {"BOUNDARY_LENGTH", "CHIP", "entity", "-3", 0},
        {"BOUNDARY_LENGTH", "CHIP", "entity", "\"3\"", 0},
        {"BOUNDARY_LENGTH", "CHIP", "entity", "", 0},
    };

    for (const auto& each : cases) {
        OmBsdlData data;
        data.entity = "CHIP";
        data.AddAttribute(each.name, each.target, each.targetClass, each.value);
        EXPECT_EQ(data.GetBoundaryLength(), each.cells) << each.name << " " << each.value;
        EXPECT_EQ(data.attributes.size(), 1u);
    }
}

TEST(BsdlData, BoundaryLengthOutOfProportionCountsAsUnknown) {
    EXPECT_EQ(DataWithLength("1000000").GetBoundaryLength(), 1000000u);
    EXPECT_EQ(DataWithLength("1000001").GetBoundaryLength(), 0u);
    EXPECT_EQ(DataWithLength("1000000000").GetBoundaryLength(), 0u);
    EXPECT_EQ(DataWithLength("99999999999999999999").GetBoundaryLength(), 0u);
}

TEST(BsdlData, FirstUsableBoundaryLengthCounts) {
    OmBsdlData data = DataWithLength("0");
    data.AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", "8");
    ASSERT_TRUE(data.AddCell("1", "BC_1", "A", "output3", "X", "7", "0", "Z"));
    for (const char* later : {"2", "1000000"}) {
        data.AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", later);
        EXPECT_EQ(data.cells.size(), 8u) << later;
        EXPECT_EQ(data.cells[1].size(), 1u) << later;
    }
}

// A table of a million cells made anew for each of them would take minutes.
TEST(BsdlData, ManyEqualBoundaryLengthsAreOne) {
    OmBsdlData data = DataWithLength("1000000");
    for (int i = 0; i < 50000; ++i)
        data.AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", "1000000");
    EXPECT_EQ(data.GetBoundaryLength(), 1000000u);
}

// Comparing each code with all before it would take minutes.
TEST(BsdlData, ManyCodesOfOneInstructionAreKeptOnceEach) {
    OmBsdlData data;
    for (int round = 0; round < 2; ++round)
        for (int code = 100000; code < 300000; ++code)
            data.AddInstructionCode("Many", std::to_string(code));
    EXPECT_EQ(data.GetInstructionCodes("MANY").size(), 200000u);
    EXPECT_EQ(data.GetInstructionCodes("MANY").back(), "299999");
}

TEST(BsdlData, AttributesAreKeptInFileOrder) {
    OmBsdlData data;
    data.AddAttribute("TAP_SCAN_IN", "TDI", "signal", "true");
    data.AddAttribute("tap_scan_in", "TDI2", "signal", "true");
    const std::vector<OmBsdlAttribute> expected = {{"TAP_SCAN_IN", "TDI", "signal", "true"},
                                                   {"tap_scan_in", "TDI2", "signal", "true"}};
    EXPECT_EQ(data.attributes, expected);
}

TEST(BsdlData, InstructionLengthIsANumberOfTwoOrMore) {
    EXPECT_EQ(InstructionLengthOf("4"), 4);
    EXPECT_EQ(InstructionLengthOf("2"), 2);
    EXPECT_EQ(InstructionLengthOf(" 10 "), 10);
    EXPECT_EQ(InstructionLengthOf("1"), -1);
    EXPECT_EQ(InstructionLengthOf("0"), -1);
    EXPECT_EQ(InstructionLengthOf("-4"), -1);
    EXPECT_EQ(InstructionLengthOf("four"), -1);
    EXPECT_EQ(InstructionLengthOf("4000000000"), -1);
}

TEST(BsdlData, InstructionLengthComesFromTheFirstAttributeOfTheEntity) {
    OmBsdlData data;
    data.entity = "CHIP";
    data.AddAttribute("INSTRUCTION_LENGTH", "OTHER", "entity", "3");
    data.AddAttribute("INSTRUCTION_LENGTH", "CHIP", "signal", "5");
    data.AddAttribute("instruction_length", "chip", "Entity", "7");
    data.AddAttribute("INSTRUCTION_LENGTH", "CHIP", "entity", "9");
    EXPECT_EQ(data.GetInstructionLength(), 7);
}

TEST(BsdlData, InstructionLengthIsUnknownForANamelessEntity) {
    OmBsdlData data;
    data.AddAttribute("INSTRUCTION_LENGTH", "", "entity", "7");
    EXPECT_EQ(data.GetInstructionLength(), -1);
}

TEST(BsdlData, PortDirectionIsReadIgnoringCase) {
    OmBsdlData data;
    for (const char* direction : {"in", "OUT", "Buffer", "inOut", "LINKAGE", "sideways", ""})
        data.AddPort("P", direction, 7, 0);
    const std::vector<OmBsdlPort> expected = {
        {"P", OmBsdlPortDirection::In, 7, 0},        {"P", OmBsdlPortDirection::Out, 7, 0},
        {"P", OmBsdlPortDirection::Buffer, 7, 0},    {"P", OmBsdlPortDirection::Inout, 7, 0},
        {"P", OmBsdlPortDirection::Linkage, 7, 0},   {"P", OmBsdlPortDirection::Undefined, 7, 0},
        {"P", OmBsdlPortDirection::Undefined, 7, 0},
    };
    EXPECT_EQ(data.ports, expected);
}

TEST(BsdlData, DirectionNamesAreTheKeywordsOfTheLanguage) {
    EXPECT_STREQ(GetPortDirectionName(OmBsdlPortDirection::In), "in");
    EXPECT_STREQ(GetPortDirectionName(OmBsdlPortDirection::Out), "out");
    EXPECT_STREQ(GetPortDirectionName(OmBsdlPortDirection::Buffer), "buffer");
    EXPECT_STREQ(GetPortDirectionName(OmBsdlPortDirection::Inout), "inout");
    EXPECT_STREQ(GetPortDirectionName(OmBsdlPortDirection::Linkage), "linkage");
    EXPECT_EQ(GetPortDirectionName(OmBsdlPortDirection::Undefined), nullptr);
}

TEST(BsdlData, PinMappingsAreNamedInOrderOfTheirNames) {
    OmBsdlData data;
    data.AddPinMapEntry("QFP", "A", -1, "12");
    data.AddPinMapEntry("BGA", "D", 0, "B7");
    data.AddPinMapEntry("BGA", "D", 1, "B8");
    EXPECT_EQ(data.GetPinMappingNames(), (std::vector<std::string>{"BGA", "QFP"}));
    ASSERT_NE(data.FindPinMapping("BGA"), nullptr);
    const OmBsdlData::PinMapping expected = {{"D", 0, "B7"}, {"D", 1, "B8"}};
    EXPECT_EQ(*data.FindPinMapping("BGA"), expected);
    EXPECT_EQ(data.FindPinMapping("bga"), nullptr);
    EXPECT_EQ(data.FindPinMapping(""), nullptr);
}

TEST(BsdlData, DefaultPinMappingIsTrimmed) {
    OmBsdlData data;
    EXPECT_EQ(data.GetDefaultPinMapping(), nullptr);
    data.SetDefaultPinMapping(" \tQFP 100\t ");
    EXPECT_STREQ(data.GetDefaultPinMapping(), "QFP 100");
    data.SetDefaultPinMapping(" \t ");
    EXPECT_EQ(data.GetDefaultPinMapping(), nullptr);
}

TEST(BsdlData, InstructionKeepsEachCodeOnceUnderItsUpperCasedName) {
    OmBsdlData data;
    data.AddInstructionCode("Bypass", "111");
    data.AddInstructionCode("BYPASS", "000");
    data.AddInstructionCode("bypass", "111");
    data.AddInstructionCode("extest_2", "01X");
    EXPECT_EQ(data.GetInstructionCodes("byPass"), (std::vector<std::string>{"111", "000"}));
    EXPECT_EQ(data.GetInstructionCodes("EXTEST_2"), std::vector<std::string>{"01X"});
    EXPECT_TRUE(data.GetInstructionCodes("SAMPLE").empty());
    EXPECT_EQ(data.instructions.begin()->first, "BYPASS");
}

TEST(BsdlData, CellIsRefusedWhileTheBoundaryLengthIsUnknown) {
    OmBsdlData data;
    EXPECT_FALSE(data.AddCell("0", "BC_1", "A", "input", "X", "", "", ""));
    EXPECT_EQ(data.GetBoundaryLength(), 0u);
}

TEST(BsdlData, CellIsKeptWithAllItsFields) {
    OmBsdlData data = DataWithLength("4");
    ASSERT_TRUE(Add(data, {}));
    ASSERT_TRUE(data.AddCell("1", "Bc_4", "*", "Observe_Only", "0", "", "", ""));
    const OmBsdlCell first = {"BC_1", "D(3)", OmBsdlCellFunction::Output3, 'X', 0, 1, "Z"};
    const OmBsdlCell second = {"BC_4", "*", OmBsdlCellFunction::ObserveOnly, 0, -1, 'X', ""};
    EXPECT_EQ(data.cells[1], (std::vector<OmBsdlCell>{first, second}));
}

TEST(BsdlData, MalformedCellIsRefusedWhole) {
    const CellTexts cases[] = {
        {.number = "4"},        {.number = "-1"},
        {.number = "one"},      {.number = ""},
        {.function = "bid"},    {.function = ""},
        {.safe = "Z"},          {.safe = ""},
        {.safe = "10"},         {.controlCell = "4"},
        {.controlCell = "-1"},  {.controlCell = "x"},
        {.disableValue = "X"},  {.disableValue = "2"},
        {.disableValue = "01"}, {.number = "99999999999"},
    };
    for (const CellTexts& each : cases) {
        OmBsdlData data = DataWithLength("4");
        EXPECT_FALSE(Add(data, each));
        EXPECT_EQ(data.cells, std::vector<std::vector<OmBsdlCell>>(4));
    }
}

TEST(BsdlData, HighestCellNumberIsOneBelowTheLength) {
    OmBsdlData data = DataWithLength("4");
    EXPECT_TRUE(Add(data, {.number = "3", .controlCell = "3"}));
    EXPECT_TRUE(Add(data, {.number = "0", .disableValue = ""}));
    EXPECT_EQ(data.cells[0].at(0).DisableValue, kBitUnknown);
}

TEST(BsdlData, CellFunctionNamesGoBothWays) {
    const std::pair<OmBsdlCellFunction, const char*> cases[] = {
        {OmBsdlCellFunction::Input, "INPUT"},
        {OmBsdlCellFunction::Output2, "OUTPUT2"},
        {OmBsdlCellFunction::Output3, "OUTPUT3"},
        {OmBsdlCellFunction::Control, "CONTROL"},
        {OmBsdlCellFunction::ControlR, "CONTROLR"},
        {OmBsdlCellFunction::Internal, "INTERNAL"},
        {OmBsdlCellFunction::Clock, "CLOCK"},
        {OmBsdlCellFunction::Bidir, "BIDIR"},
        {OmBsdlCellFunction::ObserveOnly, "OBSERVE_ONLY"},
    };
    for (const auto& [function, name] : cases) {
        EXPECT_STREQ(GetCellFunctionName(function), name);
        EXPECT_EQ(FindCellFunction(name), function);
    }
    EXPECT_EQ(FindCellFunction("observe_Only"), OmBsdlCellFunction::ObserveOnly);
    EXPECT_EQ(FindCellFunction("OUTPUT"), std::nullopt);
}

TEST(BsdlData, NamesCompareByAsciiLettersOnly) {
    EXPECT_TRUE(EqualsIgnoringCase("Bc_1", "bC_1"));
    EXPECT_FALSE(EqualsIgnoringCase("BC_1", "BC_10"));
    EXPECT_FALSE(EqualsIgnoringCase("\xE4", "\xC4"));
    EXPECT_TRUE(EqualsIgnoringCase("", ""));
}

TEST(BsdlData, CopyIsIndependentOfItsOriginal) {
    OmBsdlData data = DataWithLength("2");
    const OmBsdlData copy = data;
    ASSERT_TRUE(data.AddCell("0", "BC_1", "A", "input", "X", "", "", ""));
    EXPECT_TRUE(copy.cells[0].empty());
    EXPECT_FALSE(copy == data);
}
