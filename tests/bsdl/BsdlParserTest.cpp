#include "bsdl/BsdlParser.h"

#include "bsdl/BsdlData.h"
#include "tests/bsdl/BsdlSource.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <random>

namespace {

// Parses source text from a file of its own. The file's folder is cut out of the messages.
class BsdlParser : public testing::Test {
  protected:
    bool Parse(const std::string& source) {
        data = {};
        OmBsdlParserCallbackImpl callback;
        const bool accepted = ParseBsdlFile(folder.Write("x.bsd", source).c_str(), data, &callback);
        said = callback.text;
        const std::string prefix = folder.Path("");
        for (size_t at = said.find(prefix); at != std::string::npos; at = said.find(prefix))
            said.erase(at, prefix.size());
        return accepted;
    }

    bool ParseChanged(const std::string& from, const std::string& to) {
        return Parse(ChangedSource(from, to));
    }

    // Same, without what the scanner says about bytes that start no token.
    bool ParseQuietly(const std::string& source) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const bool accepted = Parse(source);
        testing::internal::GetCapturedStdout();
        testing::internal::GetCapturedStderr();
        return accepted;
    }

    TemporaryFolder folder;
    OmBsdlData data;
    std::string said;
};

} // namespace

TEST_F(BsdlParser, TakesAllThatAFileSays) {
    ASSERT_TRUE(Parse(SampleSource())) << said;
    EXPECT_EQ(said, "");
    EXPECT_EQ(data.entity, "Chip");
    EXPECT_STREQ(data.GetDefaultPinMapping(), "QFP_8");
    const std::vector<OmBsdlPort> ports = {{"TCK", OmBsdlPortDirection::In, -1, -1},
                                           {"TDI", OmBsdlPortDirection::In, -1, -1},
                                           {"D", OmBsdlPortDirection::Inout, 1, 0},
                                           {"VCC", OmBsdlPortDirection::Linkage, -1, -1}};
    EXPECT_EQ(data.ports, ports);
    const std::map<std::string, OmBsdlData::PinMapping> mappings = {
        {"QFP_8",
         {{"TCK", -1, "1"}, {"TDI", -1, "TWO"}, {"D", 0, "3"}, {"D", 1, "A4"}, {"VCC", -1, "5"}}}};
    EXPECT_EQ(data.pinMappings, mappings);
    const std::map<std::string, std::vector<std::string>> instructions = {
        {"BYPASS", {"1111", "10XX", "XXXX"}}, {"EXTEST", {"0000"}}, {"SAMPLE", {"0101"}}};
    EXPECT_EQ(data.instructions, instructions);
    EXPECT_EQ(data.idcodes, std::vector<std::string>{"XXXX0001001000110100000000101111"});
    const std::vector<std::vector<OmBsdlCell>> cells = {
        {{"BC_4", "D(0)", OmBsdlCellFunction::Input, 0, -1, 'X', ""},
         {"BC_2", "TDI", OmBsdlCellFunction::ObserveOnly, 'X', -1, 'X', ""}},
        {{"BC_1", "D(0)", OmBsdlCellFunction::Output3, 'X', 2, 1, "Z"}},
        {{"BC_1", "*", OmBsdlCellFunction::Control, 1, -1, 'X', ""}}};
    EXPECT_EQ(data.cells, cells);
}

TEST_F(BsdlParser, KeepsPlainAttributesAndNoOthers) {
    ASSERT_TRUE(Parse(SampleSource()));
    const std::vector<OmBsdlAttribute> expected = {
        {"PIN_MAP", "CHIP", "entity", "PHYSICAL_PIN_MAP"},
        {"TAP_SCAN_IN", "TDI", "signal", "true"},
        {"INSTRUCTION_LENGTH", "CHIP", "entity", "4"},
        {"BOUNDARY_LENGTH", "CHIP", "entity", "3"}};
    EXPECT_EQ(data.attributes, expected);
}

TEST_F(BsdlParser, StringAttributeKeepsItsFirstStringWithQuotes) {
    ASSERT_TRUE(ParseChanged("attribute TAP_SCAN_IN of TDI : signal is true;",
                             "attribute NOTE of CHIP : entity is \"one;\" & \"two\";"));
    EXPECT_EQ(data.attributes[1], (OmBsdlAttribute{"NOTE", "CHIP", "entity", "\"one;\""}));
}

