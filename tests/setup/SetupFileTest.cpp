#include "setup/SetupFile.h"

#include "platform/Text.h"
#include "setup/DesignSetup.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

std::unique_ptr<OmBsdlData> MakeData() {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "CHIP";
    data->AddPort("OE_N", "out", -1, -1);
    data->AddPort("D", "inout", 7, 0);
    data->AddPinMapEntry("PQ100", "OE_N", -1, "12");
    data->AddPinMapEntry("PQ100", "D", 7, "13");
    data->AddAttribute("INSTRUCTION_LENGTH", "CHIP", "entity", "5");
    data->AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", "1");
    data->AddInstructionCode("EXTEST", "00000");
    data->AddIdcode("XXXX0000000000000000000000000101");
    EXPECT_TRUE(data->AddCell("0", "BC_1", "OE_N", "OUTPUT3", "X", "0", "1", "Z"));
    return data;
}

// Everything that a file can hold, each field with a value of its own.
OmDesignSetup MakeFullSetup() {
    OmDesignSetup setup;
    const OmBitVector idcodes[] = {BitsFromText("10000000000000000000000000000101"), {}};
    setup.SetChainDevices(idcodes, {1, 0, 0, 1, 0, 0, 0, 0});
    setup.devices[0].SetBsdl(MakeData(), "/boards/\xC3\xA4 & b.bsd");
    setup.devices[1].IRLen = 3;
    setup.ce = SignalPin{{0, "CE_N", -1}, true};
    setup.oe = SignalPin{{0, "OE_N", -1}};
    setup.we = SignalPin{{-1, "UNUSED", 3}, true};
    setup.addressPins = {SignalPin{{1, "A", 4}}, SignalPin{}, SignalPin{{1, "A", 6}}};
    setup.dataPins = {SignalPin{{0, "D", 7}}};
    setup.staticPins = {StaticPin{{0, "RST", -1}, 1, L"line 1\nline \"2\" <\x00E9>"},
                        StaticPin{{-1, "", -1}, kBitReleased, L""},
                        StaticPin{{0, "P", 0}, kBitUnknown, L"lost"}};
    setup.ChipCount = 2;
    setup.WordSize = 1;
    setup.AddrCmdShift = 0;
    setup.CmdSet = kCmdSetAmd;
    setup.UseBufferedProg = false;
    setup.DontCheckStatus = true;
    setup.UseUnlockBypass = true;
    setup.sectors.groups = {{8, 8192}, {127, 65536}};
    return setup;
}

constexpr char kFullText[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<OmbrineFlash Version="1">
 <Chain IRCapture="00001001">
  <Device PosInChain="1" BsdlFile="/boards/ä &amp; b.bsd" IRLen="-1" PinMapping="PQ100" Idcode="10000000000000000000000000000101">
   <BSDL Entity="CHIP">
    <Ports>
     <Port N="OE_N" T="out"/>
     <Port N="D" T="inout" I1="7" I2="0"/>
    </Ports>
    <PinMappings>
     <PinMapping Name="PQ100">
      <Map P="OE_N" S="12"/>
      <Map P="D" S="13" I="7"/>
     </PinMapping>
    </PinMappings>
    <IR IRLen="5">
     <Instruction Name="EXTEST">
      <Code Value="00000"/>
     </Instruction>
    </IR>
    <Idcodes>
     <Idcode Value="XXXX0000000000000000000000000101"/>
    </Idcodes>
    <BSR BSRLen="1">
     <Cell N="0" T="BC_1" P="OE_N" F="OUTPUT3" SB="X" CC="0" DV="1" DR="Z"/>
    </BSR>
   </BSDL>
  </Device>
  <Device PosInChain="2" BsdlFile="" IRLen="3" PinMapping="" Idcode=""/>
 </Chain>
 <Pins>
  <SignalPin Name="CE" Device="0" PortName="CE_N" PortIndex="-1" Inverted="1"/>
  <SignalPin Name="OE" Device="0" PortName="OE_N" PortIndex="-1" Inverted="0"/>
  <SignalPin Name="A0" Device="1" PortName="A" PortIndex="4"/>
  <SignalPin Name="A2" Device="1" PortName="A" PortIndex="6"/>
  <SignalPin Name="D0" Device="0" PortName="D" PortIndex="7"/>
  <StaticPin Name="static_0" Device="0" PortName="RST" PortIndex="-1" Value="1" Note="line 1&#xA;line &quot;2&quot; &lt;é&gt;"/>
  <StaticPin Name="static_1" Device="-1" PortName="" PortIndex="-1" Value="Z" Note=""/>
  <StaticPin Name="static_2" Device="0" PortName="P" PortIndex="0" Value="X" Note="lost"/>
 </Pins>
 <Flash ChipCount="2" WordSize="1" AddrCmdShift="0"/>
 <Algorithm CmdSet="2" UseBufferedProg="0" DontCheckStatus="1"/>
 <AMD UseUnlockBypass="1"/>
 <Sectors>
  <Group Pos="1" Count="8" Size="8192"/>
  <Group Pos="2" Count="127" Size="65536"/>
 </Sectors>
</OmbrineFlash>
)";

