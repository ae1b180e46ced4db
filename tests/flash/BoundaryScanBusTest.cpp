#include "flash/BoundaryScanBus.h"

#include "flash/BusCycleBatch.h"
#include "flash/InstructionTable.h"
#include "jtag/Exception.h"
#include "tests/flash/FlashBench.h"
#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

namespace {

// The three control pins on device 0, and a data bus of one chip of 8 bits.
struct SmallSetup : OmFlashPins {
    SmallSetup() {
        ChipCount = 1;
        WordSize = 1;
        AddrCmdShift = 0;
    }
};

std::wstring ErrorsOf(const OmFlashPins& pins, const std::vector<OmChainDevice>& chain) {
    OmBoundaryScanBus bus;
    std::wstring errors = L"left over";
    const bool built = bus.BuildFromSetup(pins, chain, errors);
    EXPECT_EQ(built, errors.empty());
    return errors;
}

OmChainDevice WithInstructions(const std::vector<const char*>& names) {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "chip";
    data->AddAttribute("BOUNDARY_LENGTH", "chip", "entity", "1");
    data->AddCell("0", "BC_1", "WE", "OUTPUT2", "1", "", "", "");
    for (const char* name : names)
        data->AddInstructionCode(name, "0000");
    OmChainDevice device;
    device.SetBsdl(std::move(data), "");
    return device;
}

} // namespace

TEST(BoundaryScanBus, UsedDeviceNeedsBsdlDataWithExtestAndPreloadOrSample) {
    const std::wstring opening =
        L"The BSDL file specified for Dev1 (chip) device contains errors: ";
    const std::wstring noExtest =
        opening + L"failed to read EXTEST instruction code from the BSDL file.";
    const std::wstring noPreload =
        opening + L"failed to read PRELOAD and SAMPLE instructions codes from the BSDL file.";
    SmallSetup pins;
    pins.we = MakePin(0, "WE");
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({"EXTEST", "PRELOAD"})}), L"");
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({"EXTEST", "SAMPLE"})}), L"");
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({"PRELOAD"})}), noExtest);
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({"EXTEST"})}), noPreload);
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({})}), noExtest + L"\n\n" + noPreload);
    pins.oe = MakePin(1, "OE");
    EXPECT_EQ(ErrorsOf(pins, {WithInstructions({"EXTEST"}), OmChainDevice()}),
              noPreload + L"\n\nBSDL file is required to be specified for Dev2 device.");
}

TEST(BoundaryScanBus, EveryPinWithoutACellIsReportedInOrder) {
    SmallSetup pins;
    pins.we = MakePin(0, "WE");
    pins.ce = MakePin(0, "NOCE");
    pins.addressPins = {MakePin(0, "WE"), MakePin(0, "NOADDR", 1)};
    pins.dataPins = {MakePin(0, "NODATA", 0)};
    pins.staticPins = {MakeStaticPin(0, "WE", 1), MakeStaticPin(0, "NOSTATIC", 1)};
    EXPECT_EQ(
        ErrorsOf(pins, {WithInstructions({"EXTEST", "PRELOAD"})}),
        L"Dev1 (chip) NOCE pin, connected to flash CE pin, is not available for boundary-scan.\n"
        L"Dev1 (chip) NOADDR(1) pin, connected to flash A1 pin, is not available for "
        L"boundary-scan.\n"
        L"Dev1 (chip) NODATA(0) pin, connected to flash D0 pin, is not available for "
        L"boundary-scan.\n"
        L"Dev1 (chip) NOSTATIC pin is not available for boundary-scan.");
}

TEST(BoundaryScanBus, PinOfADeviceOutsideTheChainIsReported) {
    SmallSetup pins;
    pins.oe = MakePin(5, "OE");
    EXPECT_EQ(ErrorsOf(pins, {OmChainDevice()}),
              L"<invalid_signal> pin, connected to flash OE pin, is not available for "
              L"boundary-scan.");
}

