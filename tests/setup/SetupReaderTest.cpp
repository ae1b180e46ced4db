#include "platform/Text.h"
#include "setup/DesignSetup.h"
#include "setup/SetupFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr char kBsdl[] =
    "<BSDL Entity='CHIP'><Ports/><PinMappings><PinMapping Name='PQ'><Map P='P' "
    "S='1'/></PinMapping><PinMapping Name='BG'><Map P='P' S='1'/></PinMapping>"
    "</PinMappings><IR IRLen='4'/><BSR BSRLen='1'><Cell N='0' T='BC_1' P='*' F='INTERNAL' SB='0'/>"
    "</BSR></BSDL>";

constexpr char kOneMapping[] =
    "<BSDL Entity='CHIP'><Ports/><PinMappings><PinMapping Name='PQ'><Map P='P' "
    "S='1'/></PinMapping></PinMappings>"
    "<IR IRLen='4'/><BSR BSRLen='1'><Cell N='0' T='BC_1' P='*' F='INTERNAL' SB='0'/></BSR></BSDL>";

std::string Root(const std::string& chain, const std::string& pins, const std::string& rest) {
    return "<OmbrineFlash>" + chain + pins + rest + "</OmbrineFlash>";
}

std::string Chain(const std::string& devices) {
    return "<Chain>" + devices + "</Chain>";
}

const std::string kOneDevice = "<Chain><Device PosInChain='1'/></Chain>";
const std::string kPins = "<Pins/>";
const std::string kFlash = "<Flash/>";

class SetupReader : public ::testing::Test {
  protected:
    bool Load(const std::string& text) {
        setup_ = OmDesignSetup();
        setup_.CmdSet = 2; // shows whether the setup was touched
        return LoadSetupXml(setup_, FromLocal(folder_.Write("file", text)));
    }

    void ExpectChain(const std::string& devices, bool accepted) {
        EXPECT_EQ(Load(Root(Chain(devices), kPins, kFlash)), accepted) << devices;
        EXPECT_EQ(setup_.CmdSet, accepted ? 0 : 2) << devices;
    }

    void LoadPins(const std::string& pins) {
        ASSERT_TRUE(Load(Root(kOneDevice, "<Pins>" + pins + "</Pins>", kFlash)));
    }

    void LoadRest(const std::string& rest) { ASSERT_TRUE(Load(Root(kOneDevice, kPins, rest))); }

    TemporaryFolder folder_;
    OmDesignSetup setup_;
};

TEST_F(SetupReader, RootAndItsFirstThreePartsAreRequired) {
    EXPECT_TRUE(Load(Root(kOneDevice, kPins, kFlash)));
    EXPECT_FALSE(Load("<Other>" + kOneDevice + kPins + kFlash + "</Other>"));
    EXPECT_FALSE(Load(Root("", kPins, kFlash)));
    EXPECT_FALSE(Load(Root(kOneDevice, "", kFlash)));
    EXPECT_FALSE(Load(Root(kOneDevice, kPins, "")));
    EXPECT_FALSE(Load("<OmbrineFlash>"));
    EXPECT_FALSE(Load(""));
    EXPECT_FALSE(LoadSetupXml(setup_, FromLocal(folder_.Path("missing"))));
    EXPECT_EQ(setup_.CmdSet, 2);
}

TEST_F(SetupReader, VersionIsNotLookedAt) {
    EXPECT_TRUE(
        Load("<OmbrineFlash Version='99'>" + kOneDevice + kPins + kFlash + "</OmbrineFlash>"));
}