TEST_F(BsdlParser, AcceptsEveryFormOfTheLanguage) {
    const std::pair<const char*, const char*> cases[] = {
        {" := \" QFP\" & \"_8\t\")", ")"},
        {"1 downto 0", "0 to 1"},
        {"VCC : linkage bit",
         "VCC, GND : linkage bit_vector(1 to 20); O : out bit; B : buffer bit"},
        {"use STD_1149_1_1994.all;", "use STD_1149_1_1994.all; USE Vendor.ALL;"},
        {"attribute PIN_MAP of CHIP", "attribute X : string; attribute PIN_MAP of CHIP"},
        {"constant QFP_8", "constant C : INTEGER; constant D : INTEGER := 5; constant QFP_8"},
        {"constant QFP_8", "constant C : BC := \"a\" & \"b\"; constant QFP_8"},
        {"(10.0e6, BOTH)", "(10, low)"},
        {"signal is true", "signal is FALSE"},
        {"entity is \"XX01\"", "entity is \"01\""},
        {"attribute IDCODE", "attribute INSTRUCTION_PRIVATE of CHIP : entity is \"A, B\" & \", C\";"
                             "attribute IDCODE"},
        {"attribute IDCODE", "attribute USERCODE_REGISTER of CHIP : entity is \"1X, X1, 11\";"
                             "attribute IDCODE"},
        {"attribute IDCODE", "attribute REGISTER_ACCESS of CHIP : entity is \"BOUNDARY (A, B),\" &"
                             "\"UDR[32] (C, D captures 01XX, E CAPTURES XX)\"; attribute IDCODE"},
        {"X, 2, 1, Z)", "X, 2, 0, pull1)"},
        {"X, 2, 1, Z)", "X, 2, 1, Keeper)"},
        {"end Chip;\n", "end Chip; anything -- at \"all"},
        {"end Chip;\n", "end Chip;"},
    };
    for (const auto& [from, to] : cases) {
        EXPECT_TRUE(ParseChanged(from, to)) << to << "\n" << said;
        EXPECT_EQ(data.cells.at(1).size(), 1u) << to;
        EXPECT_EQ(data.idcodes.size(), 1u) << to;
    }
}

TEST_F(BsdlParser, ReadsEveryKindOfLineEnd) {
    for (const char* lineEnd : {"\r\n", "\r", "\n\r"}) {
        std::string source = SampleSource();
        for (size_t at = 0; (at = source.find('\n', at)) != std::string::npos;) {
            source.replace(at, 1, lineEnd);
            at += std::string_view(lineEnd).size();
        }
        EXPECT_TRUE(Parse(source)) << said;
        EXPECT_EQ(data.cells.size(), 3u);
    }
}

TEST_F(BsdlParser, IdcodesBeyondOneAreAllKept) {
    ASSERT_TRUE(ParseChanged("\"1\";", "\"1, 0101,XX\";"));
    EXPECT_EQ(data.idcodes,
              (std::vector<std::string>{"XXXX0001001000110100000000101111", "0101", "XX"}));
}

TEST_F(BsdlParser, ClockClauseStoresNothingAndTheNextValueIsReadAsUsual) {
    ASSERT_TRUE(
        ParseChanged("(10.0e6, BOTH);",
                     "(1.0, LOW); attribute Tap_Scan_Clock of T2 : signal is (1.5e3, both);"));
    EXPECT_EQ(data.attributes.size(), 4u);
}

