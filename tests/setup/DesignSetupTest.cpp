#include "setup/DesignSetup.h"

#include <gtest/gtest.h>

namespace {

std::unique_ptr<OmBsdlData> MakeData(const std::string& irLength = "5") {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "CHIP";
    data->AddAttribute("INSTRUCTION_LENGTH", "CHIP", "entity", irLength);
    data->AddAttribute("BOUNDARY_LENGTH", "CHIP", "entity", "4");
    data->AddInstructionCode("EXTEST", "00001");
    data->AddInstructionCode("EXTEST", "11110");
    return data;
}

// One device of unknown IR length and no IDCODE for each count.
OmDesignSetup MakeChain(size_t count) {
    OmDesignSetup setup;
    setup.devices.resize(count);
    return setup;
}

std::vector<int32_t> ResolvedLengths(const OmDesignSetup& setup) {
    std::vector<int32_t> lengths;
    for (const OmChainDevice& device : setup.devices)
        lengths.push_back(device.resolvedIRLen);
    return lengths;
}

TEST(ChainDevice, OnlyMappingIsSelectedAtOnce) {
    OmChainDevice device;
    auto data = MakeData();
    data->AddPinMapEntry("PQ100", "TDI", -1, "7");
    device.SetBsdl(std::move(data), "/boards/chip.bsd");
    EXPECT_EQ(device.PinMapping, "PQ100");
    EXPECT_EQ(device.BsdlFile, "/boards/chip.bsd");
    EXPECT_TRUE(device.bsdl);

    device.SetBsdl(nullptr, "");
    EXPECT_EQ(device.PinMapping, "");
    EXPECT_EQ(device.BsdlFile, "");
    EXPECT_FALSE(device.bsdl);
}

TEST(ChainDevice, TwoMappingsLeaveTheSelectionEmpty) {
    OmChainDevice device;
    device.PinMapping = "OLD";
    auto data = MakeData();
    data->AddPinMapEntry("PQ100", "TDI", -1, "7");
    data->AddPinMapEntry("BG256", "TDI", -1, "A1");
    device.SetBsdl(std::move(data), "chip.bsd");
    EXPECT_EQ(device.PinMapping, "");
}

TEST(ChainDevice, IRLengthComesFromTheFirstUsableSource) {
    struct {
        const char* bsdl; // null: no data
        int32_t resolved, entered;
        int expected;
    } const cases[] = {
        {"5", 6, 7, 5},      {"1", 6, 7, 6},       {nullptr, 6, 7, 6},    {nullptr, 1, 7, 7},
        {nullptr, -1, 2, 2}, {nullptr, -1, 1, -1}, {nullptr, -1, -1, -1}, {"x", -1, 0, -1},
    };

    for (const auto& c : cases) {
        OmChainDevice device;
        if (c.bsdl)
            device.SetBsdl(MakeData(c.bsdl), "");
        device.resolvedIRLen = c.resolved;
        device.IRLen = c.entered;
        EXPECT_EQ(device.GetIRLength(), c.expected);
    }
}

TEST(ChainDevice, InstructionCodeIsTheFirstOne) {
    OmChainDevice device;
    OmBitVector code;
    EXPECT_FALSE(device.GetInstructionCode("EXTEST", code));
    device.SetBsdl(MakeData(), "");
    EXPECT_TRUE(device.GetInstructionCode("extest", code));
    EXPECT_EQ(code, (OmBitVector{1, 0, 0, 0, 0}));
    EXPECT_FALSE(device.GetInstructionCode("SAMPLE", code));
}

TEST(ChainDevice, SafeVectorTakesTheFirstDefiniteValueOfEachCell) {
    OmChainDevice device;
    OmBitVector vector{0, 0};
    device.GetSafeBsrVector(vector);
    EXPECT_EQ(vector, OmBitVector{});

    auto data = MakeData();
    ASSERT_TRUE(data->AddCell("0", "BC_1", "*", "CONTROL", "0", "", "", ""));
    ASSERT_TRUE(data->AddCell("1", "BC_1", "P", "INPUT", "X", "", "", ""));
    ASSERT_TRUE(data->AddCell("1", "BC_1", "P", "OUTPUT3", "0", "0", "1", "Z"));
    ASSERT_TRUE(data->AddCell("2", "BC_1", "Q", "INPUT", "X", "", "", ""));
    ASSERT_TRUE(data->AddCell("2", "BC_1", "Q", "OUTPUT3", "X", "0", "1", "Z"));
    ASSERT_TRUE(data->AddCell("3", "BC_1", "R", "OUTPUT2", "1", "", "", ""));
    device.SetBsdl(std::move(data), "");
    device.GetSafeBsrVector(vector);
    EXPECT_EQ(vector, (OmBitVector{0, 0, 1, 1}));
}

TEST(DesignSetup, CopySharesNoBsdlData) {
    OmDesignSetup setup = MakeChain(1);
    setup.devices[0].SetBsdl(MakeData(), "chip.bsd");
    OmDesignSetup copy = setup;
    EXPECT_EQ(copy, setup);
    ASSERT_NE(copy.devices[0].bsdl.get(), setup.devices[0].bsdl.get());
    copy.devices[0].bsdl->entity = "OTHER";
    EXPECT_EQ(setup.devices[0].bsdl->entity, "CHIP");
    EXPECT_FALSE(copy == setup);

    copy = setup;
    EXPECT_EQ(copy, setup);
    copy.devices[0].bsdl.reset();
    EXPECT_FALSE(copy == setup);
}

TEST(DesignSetup, DeviceAssignedToItselfKeepsItsData) {
    OmChainDevice device;
    device.SetBsdl(MakeData(), "chip.bsd");
    const OmChainDevice& same = device;
    device = same;
    ASSERT_TRUE(device.bsdl);
    EXPECT_EQ(device.bsdl->entity, "CHIP");
}

TEST(DesignSetup, NewSetupHasNothingSelected) {
    const OmDesignSetup setup;
    EXPECT_EQ(setup.GetDeviceCount(), 0u);
    EXPECT_FALSE(setup.ce.IsConnected());
    EXPECT_EQ(setup.ce.PortIndex, -1);
    EXPECT_EQ(setup.ChipCount, -1);
    EXPECT_EQ(setup.WordSize, -1);
    EXPECT_EQ(setup.AddrCmdShift, -1);
    EXPECT_EQ(setup.CmdSet, 0);
    EXPECT_TRUE(setup.UseBufferedProg);
    EXPECT_FALSE(setup.DontCheckStatus);
    EXPECT_FALSE(setup.UseUnlockBypass);
    EXPECT_TRUE(setup.sectors.IsEmpty());
}

TEST(DesignSetup, PinsCompareWithoutRegardToTheCaseOfThePort) {
    OmFlashPins a;
    a.addressPins = {SignalPin{{0, "ADDR", 1}}};
    a.staticPins = {StaticPin{{1, "RESET"}, kBitReleased, L"note"}};
    OmFlashPins b = a;
    b.addressPins[0].PortName = "addr";
    b.staticPins[0].PortName = "Reset";
    EXPECT_TRUE(a == b);

    b.addressPins[0].Inverted = true;
    EXPECT_FALSE(a == b);
    b = a;
    b.addressPins[0].PortIndex = 2;
    EXPECT_FALSE(a == b);
    b = a;
    b.staticPins[0].Note = L"NOTE";
    EXPECT_FALSE(a == b);
    b = a;
    b.staticPins[0].Value = 0;
    EXPECT_FALSE(a == b);
    b = a;
    b.dataPins.resize(1);
    EXPECT_FALSE(a == b);
    b = a;
    b.WordSize = 2;
    EXPECT_FALSE(a == b);
}

TEST(DesignSetup, ClearedControlPinsKeepTheirPort) {
    OmDesignSetup setup;
    setup.oe = SignalPin{{2, "OE_N", 3}, true};
    setup.addressPins.resize(3);
    setup.dataPins.resize(3);
    setup.staticPins.resize(1);
    setup.ChipCount = 2;
    setup.WordSize = 2;
    setup.AddrCmdShift = 1;
    setup.ClearFlashPins();
    OmFlashPins expected;
    expected.oe = SignalPin{{-1, "OE_N", 3}, true};
    EXPECT_TRUE(static_cast<const OmFlashPins&>(setup) == expected);
}

TEST(DesignSetup, EmptyChainTouchesNoLength) {
    OmDesignSetup setup = MakeChain(2);
    setup.SetChainDevices({}, {1, 0, 0});
    EXPECT_EQ(setup.GetDeviceCount(), 0u);
    EXPECT_EQ(setup.irCapture, (OmBitVector{1, 0, 0}));
    EXPECT_FALSE(setup.ResolveIRLengths({1, 0, 0}));
}

TEST(DesignSetup, NewChainHasOneFreshDeviceForEachIdcode) {
    OmDesignSetup setup = MakeChain(1);
    setup.devices[0].SetBsdl(MakeData(), "old.bsd");
    const OmBitVector idcode = BitsFromText("00000000000000000000000000000101");
    const OmBitVector idcodes[] = {idcode, {}};
    setup.SetChainDevices(idcodes, {1, 0, 0, 0, 0, 0, 1, 0, 0, 0});
    ASSERT_EQ(setup.GetDeviceCount(), 2u);
    EXPECT_EQ(setup.GetDevice(0).Idcode, idcode);
    EXPECT_FALSE(setup.GetDevice(0).bsdl);
    EXPECT_TRUE(setup.GetDevice(1).Idcode.empty());
    // The last device comes first in the capture.
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{4, 6}));
}

