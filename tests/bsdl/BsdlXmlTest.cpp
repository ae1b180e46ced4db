#include "bsdl/BsdlXml.h"

#include "bsdl/BsdlData.h"
#include "tests/bsdl/SampleDevice.h"

#include <gtest/gtest.h>
#include <wx/sstream.h>
#include <wx/xml/xml.h>

namespace {

constexpr const char* kSampleXml =
    R"(<BSDL Entity="SAMPLE">)"
    R"(<DefaultPinMapping Name="QFP"/>)"
    R"(<Ports><Port N="TCK" T="in"/><Port N="D" T="inout" I1="1" I2="0"/></Ports>)"
    R"(<PinMappings><PinMapping Name="BGA"><Map P="TCK" S="A1"/></PinMapping>)"
    R"(<PinMapping Name="QFP"><Map P="TCK" S="12"/><Map P="D" S="3" I="0"/></PinMapping>)"
    R"(</PinMappings>)"
    R"(<IR IRLen="3"><Instruction Name="BYPASS"><Code Value="111"/><Code Value="011"/>)"
    R"(</Instruction><Instruction Name="EXTEST"><Code Value="000"/></Instruction></IR>)"
    R"(<Idcodes><Idcode Value="XXXX0001001000110100000000101111"/></Idcodes>)"
    R"~(<BSR BSRLen="3"><Cell N="0" T="BC_4" P="D(0)" F="INPUT" SB="0"/>)~"
    R"(<Cell N="0" T="BC_2" P="TCK" F="CLOCK" SB="X" CC="2" DR=""/>)"
    R"~(<Cell N="1" T="BC_1" P="D(0)" F="OUTPUT3" SB="X" CC="2" DV="1" DR="Z"/>)~"
    R"(<Cell N="2" T="BC_1" P="*" F="CONTROLR" SB="1"/></BSR></BSDL>)";

std::string Written(const OmBsdlData& data) {
    auto* node = new wxXmlNode(wxXML_ELEMENT_NODE, "BSDL"); // the document takes it
    SaveBsdlXml(*node, data);
    wxXmlDocument document;
    document.SetRoot(node);
    wxStringOutputStream stream;
    EXPECT_TRUE(document.Save(stream, wxXML_NO_INDENTATION));
    const std::string text = stream.GetString().utf8_string();
    const size_t start = text.find("<BSDL");
    return start == std::string::npos ? text : text.substr(start, text.rfind('>') + 1 - start);
}

bool Load(const std::string& xml, OmBsdlData& data) {
    wxStringInputStream stream(wxString::FromUTF8(xml));
    wxXmlDocument document;
    EXPECT_TRUE(document.Load(stream)) << xml;
    return document.IsOk() && LoadBsdlXml(*document.GetRoot(), data);
}

// The sample with its only occurrence of `from` replaced.
std::string Changed(const std::string& from, const std::string& to) {
    std::string xml = kSampleXml;
    const size_t place = xml.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    EXPECT_EQ(xml.find(from, place + 1), std::string::npos) << from << " is not unique";
    return xml.replace(place, from.size(), to);
}

bool LoadsChanged(const std::string& from, const std::string& to) {
    OmBsdlData data;
    return Load(Changed(from, to), data);
}

} // namespace

TEST(BsdlXml, IsWrittenInAFixedOrder) {
    EXPECT_EQ(Written(MakeSampleDevice()), kSampleXml);
}

TEST(BsdlXml, RestoresWhatItHolds) {
    OmBsdlData loaded;
    ASSERT_TRUE(Load(kSampleXml, loaded));
    EXPECT_EQ(loaded, MakeSampleDevice());
}

TEST(BsdlXml, OmitsWhatIsNotThere) {
    OmBsdlData data;
    data.entity = "E";
    EXPECT_EQ(Written(data), R"(<BSDL Entity="E"><Ports/><PinMappings/><IR IRLen="-1"/>)"
                             R"(<BSR BSRLen="0"/></BSDL>)");
}