TEST_F(BsdlParser, SaysWhatIsWrongAndWhere) {
    const struct {
        const char* from;
        const char* to;
        const char* said;
    } cases[] = {
        {"entity Chip is", "package Chip is",
         "Error: (in 'x.bsd' on line 1) syntax error\n"
         "        : improper entity declaration; may be this is not a BSDL file\n"},
        {"entity Chip is", "entity Chip\n\nof",
         "Error: (in 'x.bsd' on line 3) syntax error\n"
         "        : improper entity declaration; may be this is not a BSDL file\n"},
        {"generic (", "generic ",
         "Error: (in 'x.bsd' on line 2) syntax error\n"
         "        : improper generic parameter declaration\n"},
        {"string :=", "5 :=",
         "Error: (in 'x.bsd' on line 2) syntax error\n"
         "        : error in attribute type identification\n"},
        {"D : inout", "D inout",
         "Error: (in 'x.bsd' on line 4) syntax error\n"
         "        : improper port declaration\n"},
        {"1 downto 0", "1 downto",
         "Error: (in 'x.bsd' on line 4) syntax error\n"
         "        : improper port declaration\n"},
        {"1 downto 0", "1 downto 99999999999",
         "Error: (in 'x.bsd' on line 4) invalig bit_vector dimensions\n"},
        {"1 downto 0", "99999999999 to 0",
         "Error: (in 'x.bsd' on line 4) invalig bit_vector dimensions\n"},
        // What follows the port clause has no explanation of its own but that of the port clause.
        {"use STD_1149_1_1994.all;\n", "",
         "Error: (in 'x.bsd' on line 6) syntax error\n"
         "        : improper port declaration\n"},
        {"signal is true", "signal is maybe not",
         "Error: (in 'x.bsd' on line 11) syntax error\n"
         "        : improper port declaration\n"},
        {"(10.0e6, BOTH)", "true",
         "Error: (in 'x.bsd' on line 12) syntax error\n"
         "        : improper port declaration\n"},
        {"attribute PIN_MAP of", "attribute T : 5; attribute PIN_MAP of",
         "Error: (in 'x.bsd' on line 7) syntax error\n"
         "        : error in attribute type identification\n"},
        {"constant QFP_8 : PIN_MAP_STRING", "attribute A of B : entity is C; constant Q",
         "Error: (in 'x.bsd' on line 8) syntax error\n"
         "        : improper port declaration\n"},
        // A string's errors are on the line where the string begins.
        {"D : (3, A4),", "D : (3, A4,",
         "Error: (in 'x.bsd' on line 8) syntax error\n"
         "        : improper port declaration\n"},
        {"SAMPLE (0101)", "SAMPLE",
         "Error: (in 'x.bsd' on line 15) syntax error\n"
         "        : error in Instruction_Opcode attribute statement\n"},
        {"is \"XX01\"", "is \"XX01,\"",
         "Error: (in 'x.bsd' on line 16) syntax error\n"
         "        : improper port declaration\n"},
        {"attribute IDCODE",
         "attribute INSTRUCTION_PRIVATE of C : entity is \"A,\"; attribute IDCODE",
         "Error: (in 'x.bsd' on line 17) syntax error\n"
         "        : error in Opcode List\n"},
        {"(BC_4, D(0), input, 0)", "(BC_4, D(0), input)",
         "Error: (in 'x.bsd' on line 21) syntax error\n"
         "        : error in Boundary Cell description\n"},
        {"0 (BC_4", "3 (BC_4",
         "Error: (in 'x.bsd' on line 21) illegal cell description in 'BOUNDARY_REGISTER' "
         "attribute\n"},
        {"CONTROL, 1)", "CONTROL, Z)",
         "Error: (in 'x.bsd' on line 21) illegal cell description in 'BOUNDARY_REGISTER' "
         "attribute\n"},
        {"observe_only", "observe", "Error: (in 'x.bsd' on line 21) unknown Cell_Function\n"},
        {"2, 1, Z)", "2, 1, OPEN0)", "Error: (in 'x.bsd' on line 21) unknown Disable_Result\n"},
        {"2, 1, Z)", "2, 2, Z)",
         "Error: (in 'x.bsd' on line 21) illegal cell description in 'BOUNDARY_REGISTER' "
         "attribute\n"},
        {"attribute BOUNDARY_LENGTH of CHIP : entity is 3;", "",
         "Error: (in 'x.bsd' on line 21) illegal cell description in 'BOUNDARY_REGISTER' "
         "attribute\n"},
        {"entity is 3;", "entity is 1000000000;",
         "Error: (in 'x.bsd' on line 21) illegal cell description in 'BOUNDARY_REGISTER' "
         "attribute\n"},
        {"end Chip;", "end Chip",
         "Error: (in 'x.bsd' on line 25) syntax error\n"
         "        : improper entity declaration\n"},
        {"end Chip;\n", "",
         "Error: (in 'x.bsd' on line 24) syntax error\n"
         "        : improper entity declaration\n"},
    };

    for (const auto& each : cases) {
        EXPECT_FALSE(ParseChanged(each.from, each.to)) << each.to;
        EXPECT_EQ(said, each.said) << each.to;
    }
}

TEST_F(BsdlParser, EmptyFileIsNoBsdlFile) {
    EXPECT_FALSE(Parse(""));
    EXPECT_EQ(said, "Error: (in 'x.bsd' on line 1) syntax error\n"
                    "        : improper entity declaration; may be this is not a BSDL file\n");
}