TEST(BoundaryScanBus, AddressEndsAtTheHighestConnectedPinAndDataIsAsWideAsTheArray) {
    FlashBench bench;
    bench.setup.addressPins.resize(24);                 // A20 to A23 not connected
    bench.setup.dataPins.push_back(MakePin(0, "D", 0)); // D16 of a 16-bit array
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    EXPECT_EQ(bench.bus.address.size(), 20u);
    EXPECT_EQ(bench.bus.data.size(), 16u);
    bench.setup.dataPins.resize(3);
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    EXPECT_EQ(bench.bus.data.size(), 16u);
    EXPECT_EQ(bench.bus.data[3].Device, -1);
}

TEST(BoundaryScanBus, MissingDataPinsReadAsZero) {
    FlashBench bench;
    bench.setup.dataPins.resize(3);
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    const OmBitVector allOnes(bench.bus.layout.defaultImage.size(), 1);
    EXPECT_EQ(bench.bus.DecodeDataWord(allOnes), 0x0007u);
}

TEST(BoundaryScanBus, UnconnectedChipEnableTouchesNoCell) {
    FlashBench bench;
    bench.setup.ce = {};
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    OmBusPinState state;
    state.ceLevel = 0;
    OmBitVector image = bench.bus.layout.defaultImage;
    bench.bus.ApplyPinState(state, image, PinStateCE);
    EXPECT_EQ(image, bench.bus.layout.defaultImage);
}

TEST(BoundaryScanBus, InvertedControlPinsSwapZeroAndOneAlone) {
    SmallSetup pins;
    pins.ce = MakePin(0, "CE", -1, true);
    pins.addressPins = {MakePin(0, "A", 0, true)}; // not a control pin: taken as it stands
    const std::vector<OmChainDevice> chain{MakeDevice("dev", 3,
                                                      {{0, "CE", "OUTPUT3", "X", "1", "1"},
                                                       {1, "*", "CONTROL", "X"},
                                                       {2, "A(0)", "OUTPUT2", "X"}})};
    OmBoundaryScanBus bus;
    std::wstring errors;
    ASSERT_TRUE(bus.BuildFromSetup(pins, chain, errors));
    OmBusPinState state;
    state.addressBits = {1};
    const auto apply = [&](uint8_t level) {
        state.ceLevel = level;
        OmBitVector image(3, kBitUnknown);
        bus.ApplyPinState(state, image, PinStateCE | PinStateAddress);
        return BitsToText(image, OmBitOrder::LowestFirst);
    };
    EXPECT_EQ(apply(0), "101");
    EXPECT_EQ(apply(1), "001");
    EXPECT_EQ(apply('Z'), "X11");
}

TEST(BoundaryScanBus, MaskSelectsWhatIsWritten) {
    FlashBench bench({.addressPins = 2, .wordSize = 1});
    bench.setup.staticPins = {MakeStaticPin(0, "WE", 0)};
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    OmBusPinState state{{0, 1}, {1, 0, 1, 0, 1, 0, 1, 0}, 0, 1, 0};
    const auto apply = [&](unsigned mask) {
        OmBitVector image(bench.bus.layout.defaultImage.size(), kBitUnknown);
        bench.bus.ApplyPinState(state, image, mask);
        return BitsToText(image, OmBitOrder::LowestFirst).substr(0, 14);
    };
    // CE OE WE, control, A0 A1, D0 to D7
    EXPECT_EQ(apply(0), "XXXXXXXXXXXXXX");
    EXPECT_EQ(apply(PinStateCE), "0XXXXXXXXXXXXX");
    EXPECT_EQ(apply(PinStateOE), "X1XXXXXXXXXXXX");
    EXPECT_EQ(apply(PinStateWE), "XX0XXXXXXXXXXX");
    EXPECT_EQ(apply(PinStateAddress), "XXXX01XXXXXXXX");
    EXPECT_EQ(apply(PinStateData), "XXX1XX10101010");
    EXPECT_EQ(apply(PinStateStatic), "XX0XXXXXXXXXXX");
}