TEST_F(SetupReader, PositionsMustRunFromOneWithoutAGap) {
    struct {
        const char* devices;
        bool accepted;
    } const cases[] = {
        {"<Device PosInChain='1'/>", true},
        {"<Device PosInChain='2'/><Device PosInChain='1'/>", true},
        {"<Device PosInChain='1'/><Other PosInChain='7'/>", true},
        {"", false},
        {"<Device/>", false},
        {"<Device PosInChain=''/>", false},
        {"<Device PosInChain='x'/>", false},
        {"<Device PosInChain='1x'/>", false},
        {"<Device PosInChain='0'/>", false},
        {"<Device PosInChain='-1'/>", false},
        {"<Device PosInChain='1'/><Device PosInChain='3'/>", false},
        {"<Device PosInChain='2'/><Device PosInChain='3'/>", false},
        {"<Device PosInChain='1'/><Device PosInChain='1'/>", false},
        {"<Device PosInChain='1'/><Device PosInChain='1'/><Device PosInChain='3'/>", false},
        {"<Device PosInChain='4294967297'/>", false},
        {"<Device PosInChain='18446744073709551617'/>", false},
        {"<Device PosInChain='2147483647'/>", false},
    };

    for (const auto& c : cases)
        ExpectChain(c.devices, c.accepted);
}

TEST_F(SetupReader, ThousandsOfEqualPositionsAreRefused) {
    std::string devices;
    for (int count = 0; count < 20000; ++count)
        devices += "<Device PosInChain='1'/>";
    ExpectChain(devices, false);
}

TEST_F(SetupReader, DevicesLoadInTheOrderOfTheirPositions) {
    ExpectChain("<Device PosInChain='3' IRLen='7'/><Device PosInChain='2' IRLen='6'/>"
                "<Device PosInChain='1' IRLen='5'/>",
                true);
    ASSERT_EQ(setup_.GetDeviceCount(), 3u);
    EXPECT_EQ(setup_.devices[0].IRLen, 5);
    EXPECT_EQ(setup_.devices[1].IRLen, 6);
    EXPECT_EQ(setup_.devices[2].IRLen, 7);
}

TEST_F(SetupReader, BadBsdlDataRefusesTheFile) {
    ExpectChain("<Device PosInChain='1'><BSDL/></Device>", false);
    ExpectChain("<Device PosInChain='1'>" + std::string(kBsdl) +
                    "</Device><Device PosInChain='2'><BSDL Entity='E'/></Device>",
                false);
}

TEST_F(SetupReader, AbsurdBoundaryLengthIsRefused) {
    for (const char* length : {"2147483647", "4294967297", "99999999999999999999", "-1", "1e9"}) {
        std::string bsdl = kBsdl;
        bsdl.replace(bsdl.find("BSRLen='1'"), 10, std::string("BSRLen='") + length + "'");
        ExpectChain("<Device PosInChain='1'>" + bsdl + "</Device>", false);
    }
}

TEST_F(SetupReader, PinMappingMustBelongToTheData) {
    struct {
        const char* attributes;
        const char* bsdl;
        const char* expected;
    } const cases[] = {
        {"PinMapping='BG'", kBsdl, "BG"},
        {"PinMapping='XX'", kBsdl, ""},
        {"PinMapping=''", kBsdl, ""},
        {"", kBsdl, ""},
        {"PinMapping='XX'", kOneMapping, "PQ"},
        {"PinMapping=''", kOneMapping, "PQ"},
        {"PinMapping='PQ'", "", ""},
    };

    for (const auto& c : cases) {
        ExpectChain(std::string("<Device PosInChain='1' ") + c.attributes + ">" + c.bsdl +
                        "</Device>",
                    true);
        EXPECT_EQ(setup_.devices[0].PinMapping, c.expected) << c.attributes;
    }
}

TEST_F(SetupReader, BsdlFileCountsOnlyWithData) {
    ExpectChain(std::string("<Device PosInChain='1' BsdlFile='a.bsd'>") + kBsdl +
                    "</Device><Device PosInChain='2' BsdlFile='b.bsd'/>",
                true);
    EXPECT_EQ(setup_.devices[0].BsdlFile, "a.bsd");
    EXPECT_EQ(setup_.devices[1].BsdlFile, "");
}

