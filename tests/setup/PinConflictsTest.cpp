#include "setup/PinConflicts.h"

#include "setup/DevicePins.h"
#include "setup/SignalRows.h"
#include "tests/setup/PinDevice.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kBetweenSignals[] =
    L"Error: the same pin of a JTAG chain device is connected to more then one flash pin.";
constexpr wchar_t kAcrossLists[] = L"Error: the same pin of a JTAG chain device appears in the "
                                   L"both Signal and Static pins lists.";

std::vector<int> Marked(const std::vector<bool>& marks) {
    std::vector<int> rows;
    for (size_t row = 0; row < marks.size(); ++row)
        if (marks[row])
            rows.push_back(static_cast<int>(row));
    return rows;
}

std::wstring Describe(const OmDesignSetup& setup) {
    return DescribeConflicts(FindPinConflicts(setup), OmChainPins(setup.devices));
}

} // namespace

TEST(PinConflicts, NoneWhileEveryPinHasOneUse) {
    OmDesignSetup setup = MakePinSetup();
    setup.ce = SignalPin{{0, "SEL", -1}};
    setup.addressPins[0] = SignalPin{{0, "ADDR", 0}};
    setup.addressPins[1] = SignalPin{{0, "ADDR", 1}};
    setup.staticPins = {StaticPin{{0, "NC", -1}, 0, L""}};
    const OmPinConflicts found = FindPinConflicts(setup);
    EXPECT_FALSE(found.Any());
    EXPECT_EQ(GetConflictError(found), L"");
    EXPECT_EQ(Describe(setup), L"");
    EXPECT_EQ(found.signals.size(), 67u);
    EXPECT_EQ(found.statics.size(), 1u);
}

TEST(PinConflicts, UnconnectedRowsShareNothing) {
    OmDesignSetup setup = MakePinSetup();
    setup.staticPins = {StaticPin(), StaticPin()};
    EXPECT_FALSE(FindPinConflicts(setup).Any());
}

TEST(PinConflicts, TwoSignalsOnOnePin) {
    OmDesignSetup setup = MakePinSetup();
    setup.addressPins[3] = SignalPin{{0, "DATA", 3}};
    setup.dataPins[5] = SignalPin{{0, "data", 3}}; // the same in VHDL
    const OmPinConflicts found = FindPinConflicts(setup);
    EXPECT_EQ(Marked(found.signals), (std::vector<int>{6, 40}));
    EXPECT_EQ(GetConflictError(found), kBetweenSignals);
    EXPECT_EQ(Describe(setup),
              L"A3 and D5 are connected to the same pin, Dev1 (chip) D3 / DATA(3).");
}

TEST(PinConflicts, SamePortOnAnotherDeviceIsAnotherPin) {
    OmDesignSetup setup = MakePinSetup();
    setup.devices.push_back(MakePinDevice());
    setup.ce = SignalPin{{0, "SEL", -1}};
    setup.oe = SignalPin{{1, "SEL", -1}};
    EXPECT_FALSE(FindPinConflicts(setup).Any());
}

TEST(PinConflicts, SignalAndStaticPin) {
    OmDesignSetup setup = MakePinSetup();
    setup.we = SignalPin{{0, "SEL", -1}};
    setup.staticPins = {StaticPin{{0, "NC", -1}, 0, L""}, StaticPin{{0, "SEL", -1}, 0, L""}};
    const OmPinConflicts found = FindPinConflicts(setup);
    EXPECT_EQ(Marked(found.signals), (std::vector<int>{2}));
    EXPECT_EQ(Marked(found.statics), (std::vector<int>{1}));
    EXPECT_EQ(GetConflictError(found), kAcrossLists);
    EXPECT_EQ(Describe(setup),
              L"WE and static pin 2 are connected to the same pin, Dev1 (chip) B1 / SEL.");
}

TEST(PinConflicts, ConflictBetweenSignalsIsToldFirst) {
    OmDesignSetup setup = MakePinSetup();
    setup.ce = SignalPin{{0, "SEL", -1}};
    setup.staticPins = {StaticPin{{0, "SEL", -1}, 0, L""}};
    setup.oe = SignalPin{{0, "NC", -1}};
    setup.we = SignalPin{{0, "NC", -1}};
    EXPECT_EQ(GetConflictError(FindPinConflicts(setup)), kBetweenSignals);
    EXPECT_EQ(Describe(setup),
              L"CE and static pin 1 are connected to the same pin, Dev1 (chip) B1 / SEL.\n"
              L"OE and WE are connected to the same pin, Dev1 (chip) NC.");
}

// A file may hold it; the dialog does not let it come about.
TEST(PinConflicts, StaticPinsAmongThemselvesAreMarked) {
    OmDesignSetup setup = MakePinSetup();
    setup.staticPins = {StaticPin{{0, "SEL", -1}, 0, L""}, StaticPin{{0, "SEL", -1}, 0, L""}};
    const OmPinConflicts found = FindPinConflicts(setup);
    EXPECT_EQ(Marked(found.statics), (std::vector<int>{0, 1}));
    EXPECT_EQ(GetConflictError(found), L"");
    EXPECT_EQ(
        Describe(setup),
        L"static pin 1 and static pin 2 are connected to the same pin, Dev1 (chip) B1 / SEL.");
}

TEST(PinConflicts, MoreThanTwoAreNamedTogether) {
    OmDesignSetup setup = MakePinSetup();
    for (SignalPin* pin : {&setup.ce, &setup.oe, &setup.we})
        *pin = SignalPin{{0, "SEL", -1}};
    EXPECT_EQ(Describe(setup),
              L"CE, OE and WE are connected to the same pin, Dev1 (chip) B1 / SEL.");
}