TEST(BoundaryScanBus, DecodingGivesTheLevelsOfTheDataPins) {
    FlashBench bench({.addressPins = 2, .wordSize = 1});
    OmBitVector captured(bench.bus.layout.defaultImage.size(), 0);
    const size_t inputs = kBenchAddress + 2 + 8;
    captured[inputs + 0] = 1;
    captured[inputs + 6] = 1;
    OmBusPinState state;
    state.dataBits.assign(8, kBitReleased);
    bench.bus.DecodeDataPins(captured, state);
    EXPECT_EQ(state.dataBits, (OmBitVector{1, 0, 0, 0, 0, 0, 1, 0}));
    EXPECT_EQ(bench.bus.DecodeDataWord(captured), 0x41u);
}

TEST(BoundaryScanBus, BidirectionalPinThatComesBackDrivenIsAnInvalidBitSequence) {
    SmallSetup pins;
    pins.dataPins = {MakePin(0, "D")};
    const std::vector<OmChainDevice> chain{
        MakeDevice("dev", 2, {{0, "D", "BIDIR", "X", "1", "0"}, {1, "*", "CONTROL", "0"}})};
    OmBoundaryScanBus bus;
    std::wstring errors;
    ASSERT_TRUE(bus.BuildFromSetup(pins, chain, errors));
    EXPECT_EQ(bus.DecodeDataWord({1, 0}), 1u);
    try {
        bus.DecodeDataWord({1, 1});
        FAIL() << "no exception";
    } catch (const OmException& error) {
        EXPECT_EQ(error.GetText(), L"ERROR: invalid bit sequence received from the JTAG chain. "
                                   L"Check power and JTAG adapter connections.");
    }
}

TEST(BoundaryScanBus, ShapeOfTwoChipsOfSixteenBits) {
    FlashBench bench({.chips = 2});
    const OmBoundaryScanBus& bus = bench.bus;
    EXPECT_EQ(bus.BusWordBytes(), 4u);
    EXPECT_EQ(bus.ChipLaneValue(0, 0x12345678), 0x00005678u);
    EXPECT_EQ(bus.ChipLaneValue(1, 0x12345678), 0x56780000u);
    EXPECT_EQ(bus.EveryLaneValue(0x1F), 0x001F001Fu);
    EXPECT_EQ(bus.ChipLaneByte(0, 0x89ABCDEF), 0xEF);
    EXPECT_EQ(bus.ChipLaneByte(1, 0x89ABCDEF), 0xAB);
    EXPECT_EQ(bus.ChipOffsetToWord(0x20000), 0x10000u);
}

TEST(BoundaryScanBus, ShapeOfFourChipsOfEightBitsAndOfOneOfThirtyTwo) {
    FlashBench four({.chips = 4, .wordSize = 1});
    EXPECT_EQ(four.bus.ChipLaneValue(3, 0x1FF), 0xFF000000u);
    EXPECT_EQ(four.bus.ChipLaneByte(2, 0x89ABCDEF), 0xAB);
    FlashBench wide({.chips = 1, .wordSize = 4});
    EXPECT_EQ(wide.bus.ChipLaneValue(0, 0x89ABCDEF), 0x89ABCDEFu);
    EXPECT_EQ(wide.bus.ChipLaneByte(0, 0x89ABCDEF), 0xEF);
}

TEST(BoundaryScanBus, LanesBeyondThirtyTwoBitsHoldNothing) {
    FlashBench bench({.chips = 2, .wordSize = 4});
    EXPECT_EQ(bench.bus.BusWordBytes(), 8u);
    EXPECT_EQ(bench.bus.ChipLaneValue(1, 0x12345678), 0u);
    EXPECT_EQ(bench.bus.ChipLaneByte(1, 0x12345678), 0u);
}

TEST(BoundaryScanBus, EnterExtestPreloadsTheIdleBusBeforeThePinsAreTaken) {
    FlashBench bench;
    FillInstructionTable(bench.setup.devices, bench.analyzer);
    bench.bus.EnterExtest();
    EXPECT_EQ(bench.TakeLog(), R"(
reset
IR 0010
write and read
  00000 ZZZZ 1 1 1 r
IR 0000
)");
}