TEST(BsdlXml, OtherAttributesDoNotSurvive) {
    OmBsdlData data = MakeSampleDevice();
    data.AddAttribute("TAP_SCAN_IN", "TDI", "signal", "true");
    OmBsdlData copy;
    ASSERT_TRUE(CheckBsdlContent(data, copy));
    EXPECT_EQ(copy, MakeSampleDevice());
}

TEST(BsdlXml, InstructionCodesComeBackInTheSameOrder) {
    OmBsdlData copy;
    ASSERT_TRUE(CheckBsdlContent(MakeSampleDevice(), copy));
    EXPECT_EQ(copy.GetInstructionCodes("bypass"), (std::vector<std::string>{"111", "011"}));
    EXPECT_EQ(copy.instructions.count("EXTEST"), 1u);
    EXPECT_EQ(copy.instructions.count("Extest"), 0u);
}

TEST(BsdlXml, UnknownElementsAreIgnored) {
    EXPECT_TRUE(LoadsChanged("<Ports>", "<Note/><Ports><Note/>"));
}

TEST(BsdlXml, OptionalPartsMayBeMissing) {
    EXPECT_TRUE(LoadsChanged(R"(<DefaultPinMapping Name="QFP"/>)", ""));
    EXPECT_TRUE(LoadsChanged(
        R"(<Idcodes><Idcode Value="XXXX0001001000110100000000101111"/></Idcodes>)", ""));
    EXPECT_TRUE(LoadsChanged(R"(<Idcode Value="XXXX0001001000110100000000101111"/>)", ""));
    EXPECT_TRUE(LoadsChanged(R"(<Idcode Value="XXXX0001001000110100000000101111"/>)",
                             R"(<Idcode Value=""/>)"));
    EXPECT_TRUE(LoadsChanged(R"( I1="1" I2="0")", ""));
    EXPECT_TRUE(LoadsChanged(R"( DV="1")", ""));
    EXPECT_TRUE(LoadsChanged(R"(<Map P="TCK" S="A1"/>)", ""));
}

TEST(BsdlXml, AnythingElseMissingOrWrongIsRefused) {
    const std::pair<const char*, const char*> cases[] = {
        {R"( Entity="SAMPLE")", ""},
        {R"( Entity="SAMPLE")", R"( Entity="")"},
        {R"(<Ports><Port N="TCK" T="in"/><Port N="D" T="inout" I1="1" I2="0"/></Ports>)", ""},
        {R"( T="inout")", ""},
        {R"( T="inout")", R"( T="sideways")"},
        {R"( N="D")", R"( N="")"},
        {R"( I1="1")", R"( I1="one")"},
        {R"( I2="0")", R"( I2="0x")"},
        {R"( I2="0")", R"( I2="")"},
        {R"( I2="0")", R"( I2="4294967296")"},
        {R"(<PinMapping Name="BGA">)", R"(<PinMapping>)"},
        {R"( S="A1")", ""},
        {R"(<Map P="TCK" S="A1"/>)", R"(<Map S="A1"/>)"},
        {R"( I="0")", R"( I="-")"},
        {R"( IRLen="3")", ""},
        {R"( IRLen="3")", R"( IRLen="1")"},
        {R"( IRLen="3")", R"( IRLen="3 ")"},
        {R"( IRLen="3")", R"( IRLen="1000001")"},
        {R"( IRLen="3")", R"( IRLen="1000000000")"},
        {R"(<Instruction Name="BYPASS">)", R"(<Instruction>)"},
        {R"(<Code Value="111"/>)", R"(<Code/>)"},
        {R"(<Code Value="111"/>)", R"(<Code Value=""/>)"},
        {R"(<Idcode Value="XXXX0001001000110100000000101111"/>)", R"(<Idcode/>)"},
        {R"( BSRLen="3")", ""},
        {R"( BSRLen="3")", R"( BSRLen="0")"},
        {R"( BSRLen="3")", R"( BSRLen="4")"},
        {R"( BSRLen="3")", R"( BSRLen="2")"},
        {R"( BSRLen="3")", R"( BSRLen="2000000000")"},
        {R"( BSRLen="3")", R"( BSRLen="3000000000")"},
        {R"( T="BC_4")", ""},
        {R"( P="*")", ""},
        {R"( F="CLOCK")", R"( F="CLICK")"},
        {R"( SB="1")", ""},
        {R"(<Cell N="1")", R"(<Cell N="3")"},
        {R"(<Cell N="1")", R"(<Cell)"},
        {R"(<Cell N="1")", R"(<Cell N="2")"},
        {R"( DV="1")", R"( DV="X")"},
        {R"( CC="2" DV)", R"( CC="3" DV)"},
    };
    for (const auto& [from, to] : cases)
        EXPECT_FALSE(LoadsChanged(from, to)) << from << " -> " << to;
}