constexpr char kEmptyText[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<OmbrineFlash Version="1">
 <Chain IRCapture=""/>
 <Pins/>
 <Flash ChipCount="-1" WordSize="-1" AddrCmdShift="-1"/>
 <Algorithm CmdSet="0" UseBufferedProg="1" DontCheckStatus="0"/>
 <AMD UseUnlockBypass="0"/>
 <Sectors/>
</OmbrineFlash>
)";

class SetupFile : public ::testing::Test {
  protected:
    // Paths and BSDL texts are in the local encoding.
    SetupFile() { std::setlocale(LC_ALL, "C.UTF-8"); }

    std::wstring Path(const char* name) const { return FromLocal(folder_.Path(name)); }

    TemporaryFolder folder_;
};

TEST_F(SetupFile, TextHoldsEverythingInOrder) {
    ASSERT_TRUE(SaveSetupXml(MakeFullSetup(), Path("full.velflash")));
    EXPECT_EQ(ReadWholeFile(folder_.Path("full.velflash")), kFullText);
}

TEST_F(SetupFile, EmptySetupIsAWholeTree) {
    ASSERT_TRUE(SaveSetupXml({}, Path("empty.velflash")));
    EXPECT_EQ(ReadWholeFile(folder_.Path("empty.velflash")), kEmptyText);
}

TEST_F(SetupFile, WhatWasSavedComesBack) {
    ASSERT_TRUE(SaveSetupXml(MakeFullSetup(), Path("full.velflash")));
    OmDesignSetup back;
    ASSERT_TRUE(LoadSetupXml(back, Path("full.velflash")));
    OmDesignSetup expected = MakeFullSetup();
    expected.we = {};               // not connected, so not in the file
    expected.staticPins.pop_back(); // a level that no pin can have
    expected.addressPins[1] = {};
    ASSERT_TRUE(expected.devices[0].bsdl && back.devices[0].bsdl);
    EXPECT_EQ(*back.devices[0].bsdl, *expected.devices[0].bsdl);
    expected.ResolveIRLengths({});
    EXPECT_TRUE(back == expected);
    // The same once more, from the loaded setup.
    ASSERT_TRUE(SaveSetupXml(back, Path("again.velflash")));
    OmDesignSetup again;
    ASSERT_TRUE(LoadSetupXml(again, Path("again.velflash")));
    EXPECT_TRUE(again == back);
}

TEST_F(SetupFile, EnteredLengthIsWrittenAndNotTheResolvedOne) {
    OmDesignSetup setup;
    setup.SetChainDevices(std::vector<OmBitVector>(1), {1, 0, 0, 0});
    ASSERT_EQ(setup.devices[0].resolvedIRLen, 4);
    ASSERT_TRUE(SaveSetupXml(setup, Path("file")));
    EXPECT_NE(ReadWholeFile(folder_.Path("file")).find("IRLen=\"-1\""), std::string::npos);
    ASSERT_TRUE(LoadSetupXml(setup, Path("file")));
    EXPECT_EQ(setup.devices[0].resolvedIRLen, 4);
}

TEST_F(SetupFile, SaveReplacesOnlyOnSuccess) {
    folder_.Write("file", "old");
    std::filesystem::create_directory(folder_.path / "folder");
    EXPECT_FALSE(SaveSetupXml(MakeFullSetup(), Path("folder")));
    EXPECT_FALSE(SaveSetupXml(MakeFullSetup(), Path("missing/file")));
    EXPECT_TRUE(SaveSetupXml({}, Path("file")));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), kEmptyText);
}

// A chain of 2,000 devices and 20,000 static pins: lists that are walked for every element would
// show as minutes.
TEST_F(SetupFile, LargeSetupsComeBack) {
    OmDesignSetup setup;
    setup.devices.resize(2000);
    for (OmChainDevice& device : setup.devices)
        device.IRLen = 4;
    setup.staticPins.assign(20000, StaticPin{{1, "P", 2}, 1, L"note"});
    ASSERT_TRUE(SaveSetupXml(setup, Path("file")));
    OmDesignSetup back;
    ASSERT_TRUE(LoadSetupXml(back, Path("file")));
    EXPECT_TRUE(back == setup);
}

} // namespace
