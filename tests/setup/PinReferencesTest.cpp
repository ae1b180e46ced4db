#include "setup/PinReferences.h"

#include "tests/setup/PinDevice.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

constexpr OmDroppedPins kNone{};
constexpr OmDroppedPins kSignals{true, false};
constexpr OmDroppedPins kStatics{false, true};
constexpr OmDroppedPins kBoth{true, true};

// Two equal devices, everything on the first but OE.
OmDesignSetup MakeSetup() {
    OmDesignSetup setup = MakePinSetup();
    setup.devices.push_back(MakePinDevice());
    setup.ce = SignalPin{{0, "SEL", -1}};
    setup.oe = SignalPin{{1, "SEL", -1}};
    setup.addressPins[4] = SignalPin{{0, "addr", 4}};
    setup.dataPins[31] = SignalPin{{0, "VCC", 2}}; // linkage: no use, but a port
    setup.staticPins = {StaticPin{{0, "IN", -1}, 0, L""}, StaticPin{{1, "NC", -1}, 0, L""},
                        StaticPin{{0, "DATA", 0}, 0, L""}};
    return setup;
}

} // namespace

TEST(PinReferences, ValidOnesStay) {
    OmDesignSetup setup = MakeSetup();
    const OmDesignSetup before = setup;
    EXPECT_EQ(DropInvalidPins(setup), kNone);
    EXPECT_EQ(setup, before);
}

TEST(PinReferences, BusesArePadded) {
    OmDesignSetup setup;
    EXPECT_EQ(DropInvalidPins(setup), kNone);
    EXPECT_EQ(setup.addressPins.size(), 32u);
    EXPECT_EQ(setup.dataPins.size(), 32u);
}

TEST(PinReferences, InvalidAreWrongDevicePortAndBit) {
    const OmDevicePin cases[] = {{2, "SEL", -1},  {0, "NONE", -1}, {0, "", -1},   {0, "DATA", 16},
                                 {0, "DATA", -1}, {0, "SEL", 0},   {0, "VCC", 0}, {7, "", -1}};
    for (const OmDevicePin& pin : cases) {
        OmDesignSetup setup = MakePinSetup();
        setup.we = SignalPin{pin};
        EXPECT_EQ(DropInvalidPins(setup), kSignals) << pin.PortName << pin.PortIndex;
        EXPECT_EQ(setup.we.Device, -1);
    }
}

// The data is that of another part: equal names mean nothing.
TEST(PinReferences, OneBadSignalDropsAllSignalsOfItsDevice) {
    OmDesignSetup setup = MakeSetup();
    setup.addressPins[5] = SignalPin{{0, "ADDR", 24}};
    EXPECT_EQ(DropInvalidPins(setup), kSignals);
    EXPECT_EQ(setup.ce.Device, -1);
    EXPECT_EQ(setup.addressPins[4].Device, -1);
    EXPECT_EQ(setup.addressPins[5].Device, -1);
    EXPECT_EQ(setup.dataPins[31].Device, -1);
    EXPECT_EQ(setup.oe.Device, 1);
    EXPECT_EQ(setup.staticPins.size(), 3u); // a list of its own
}

TEST(PinReferences, OneBadStaticPinRemovesAllOfItsDevice) {
    OmDesignSetup setup = MakeSetup();
    setup.staticPins[0].PortName = "GONE";
    EXPECT_EQ(DropInvalidPins(setup), kStatics);
    ASSERT_EQ(setup.staticPins.size(), 1u);
    EXPECT_EQ(setup.staticPins[0].Device, 1);
    EXPECT_EQ(setup.ce.Device, 0);
}

TEST(PinReferences, DeviceThatLostItsDataLosesItsPins) {
    OmDesignSetup setup = MakeSetup();
    setup.devices[0].SetBsdl(nullptr, "");
    EXPECT_EQ(DropInvalidPins(setup), kBoth);
    EXPECT_EQ(setup.ce.Device, -1);
    EXPECT_EQ(setup.oe.Device, 1);
    EXPECT_EQ(setup.staticPins.size(), 1u);
}

TEST(PinReferences, NothingLostIsNotAskedAbout) {
    const RecordingUserInterface boxes;
    EXPECT_TRUE(ConfirmNewBsdl(kNone));
    EXPECT_TRUE(ConfirmNewChain(kNone));
}

TEST(PinReferences, QuestionsNameTheTabs) {
    const struct {
        OmDroppedPins dropped;
        std::wstring tabs;
    } cases[] = {{kBoth, L"'Signal pins' and 'Static pins' tabs.\n"},
                 {kSignals, L"'Signal pins' tab.\n"},
                 {kStatics, L"'Static pins' tab.\n"}};

    for (const auto& c : cases) {
        RecordingUserInterface boxes;
        boxes.Expect(L"Selecting a new BSDL file for the device will reset the device pins "
                     L"settings on the " +
                         c.tabs + L"Do you wish to continue applying the new BSDL file?",
                     kLossQuestionBox, OmAnswer::Yes);
        EXPECT_TRUE(ConfirmNewBsdl(c.dropped));
        boxes.Expect(L"Changing the JTAG chain configuration will reset settings on the " + c.tabs +
                         L"Do you wish to continue applying the new JTAG chain configuration?",
                     kLossQuestionBox, OmAnswer::No);
        EXPECT_FALSE(ConfirmNewChain(c.dropped));
    }
}
