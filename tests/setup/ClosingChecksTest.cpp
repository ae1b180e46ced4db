#include "setup/ClosingChecks.h"

#include "setup/SignalRows.h"
#include "tests/setup/PinDevice.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kShared[] =
    L"ERROR: the same pin of a JTAG chain device is connected to drive/sense more then one signal "
    L"(the pin is listed multiple times in the Signal or Static pins lists).";
constexpr wchar_t kOrganisation[] = L"Please select DATA bus organization.";
constexpr wchar_t kMaxWidth[] =
    L"Please select the maximum data width that a single chip is capable of.";
constexpr wchar_t kWidth[] =
    L"WARNING: the list of connected flash data pins on the Signal pins tab does not correspond "
    L"with a data bus width selected on the Flash array tab.";
constexpr wchar_t kSkipped[] =
    L"WARNING: one or more flash address pins have been skipped on the Signal pins list.";

// One 16-bit chip, all of it connected.
OmDesignSetup MakeSetup() {
    OmDesignSetup setup = MakePinSetup();
    setup.ChipCount = 1;
    setup.WordSize = 2;
    setup.AddrCmdShift = 0;
    for (int bit = 0; bit < 16; ++bit)
        setup.dataPins[static_cast<size_t>(bit)] = SignalPin{{0, "DATA", bit}};
    for (int bit = 0; bit < 20; ++bit)
        setup.addressPins[static_cast<size_t>(bit)] = SignalPin{{0, "ADDR", bit}};
    return setup;
}

std::wstring Problem(const OmDesignSetup& setup) {
    const std::optional<OmClosingProblem> problem = FindClosingProblem(setup);
    return problem ? problem->text : L"";
}

using Change = void (*)(OmDesignSetup&);

void ShareAPin(OmDesignSetup& setup) {
    setup.ce = SignalPin{{0, "DATA", 0}};
}

void ForgetOrganisation(OmDesignSetup& setup) {
    setup.ChipCount = setup.WordSize = -1;
}

void ForgetMaxWidth(OmDesignSetup& setup) {
    setup.AddrCmdShift = -1;
}

void WidenBus(OmDesignSetup& setup) {
    setup.ChipCount = 2;
}

void SkipAddress(OmDesignSetup& setup) {
    setup.addressPins[3] = SignalPin();
}

} // namespace

TEST(ClosingChecks, WholeSetupHasNoProblem) {
    EXPECT_EQ(Problem(MakeSetup()), L"");
}

TEST(ClosingChecks, EachProblemHasItsText) {
    const struct {
        Change change;
        const wchar_t* text;
        OmClosingField field;
    } cases[] = {{ShareAPin, kShared, OmClosingField::None},
                 {ForgetOrganisation, kOrganisation, OmClosingField::BusOrganisation},
                 {ForgetMaxWidth, kMaxWidth, OmClosingField::MaxWidth},
                 {WidenBus, kWidth, OmClosingField::None},
                 {SkipAddress, kSkipped, OmClosingField::None}};

    for (const auto& c : cases) {
        OmDesignSetup setup = MakeSetup();
        c.change(setup);
        const std::optional<OmClosingProblem> problem = FindClosingProblem(setup);
        ASSERT_TRUE(problem) << c.text;
        EXPECT_EQ(problem->text, c.text);
        EXPECT_EQ(problem->field, c.field);
    }
}

TEST(ClosingChecks, OnlyTheFirstProblemIsTold) {
    OmDesignSetup setup = MakeSetup();

    const struct {
        Change change;
        const wchar_t* text;
    } worse[] = {{SkipAddress, kSkipped},
                 {WidenBus, kWidth},
                 {ForgetMaxWidth, kMaxWidth},
                 {ForgetOrganisation, kOrganisation},
                 {ShareAPin, kShared}};

    for (const auto& c : worse) {
        c.change(setup);
        EXPECT_EQ(Problem(setup), c.text);
    }
}

TEST(ClosingChecks, EmptyChainHasNoProblem) {
    OmDesignSetup setup = MakeSetup();
    ShareAPin(setup);
    setup.devices.clear();
    EXPECT_EQ(Problem(setup), L"");
}

TEST(ClosingChecks, WithoutDataPinsTheFlashArrayIsNotLookedAt) {
    OmDesignSetup setup = MakeSetup();
    ForgetOrganisation(setup);
    setup.dataPins.assign(32, SignalPin());
    EXPECT_EQ(Problem(setup), L"");
    SkipAddress(setup);
    EXPECT_EQ(Problem(setup), kSkipped);
}

TEST(ClosingChecks, DataPinsMustBeAsManyAsTheBusIsWide) {
    OmDesignSetup skipped = MakeSetup();
    skipped.dataPins[7] = SignalPin();
    EXPECT_EQ(Problem(skipped), kWidth);
    OmDesignSetup narrow = MakeSetup();
    narrow.WordSize = 1;
    EXPECT_EQ(Problem(narrow), kWidth);
    OmDesignSetup tooFew = MakeSetup();
    tooFew.dataPins[15] = SignalPin();
    EXPECT_EQ(Problem(tooFew), kWidth);
}

TEST(ClosingChecks, NoAddressPinIsNoneSkipped) {
    OmDesignSetup setup = MakeSetup();
    setup.addressPins.assign(32, SignalPin());
    EXPECT_EQ(Problem(setup), L"");
}

TEST(ClosingChecks, UserDecides) {
    for (const OmAnswer answer : {OmAnswer::Yes, OmAnswer::No}) {
        RecordingUserInterface boxes;
        boxes.Expect(L"Text.\n\nIgnore this message and close the dialog?", kWarningQuestionBox,
                     answer, L"Integrity Check Message");
        EXPECT_EQ(ConfirmClosing({L"Text."}), answer == OmAnswer::Yes);
    }
}
