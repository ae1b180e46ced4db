#include "setup/PinFill.h"

#include "setup/DevicePins.h"
#include "setup/SignalRows.h"
#include "tests/setup/PinDevice.h"

#include <gtest/gtest.h>

namespace {

SignalPin Address(int bit) {
    return SignalPin{{0, "ADDR", bit}};
}

std::optional<OmPinFill> Plan(const OmDesignSetup& setup, int row) {
    return PlanPinFill(setup, OmChainPins(setup.devices), row);
}

// Filled from A<first> and A<first + 1>, which are on these bits, with A<first + 1> selected.
OmDesignSetup Fill(int first, int bit, int nextBit) {
    OmDesignSetup setup = MakePinSetup();
    setup.addressPins[static_cast<size_t>(first)] = Address(bit);
    setup.addressPins[static_cast<size_t>(first) + 1] = Address(nextBit);
    const std::optional<OmPinFill> fill = Plan(setup, kFirstAddressRow + first + 1);
    EXPECT_TRUE(fill);
    if (fill)
        ApplyPinFill(setup, *fill);
    return setup;
}

} // namespace

TEST(PinFill, RisesToTheEndOfThePort) {
    const OmDesignSetup setup = Fill(0, 0, 1);
    for (int pin = 2; pin < 24; ++pin)
        EXPECT_EQ(setup.addressPins[static_cast<size_t>(pin)], Address(pin));
    EXPECT_FALSE(setup.addressPins[24].IsConnected());
    EXPECT_FALSE(setup.dataPins[0].IsConnected());
}

TEST(PinFill, FallsToTheEndOfThePort) {
    const OmDesignSetup setup = Fill(0, 5, 4);
    EXPECT_EQ(setup.addressPins[2], Address(3));
    EXPECT_EQ(setup.addressPins[5], Address(0));
    EXPECT_FALSE(setup.addressPins[6].IsConnected());
}

TEST(PinFill, EndsWithTheBus) {
    const OmDesignSetup setup = Fill(28, 0, 1);
    EXPECT_EQ(setup.addressPins[31], Address(3));
    EXPECT_FALSE(setup.dataPins[0].IsConnected());
}

TEST(PinFill, SelectedRowMayBeTheFirstOfTheTwo) {
    OmDesignSetup setup = MakePinSetup();
    setup.dataPins[0] = SignalPin{{0, "DATA", 0}};
    setup.dataPins[1] = SignalPin{{0, "data", 1}};
    const std::optional<OmPinFill> fill = Plan(setup, kFirstDataRow);
    ASSERT_TRUE(fill);
    EXPECT_EQ(fill->firstRow, kFirstDataRow + 2);
    EXPECT_EQ(fill->pins.size(), 14u);
}

TEST(PinFill, NeedsTwoConsecutiveBitsOfOnePort) {
    const struct {
        SignalPin first;
        SignalPin second;
    } cases[] = {{Address(0), Address(2)},
                 {Address(0), Address(0)},
                 {Address(0), SignalPin{{0, "DATA", 1}}},
                 {Address(0), SignalPin()},
                 {SignalPin(), Address(1)},
                 {SignalPin{{0, "SEL", -1}}, SignalPin{{0, "NC", -1}}},
                 {Address(0), SignalPin{{1, "ADDR", 1}}}};

    for (const auto& c : cases) {
        OmDesignSetup setup = MakePinSetup();
        setup.addressPins[0] = c.first;
        setup.addressPins[1] = c.second;
        EXPECT_FALSE(Plan(setup, kFirstAddressRow));
        EXPECT_FALSE(Plan(setup, kFirstAddressRow + 1));
    }
}

// WE and A0, A31 and D0 are neighbours in the table only.
TEST(PinFill, BusesAreFilledEachForItself) {
    OmDesignSetup setup = MakePinSetup();
    setup.we = Address(0);
    setup.addressPins[0] = Address(1);
    setup.addressPins[31] = Address(3);
    setup.dataPins[0] = Address(4);
    for (const int row : {-1, 0, 2, 3, 34, 35, 66})
        EXPECT_FALSE(Plan(setup, row)) << row;
}

TEST(PinFill, NothingIsLeftAtTheEndOfThePort) {
    OmDesignSetup setup = MakePinSetup();
    setup.addressPins[0] = Address(22);
    setup.addressPins[1] = Address(23);
    const std::optional<OmPinFill> fill = Plan(setup, kFirstAddressRow + 1);
    ASSERT_TRUE(fill);
    EXPECT_TRUE(fill->pins.empty());
}

TEST(PinFill, TellsWhatWouldBeLost) {
    OmDesignSetup setup = MakePinSetup();
    setup.addressPins[0] = Address(0);
    setup.addressPins[1] = Address(1);
    setup.addressPins[2] = Address(2); // stays as it is
    setup.addressPins[5] = SignalPin{{0, "SEL", -1}};
    const OmChainPins chain(setup.devices);
    EXPECT_EQ(DescribeOverwritten(setup, chain, *Plan(setup, kFirstAddressRow)),
              L"A5: Dev1 (chip) B1 / SEL\n");
}