TEST_F(SetupReader, EnteredLengthCountsOnlyWithoutData) {
    struct {
        const char* length;
        int32_t expected;
    } const cases[] = {{"5", 5},  {"2", 2},   {"1", -1},          {"-1", -1},         {"", -1},
                       {"x", -1}, {"5x", -1}, {"2147483648", -1}, {"2147483647", -1}, {"500", 500}};

    for (const auto& c : cases) {
        ExpectChain(std::string("<Device PosInChain='1' IRLen='") + c.length + "'/>", true);
        EXPECT_EQ(setup_.devices[0].IRLen, c.expected) << c.length;
    }
    ExpectChain(std::string("<Device PosInChain='1' IRLen='5'>") + kBsdl + "</Device>", true);
    EXPECT_EQ(setup_.devices[0].IRLen, -1);
    EXPECT_EQ(setup_.devices[0].GetIRLength(), 4);
}

TEST_F(SetupReader, BitTextsReadTheLastCharacterFirst) {
    ASSERT_TRUE(Load(Root("<Chain IRCapture='0z?1'><Device PosInChain='1' Idcode='10Z'/></Chain>",
                          kPins, kFlash)));
    EXPECT_EQ(setup_.irCapture, (OmBitVector{1, 'X', 'Z', 0}));
    EXPECT_EQ(setup_.devices[0].Idcode, (OmBitVector{'Z', 0, 1}));
}

TEST_F(SetupReader, CaptureLongerThanAnyChainIsDropped) {
    for (const size_t length : {size_t{4096}, size_t{4097}}) {
        ASSERT_TRUE(Load(Root("<Chain IRCapture='" + std::string(length, '1') +
                                  "'><Device PosInChain='1'/></Chain>",
                              kPins, kFlash)));
        EXPECT_EQ(setup_.irCapture.size(), length == 4096 ? length : 0);
    }
}

TEST_F(SetupReader, LengthsAreResolvedFromTheCaptureBesideTheKnownOnes) {
    ASSERT_TRUE(Load(Root("<Chain IRCapture='000010100001'><Device PosInChain='1'/>"
                          "<Device PosInChain='2' IRLen='5'/></Chain>",
                          kPins, kFlash)));
    EXPECT_EQ(setup_.devices[0].resolvedIRLen, 7);
    EXPECT_EQ(setup_.devices[1].resolvedIRLen, -1);
}

TEST_F(SetupReader, EarlierContentOfTheSetupIsGone) {
    setup_.staticPins.resize(3);
    setup_.sectors.groups = {{1, 1}};
    setup_.UseUnlockBypass = true;
    setup_.UseBufferedProg = false;
    setup_.ce.PortName = "OLD";
    ASSERT_TRUE(
        LoadSetupXml(setup_, FromLocal(folder_.Write("file", Root(kOneDevice, kPins, kFlash)))));
    OmDesignSetup expected;
    expected.devices.resize(1);
    EXPECT_TRUE(setup_ == expected);
}

struct PinCase {
    const char* attributes;
    SignalPin expected;
};

TEST_F(SetupReader, SignalPinFieldsFallBack) {
    const PinCase cases[] = {
        {"Device='3' PortName='P' PortIndex='7' Inverted='1'", SignalPin{{3, "P", 7}, true}},
        {"", SignalPin{}},
        {"Device='-5'", SignalPin{}},
        {"Device='x' PortName='P'", SignalPin{{-1, "P", -1}}},
        {"Device='2147483648'", SignalPin{}},
        {"Device='0' PortIndex='-1'", SignalPin{{0, "", -1}}},
        {"Device='0' PortIndex='-2'", SignalPin{{0, "", -1}}},
        {"Device='0' PortIndex='99999999999'", SignalPin{{0, "", -1}}},
        {"Device='0' Inverted='true'", SignalPin{{0, "", -1}, false}},
        {"Device='0' Inverted='01'", SignalPin{{0, "", -1}, false}},
    };
    for (const PinCase& c : cases) {
        LoadPins(std::string("<SignalPin Name='OE' ") + c.attributes + "/>");
        EXPECT_TRUE(setup_.oe == c.expected) << c.attributes;
    }
}