TEST_F(BsdlParser, BoundaryLengthAfterTheCellsComesTooLate) {
    std::string source = SampleSource();
    const std::string length = "attribute BOUNDARY_LENGTH of CHIP : entity is 3;\n";
    source.erase(source.find(length), length.size());
    source.insert(source.find("end Chip"), length);
    EXPECT_FALSE(Parse(source));
    EXPECT_EQ(said, "Error: (in 'x.bsd' on line 20) illegal cell description in "
                    "'BOUNDARY_REGISTER' attribute\n");
}

TEST_F(BsdlParser, FailedParseKeepsWhatCameBefore) {
    EXPECT_FALSE(ParseChanged("0 (BC_4", "7 (BC_4"));
    EXPECT_EQ(data.ports.size(), 4u);
    EXPECT_EQ(data.cells.at(1).size(), 1u);
    EXPECT_TRUE(data.cells.at(0).empty());
}

TEST_F(BsdlParser, InnerLanguageWantsAStringOfItsOwn) {
    EXPECT_FALSE(ParseChanged("entity is \"XX01\"", "entity is XX01"));
    EXPECT_EQ(said, "Error: (in 'x.bsd' on line 16) syntax error\n"
                    "        : improper port declaration\n");
}

// The string of the statement before would otherwise stand in for what is none.
TEST_F(BsdlParser, NoStringIsLeftOverFromOneStatementToTheNext) {
    const std::string inner = "attribute INSTRUCTION_CAPTURE of CHIP : entity is XX01;";
    EXPECT_FALSE(ParseChanged("attribute INSTRUCTION_CAPTURE of CHIP : entity is \"XX01\";",
                              "attribute DESIGN of CHIP : entity is \"XX01\"; " + inner));
    EXPECT_EQ(said, "Error: (in 'x.bsd' on line 16) syntax error\n"
                    "        : improper port declaration\n");
    EXPECT_FALSE(ParseChanged("attribute TAP_SCAN_IN of TDI : signal is true;",
                              "constant C : string := \"XX01\"; " + inner));
    EXPECT_EQ(said, "Error: (in 'x.bsd' on line 11) syntax error\n"
                    "        : improper port declaration\n");
}

TEST_F(BsdlParser, MissingFileIsReportedWithoutAPlace) {
    OmBsdlParserCallbackImpl callback;
    EXPECT_FALSE(ParseBsdlFile("no/such.bsd", data, &callback));
    EXPECT_EQ(callback.text, "Error: failed to open file 'no/such.bsd'\n");
}

TEST_F(BsdlParser, NeedsNoCallback) {
    EXPECT_TRUE(ParseBsdlFile(folder.Write("good.bsd", SampleSource()).c_str(), data, nullptr));
    data = {};
    EXPECT_FALSE(ParseBsdlFile(folder.Write("bad.bsd", "entity\nentity").c_str(), data, nullptr));
    EXPECT_FALSE(ParseBsdlFile("no/such.bsd", data, nullptr));
}

TEST_F(BsdlParser, FailedParseLeavesNoTraceInTheNext) {
    EXPECT_FALSE(ParseChanged("SAMPLE (0101)", "SAMPLE"));
    ASSERT_TRUE(Parse(SampleSource())) << said;
    EXPECT_EQ(data.instructions.size(), 3u);
}

TEST_F(BsdlParser, LongListsNeedNoDeepStack) {
    std::string patterns = "0000";
    for (int number = 0; number < 20000; ++number)
        patterns += ", " + std::to_string(number);
    EXPECT_TRUE(ParseChanged("\"XX01\"", '"' + patterns + '"')) << said;
}

TEST_F(BsdlParser, NestedBracketsAreRefusedEarly) {
    EXPECT_FALSE(ParseChanged("\"XX01\"", '"' + std::string(100000, '(') + '"'));
    EXPECT_FALSE(ParseChanged("(10.0e6, BOTH)", std::string(100000, '(')));
}

TEST_F(BsdlParser, FileCutOffAnywhereIsRefused) {
    const std::string source = SampleSource();
    const size_t complete = source.rfind(';') + 1;
    for (size_t length = 0; length < complete; ++length)
        EXPECT_FALSE(ParseQuietly(source.substr(0, length))) << length;
    EXPECT_TRUE(Parse(source.substr(0, complete)));
}

TEST_F(BsdlParser, DamagedFilesDoNoHarm) {
    std::mt19937 random(1149); // fixed, so that a failure comes again
    const std::string source = SampleSource();
    int refused = 0;
    for (int round = 0; round < 1000; ++round) {
        std::string damaged = source;
        for (int change = 0; change < 3; ++change)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        refused += ParseQuietly(damaged) ? 0 : 1;
    }
    EXPECT_GT(refused, 500);
}