TEST(BsdlXml, EachSectionIsRequired) {
    OmBsdlData data;
    EXPECT_FALSE(Load(R"(<BSDL Entity="E"><Ports/><IR IRLen="3"/>)"
                      R"(<BSR BSRLen="1"><Cell N="0" T="B" P="*" F="INPUT" SB="X"/></BSR></BSDL>)",
                      data));
    data = {};
    EXPECT_FALSE(Load(R"(<BSDL Entity="E"><Ports/><PinMappings/>)"
                      R"(<BSR BSRLen="1"><Cell N="0" T="B" P="*" F="INPUT" SB="X"/></BSR></BSDL>)",
                      data));
    data = {};
    EXPECT_FALSE(Load(R"(<BSDL Entity="E"><Ports/><PinMappings/><IR IRLen="3"/></BSDL>)", data));
    data = {};
    EXPECT_TRUE(Load(R"(<BSDL Entity="E"><Ports/><PinMappings/><IR IRLen="3"/>)"
                     R"(<BSR BSRLen="1"><Cell N="0" T="B" P="*" F="INPUT" SB="X"/></BSR></BSDL>)",
                     data));
}

TEST(BsdlXml, RegisterWithoutCellsIsRefused) {
    for (const char* length : {"1", "2000000"}) {
        OmBsdlData data;
        EXPECT_FALSE(Load(R"(<BSDL Entity="E"><Ports/><PinMappings/><IR IRLen="3"/>)"
                          R"(<BSR BSRLen=")" +
                              std::string(length) + R"("/></BSDL>)",
                          data));
    }
}

TEST(BsdlXml, CellWithoutControlCellLoadsWithNone) {
    OmBsdlData data;
    ASSERT_TRUE(Load(Changed(R"( CC="2" DV="1" DR="Z")", ""), data));
    const OmBsdlCell expected = {"BC_1", "D(0)", OmBsdlCellFunction::Output3, 'X', -1, 'X', ""};
    EXPECT_EQ(data.cells[1], std::vector<OmBsdlCell>{expected});
}

TEST(BsdlXml, UndefinedPortDirectionDoesNotPassTheContentCheck) {
    OmBsdlData data = MakeSampleDevice();
    data.AddPort("ODD", "sideways", -1, -1);
    OmBsdlData copy;
    EXPECT_FALSE(CheckBsdlContent(data, copy));
}

TEST(BsdlXml, ContentCheckRefusesWhatCannotBeRestored) {
    OmBsdlData noLength = MakeSampleDevice();
    noLength.attributes.clear();
    OmBsdlData noBoundary = MakeSampleDevice();
    noBoundary.cells.clear();
    OmBsdlData gap = MakeSampleDevice();
    gap.cells[1].clear();
    for (const OmBsdlData* source : {&noLength, &noBoundary, &gap}) {
        OmBsdlData copy;
        EXPECT_FALSE(CheckBsdlContent(*source, copy));
    }
}

TEST(BsdlXml, TwentyThousandCellsComeBack) {
    OmBsdlData data;
    data.entity = "BIG";
    data.AddAttribute("INSTRUCTION_LENGTH", "BIG", "entity", "4");
    data.AddAttribute("BOUNDARY_LENGTH", "BIG", "entity", "20000");
    for (int number = 0; number < 20000; ++number)
        data.AddCell(std::to_string(number), "BC_1", "*", "INTERNAL", "X", "", "", "");
    OmBsdlData copy;
    EXPECT_TRUE(CheckBsdlContent(data, copy));
    EXPECT_EQ(copy.cells, data.cells);
}