TEST(BoundaryScanBus, UnusedDevicesStayInBypassAndCostOneElement) {
    FlashBench bench({.addressPins = 1, .wordSize = 1});
    OmChainDevice unused;
    unused.IRLen = 5;
    bench.setup.devices.push_back(unused); // nearest TDO
    std::wstring errors;
    ASSERT_TRUE(bench.bus.BuildFromSetup(bench.setup, bench.setup.devices, errors));
    EXPECT_EQ(bench.bus.layout.offsets, (std::vector<uint32_t>{1, 0}));
    EXPECT_EQ(bench.bus.layout.defaultImage.size(), 22u);
    FillInstructionTable(bench.setup.devices, bench.analyzer);
    bench.cable.keepLog = false;

    struct IrLog : BenchCable {
        using BenchCable::BenchCable;

        void ScanIR(const OmBitVector& in, OmBitVector*, int, int) override {
            text += BitsToText(in) + ' ';
        }

        void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override {
            EXPECT_EQ(vectors[0].bits[0], 1);
            captured->assign(1, vectors[0].bits);
        }

        std::string text;
    } cable{bench.cable.shape};

    cable.keepLog = false;
    bench.analyzer.SetCable(&cable);
    bench.bus.EnterExtest();
    EXPECT_EQ(cable.text, "001011111 000011111 ");
}

TEST(BoundaryScanBus, ChainWhoseInstructionsCannotBeLoadedIsNotDriven) {
    FlashBench bench; // no instruction table
    EXPECT_THROW(bench.bus.EnterExtest(), OmException);
    EXPECT_EQ(bench.TakeLog(), "\nreset\n");
}

TEST(BoundaryScanBus, IdleBusIsLeftAtAddressZeroWithAllControlsHigh) {
    FlashBench bench;
    bench.bus.DriveBusIdle();
    EXPECT_EQ(bench.TakeLog(), "\nwrite and read\n  00000 ZZZZ 1 1 1 r\n");
}

TEST(BoundaryScanBus, FlushSendsOneMoreScanAndSleeps) {
    FlashBench bench;
    OmBusCycleBatch batch(bench.bus);
    batch.SelectForWriting();
    batch.AppendWrite(0x12, 0x3456);
    bench.bus.FlushAndSettle(batch);
    EXPECT_TRUE(batch.scans.empty());
    EXPECT_EQ(bench.TakeLog(), R"(
write and read
  00012 ZZZZ 0 1 1
  00012 3456 0 1 0
  00012 3456 0 1 0 r
sleep 60
)");
}

TEST(BoundaryScanBus, LongestWaitIsFiveMillisecondsOfScans) {
    const struct {
        uint32_t frequency;
        int scans;
    } cases[] = {{0, 1},        {11199, 1},       {11201, 2},
                 {1000000, 90}, {30000000, 2679}, {200000000, 10000}};

    for (const auto& row : cases) {
        FlashBench bench; // 56 cells
        bench.cable.frequency = row.frequency;
        EXPECT_EQ(bench.bus.MaxWaitScans(), row.scans) << row.frequency;
    }
}

TEST(BoundaryScanBus, EachKindOfBatchAsksTheCableForItsOwnFigure) {
    FlashBench bench;
    bench.cable.frequency = 1000000; // half a second is 8928 scans of 56 bits
    bench.cable.reading = 100;
    bench.cable.blind = 30;
    bench.cable.status = 20;
    EXPECT_EQ(bench.bus.ItemsPerTransfer(1, 0, OmTransferKind::Reading), 1000);
    EXPECT_EQ(bench.bus.ItemsPerTransfer(1, 0, OmTransferKind::Blind), 300);
    EXPECT_EQ(bench.bus.ItemsPerTransfer(1, 0, OmTransferKind::Status), 200);
    EXPECT_EQ(bench.cable.askedBits, 56u);
}

TEST(BoundaryScanBus, CableThatGainsNothingGetsOneItemAtATime) {
    FlashBench bench;
    EXPECT_EQ(bench.bus.ItemsPerTransfer(1, 0, OmTransferKind::Reading), 1);
    bench.cable.reading = 0;
    EXPECT_EQ(bench.bus.ItemsPerTransfer(1, 0, OmTransferKind::Reading), 1);
}