TEST_F(SetupReader, NamesLeadToPins) {
    LoadPins("<SignalPin Name='CE' Device='1'/><SignalPin Name='OE' Device='2'/>"
             "<SignalPin Name='WE' Device='3'/><SignalPin Name='A1' Device='4' Inverted='1'/>"
             "<SignalPin Name='D2' Device='5'/>");
    EXPECT_EQ(setup_.ce.Device, 1);
    EXPECT_EQ(setup_.oe.Device, 2);
    EXPECT_EQ(setup_.we.Device, 3);
    ASSERT_EQ(setup_.addressPins.size(), 2u);
    EXPECT_TRUE((setup_.addressPins[0] == SignalPin{}));
    EXPECT_TRUE((setup_.addressPins[1] == SignalPin{{4, "", -1}, true}));
    ASSERT_EQ(setup_.dataPins.size(), 3u);
    EXPECT_EQ(setup_.dataPins[2].Device, 5);
}

TEST_F(SetupReader, BusPinNumbersGoTo31) {
    struct {
        const char* name;
        size_t addressPins; // expected, likewise the next
        size_t dataPins;
    } const cases[] = {
        {"A31", 32, 0}, {"D31", 0, 32},        {"A32", 0, 0},
        {"D40", 0, 0},  {"A-1", 0, 0},         {"A", 0, 0},
        {"Ax", 0, 0},   {"AE", 0, 0},          {"A 3", 4, 0},
        {"A3x", 4, 0},  {"a3", 0, 0},          {"", 0, 0},
        {"X0", 0, 0},   {"A4294967296", 0, 0}, {"D99999999999999999999", 0, 0},
    };

    for (const auto& c : cases) {
        LoadPins(std::string("<SignalPin Device='0' Name='") + c.name + "'/>");
        EXPECT_EQ(setup_.addressPins.size(), c.addressPins) << c.name;
        EXPECT_EQ(setup_.dataPins.size(), c.dataPins) << c.name;
    }
}

TEST_F(SetupReader, UnconnectedPinsAtTheEndOfABusAreDropped) {
    LoadPins("<SignalPin Name='A0' Device='0'/><SignalPin Name='A5' Device='-1'/>"
             "<SignalPin Name='D3'/><Other Name='A9' Device='0'/>");
    EXPECT_EQ(setup_.addressPins.size(), 1u);
    EXPECT_TRUE(setup_.dataPins.empty());
}

TEST_F(SetupReader, StaticPinNeedsALevel) {
    LoadPins("<StaticPin Device='1' PortName='P' PortIndex='2' Value='0' Note='first'/>"
             "<StaticPin Value='X'/><StaticPin Value=''/><StaticPin/><StaticPin Value='z'/>"
             "<StaticPin Value='10'/><StaticPin Value=' 1'/><StaticPin Name='any' Value='1'/>"
             "<StaticPin Device='2' Value='Z'/>");
    ASSERT_EQ(setup_.staticPins.size(), 3u);
    EXPECT_TRUE((setup_.staticPins[0] == StaticPin{{1, "P", 2}, 0, L"first"}));
    EXPECT_TRUE((setup_.staticPins[1] == StaticPin{{-1, "", -1}, 1, L""}));
    EXPECT_TRUE((setup_.staticPins[2] == StaticPin{{2, "", -1}, kBitReleased, L""}));
}