TEST(DesignSetup, ChainMadeOfItsOwnIdcodesIsTheSame) {
    OmDesignSetup setup = MakeChain(1);
    setup.devices[0].Idcode = OmBitVector(32, 1);
    const std::span<const OmBitVector> own(&setup.devices[0].Idcode, 1);
    setup.SetChainDevices(own, setup.irCapture);
    EXPECT_EQ(setup.devices[0].Idcode, OmBitVector(32, 1));
}

TEST(DesignSetup, SingleUnknownDeviceTakesTheWholeCapture) {
    OmDesignSetup setup = MakeChain(1);
    EXPECT_TRUE(setup.ResolveIRLengths({1, 0, 0, 1, 1, 0, 1, 1}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{8}));
    EXPECT_FALSE(setup.ResolveIRLengths({0, 1, 0, 1, 1, 0, 1, 1}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{-1})) << "an old length stayed";
}

TEST(DesignSetup, SecondSolutionSettlesNothing) {
    OmDesignSetup setup = MakeChain(2);
    EXPECT_FALSE(setup.ResolveIRLengths({1, 0, 0, 1, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{-1, -1}));
}

TEST(DesignSetup, GivenCaptureGoesBeforeTheStoredOne) {
    OmDesignSetup setup = MakeChain(1);
    setup.irCapture = {1, 0, 0, 0};
    EXPECT_TRUE(setup.ResolveIRLengths({1, 0, 0}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{3}));
    EXPECT_TRUE(setup.ResolveIRLengths({}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{4}));
    setup.irCapture.clear();
    EXPECT_FALSE(setup.ResolveIRLengths({}));
}

TEST(DesignSetup, KnownLengthsAreUsedAndKept) {
    OmDesignSetup setup = MakeChain(3);
    setup.devices[0].IRLen = 3;
    setup.devices[2].SetBsdl(MakeData("5"), "");
    // Nearest TDO first: 5 bits known, 4 bits to find, 3 bits known.
    EXPECT_TRUE(setup.ResolveIRLengths({1, 0, 0, 0, 0, 1, 0, 1, 0, 1, 0, 0}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{-1, 4, -1}));
    EXPECT_EQ(setup.devices[0].GetIRLength(), 3);
    EXPECT_EQ(setup.devices[2].GetIRLength(), 5);
}

TEST(DesignSetup, NothingUnknownMeansNothingSettled) {
    OmDesignSetup setup = MakeChain(1);
    setup.devices[0].IRLen = 4;
    setup.devices[0].resolvedIRLen = 9;
    EXPECT_FALSE(setup.ResolveIRLengths({1, 0, 0, 0}));
    EXPECT_EQ(ResolvedLengths(setup), (std::vector<int32_t>{-1}));
}

TEST(DesignSetup, DeviceNameShowsTheEntityIfKnown) {
    OmDesignSetup setup = MakeChain(3);
    setup.devices[1].SetBsdl(MakeData(), "");
    setup.devices[2].SetBsdl(std::make_unique<OmBsdlData>(), "");
    EXPECT_EQ(FormatDeviceName(setup.devices, 0), L"Dev1");
    EXPECT_EQ(FormatDeviceName(setup.devices, 1), L"Dev2 (CHIP)");
    EXPECT_EQ(FormatDeviceName(setup.devices, 2), L"Dev3");
    EXPECT_EQ(FormatDeviceName(setup.devices, 3), L"Dev4");
}

} // namespace
