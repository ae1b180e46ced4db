#include "setup/SignalRows.h"

#include "setup/DevicePins.h"
#include "setup/PinRowTexts.h"
#include "tests/setup/PinDevice.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kNoOutput[] =
    L"The boundary register cannot drive this pin: it has no output cell.";
constexpr wchar_t kNoInput[] = L"The boundary register cannot read this pin: it has no input cell.";

} // namespace

TEST(SignalRows, AreNamedAfterTheFlashPins) {
    EXPECT_EQ(kSignalRowCount, 67);

    const struct {
        int row;
        const wchar_t* name;
    } cases[] = {{0, L"CE"},   {1, L"OE"},  {2, L"WE"},  {3, L"A0"},
                 {34, L"A31"}, {35, L"D0"}, {66, L"D31"}};

    for (const auto& c : cases) {
        EXPECT_EQ(GetSignalName(c.row), c.name);
        EXPECT_EQ(FindSignalRow(c.name), c.row);
    }
    EXPECT_EQ(FindSignalRow(L"d31"), 66);
    for (const wchar_t* unknown : {L"", L"A32", L"D32", L"A", L"A01", L"RESET"})
        EXPECT_EQ(FindSignalRow(unknown), -1) << unknown;
}

TEST(SignalRows, LeadToThePinsOfTheSetup) {
    OmFlashPins pins;
    PadBusPins(pins);
    EXPECT_EQ(pins.addressPins.size(), 32u);
    EXPECT_EQ(pins.dataPins.size(), 32u);
    EXPECT_EQ(&GetSignalPin(pins, 0), &pins.ce);
    EXPECT_EQ(&GetSignalPin(pins, 1), &pins.oe);
    EXPECT_EQ(&GetSignalPin(pins, 2), &pins.we);
    EXPECT_EQ(&GetSignalPin(pins, 34), &pins.addressPins[31]);
    EXPECT_EQ(&GetSignalPin(pins, 35), &pins.dataPins[0]);
}

TEST(SignalRows, StripTakesUnconnectedPinsAtTheEndAway) {
    OmFlashPins pins;
    PadBusPins(pins);
    pins.addressPins[2] = SignalPin{{0, "SEL", -1}};
    StripBusPins(pins);
    EXPECT_EQ(pins.addressPins.size(), 3u);
    EXPECT_TRUE(pins.dataPins.empty());
}

TEST(SignalRows, EachKindOfPinHasItsNeeds) {
    const OmDevicePins pins(MakePinDevice());

    const struct {
        const char* port;
        int bit;
        const wchar_t* control;
        const wchar_t* data;
    } cases[] = {{"DATA", 0, L"", L""},
                 {"SEL", -1, L"", kNoInput},
                 {"IN", -1, kNoOutput, kNoOutput},
                 {"NC", -1, kNoOutput, kNoOutput}};

    for (const auto& c : cases) {
        const OmPinChoice& pin = *pins.Find(c.port, c.bit);
        EXPECT_EQ(FindPinFault(pin, OmSignalKind::Control), c.control) << c.port;
        EXPECT_EQ(FindPinFault(pin, OmSignalKind::Address), c.control) << c.port;
        EXPECT_EQ(FindPinFault(pin, OmSignalKind::Data), c.data) << c.port;
    }
}

TEST(SignalRows, StaticPinIsDrivenUnlessItIsReleased) {
    const OmDevicePins pins(MakePinDevice());
    const OmPinChoice& input = *pins.Find("IN", -1);
    EXPECT_EQ(FindStaticPinFault(input, 0), kNoOutput);
    EXPECT_EQ(FindStaticPinFault(input, 1), kNoOutput);
    EXPECT_EQ(FindStaticPinFault(input, 'Z'), L"");
    EXPECT_EQ(FindStaticPinFault(*pins.Find("SEL", -1), 1), L"");
}

TEST(PinRowTexts, ShowWhereASignalIsConnected) {
    OmDesignSetup setup = MakePinSetup();
    setup.ce = SignalPin{{0, "SEL", -1}, false};
    setup.we = SignalPin{{0, "ADDR", 23}, true};
    setup.dataPins[4] = SignalPin{{0, "DATA", 4}, true};
    const OmChainPins pins(setup.devices);
    EXPECT_EQ(FormatSignalRow(setup, pins, 0),
              (OmPinRowTexts{L"CE", L"Dev1 (chip)", L"B1 / SEL", L"low"}));
    EXPECT_EQ(FormatSignalRow(setup, pins, 1), (OmPinRowTexts{L"OE", L"", L"", L""}));
    EXPECT_EQ(FormatSignalRow(setup, pins, 2),
              (OmPinRowTexts{L"WE", L"Dev1 (chip)", L"A23 / ADDR(23)", L"high"}));
    EXPECT_EQ(FormatSignalRow(setup, pins, 39),
              (OmPinRowTexts{L"D4", L"Dev1 (chip)", L"D4 / DATA(4)", L""}));
}

TEST(PinRowTexts, ShowStaticPinsWithTheirValue) {
    const std::vector<OmChainDevice> devices{MakePinDevice()};
    const OmChainPins pins(devices);

    const struct {
        uint8_t value;
        const wchar_t* text;
    } cases[] = {{0, L"0"}, {1, L"1"}, {'Z', L"Z"}, {'X', L"ERROR"}, {7, L"ERROR"}};

    for (const auto& c : cases)
        EXPECT_EQ(FormatStaticRow(StaticPin{{0, "SEL", -1}, c.value, L"reset"}, pins),
                  (OmPinRowTexts{L"Dev1 (chip)", L"B1 / SEL", c.text, L"reset"}));
}