TEST_F(SetupReader, BusOrganisationFallsBackToUnselected) {
    struct {
        const char* value;
        int32_t chips, word, shift; // the same text in all three
    } const cases[] = {{"0", -1, -1, 0},          {"1", 1, 1, 1},    {"2", 2, 2, 2},
                       {"3", 3, -1, -1},          {"4", 4, 4, -1},   {"5", -1, -1, -1},
                       {"", -1, -1, -1},          {"x", -1, -1, -1}, {"-1", -1, -1, -1},
                       {"4294967297", -1, -1, -1}};

    for (const auto& c : cases) {
        const std::string value = std::string("='") + c.value + "' ";
        LoadRest("<Flash ChipCount" + value + "WordSize" + value + "AddrCmdShift" + value + "/>");
        EXPECT_EQ(setup_.ChipCount, c.chips) << c.value;
        EXPECT_EQ(setup_.WordSize, c.word) << c.value;
        EXPECT_EQ(setup_.AddrCmdShift, c.shift) << c.value;
    }
}

TEST_F(SetupReader, MissingPartsLeaveTheDefaults) {
    LoadRest(kFlash);
    EXPECT_EQ(setup_.CmdSet, 0);
    EXPECT_TRUE(setup_.UseBufferedProg);
    EXPECT_FALSE(setup_.DontCheckStatus);
    EXPECT_FALSE(setup_.UseUnlockBypass);
    EXPECT_TRUE(setup_.sectors.IsEmpty());
}

TEST_F(SetupReader, AlgorithmValuesOutOfRangeLeaveTheDefaults) {
    LoadRest(kFlash + "<Algorithm CmdSet='1' UseBufferedProg='0' DontCheckStatus='1'/>"
                      "<AMD UseUnlockBypass='1'/>");
    EXPECT_EQ(setup_.CmdSet, 1);
    EXPECT_FALSE(setup_.UseBufferedProg);
    EXPECT_TRUE(setup_.DontCheckStatus);
    EXPECT_TRUE(setup_.UseUnlockBypass);
    for (const char* value : {"3", "-1", "true", "", "4294967297"}) {
        const std::string text = std::string("='") + value + "' ";
        LoadRest(kFlash + "<Algorithm CmdSet" + text + "UseBufferedProg" + text +
                 "DontCheckStatus" + text + "/><AMD UseUnlockBypass" + text + "/>");
        EXPECT_EQ(setup_.CmdSet, 0);
        EXPECT_TRUE(setup_.UseBufferedProg);
        EXPECT_FALSE(setup_.DontCheckStatus);
        EXPECT_FALSE(setup_.UseUnlockBypass);
    }
}

TEST_F(SetupReader, SectorGroupsAreAllOrNothing) {
    using Groups = std::vector<OmSectorGroup>;

    struct {
        const char* groups;
        Groups expected;
    } const cases[] = {
        {"<Group Pos='2' Count='3' Size='4'/><Group Pos='1' Count='1' Size='2'/>",
         {{1, 2}, {3, 4}}},
        {"<Group Pos='1' Count='1' Size='2'/><Other Pos='1'/>", {{1, 2}}},
        {"<Group Pos='1' Count='1' Size='4294967295'/>", {{1, 0xFFFFFFFF}}},
        {"", {}},
        {"<Group Pos='2' Count='1' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='1' Count='1' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='3' Count='1' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='x' Count='1' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='0' Count='1' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='2' Count='1'/>", {}},
        {"<Group Pos='1' Count='1' Size='2'/><Group Pos='2' Count='0' Size='2'/>", {}},
        {"<Group Pos='1' Count='1' Size='0'/>", {}},
        {"<Group Pos='1' Count='-1' Size='2'/>", {}},
        {"<Group Pos='1' Count='4000000000' Size='1'/>", {}},
        {"<Group Pos='1' Count='1' Size='4294967296'/>", {}},
        {"<Group Pos='1' Count='3' Size='2147483648'/>", {}},
        {"<Group Pos='1' Count='1000000' Size='1'/><Group Pos='2' Count='1000000' Size='2'/>", {}},
    };

    for (const auto& c : cases) {
        LoadRest(kFlash + "<Sectors>" + c.groups + "</Sectors>");
        EXPECT_EQ(setup_.sectors.groups, c.expected) << c.groups;
    }
}

} // namespace
