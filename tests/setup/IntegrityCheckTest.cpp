#include "setup/DesignSetup.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kError[] = L"Setup Integrity Check Error";
constexpr wchar_t kWarning[] = L"Setup Integrity Check Warning";

constexpr wchar_t kControlPins[] =
    L"OE (Output Enable) and WE (Write Enable) flash pins must be connected to certain pins of "
    L"JTAG chain devices in order to perform info, erase, program or lock/unlock actions.";
constexpr wchar_t kLowBits[] =
    L"At least low 8 data bits of each flash chip must be connected to pins of JTAG chain devices "
    L"in order to perform info, erase, program or lock/unlock actions.";
constexpr wchar_t kSkippedAddress[] =
    L"One or more flash address pins have been skipped on the Signal pins list.\n\n";
constexpr wchar_t kExtraData[] =
    L"One or more flash data pins specified on the Signals list exceeds the selected flash data "
    L"bus width. Extra data pins will be ignored.\n\n";
constexpr wchar_t kSkippedData[] =
    L"One or more flash data pins have been skipped on the Signal pins list.\n\n";
constexpr wchar_t kUsualControlPins[] =
    L"It is usual, although not always necessary, for all three CE (Chip Enable), OE (Output "
    L"Enable) and WE (Write Enable) flash control pins to be connected to certain pins of JTAG "
    L"chain devices.\n\n";
constexpr wchar_t kProceed[] = L"Ignore this warning and proceed anyway?";
constexpr wchar_t kCollision[] = L"The same pin of a JTAG chain device is connected to drive/sense "
                                 L"more then one signal:\n";

// One 16-bit chip with everything connected, each to a pin of its own.
OmDesignSetup MakeSetup() {
    OmDesignSetup setup;
    setup.devices.resize(1);
    setup.ChipCount = 1;
    setup.WordSize = 2;
    setup.AddrCmdShift = 0;
    setup.ce = SignalPin{{0, "CE", -1}};
    setup.oe = SignalPin{{0, "OE", -1}};
    setup.we = SignalPin{{0, "WE", -1}};
    for (int32_t index = 0; index < 20; ++index)
        setup.addressPins.push_back(SignalPin{{0, "A", index}});
    for (int32_t index = 0; index < 16; ++index)
        setup.dataPins.push_back(SignalPin{{0, "D", index}});
    return setup;
}

using Change = void (*)(OmDesignSetup&);

OmDesignSetup MakeChanged(Change change) {
    OmDesignSetup setup = MakeSetup();
    change(setup);
    return setup;
}

class IntegrityCheck : public ::testing::Test {
  protected:
    RecordingUserInterface user_;
};

TEST_F(IntegrityCheck, CompleteSetupPassesWithoutAWord) {
    EXPECT_TRUE(MakeSetup().CheckSetupIntegrity(1, false));
    EXPECT_TRUE(MakeSetup().CheckSetupIntegrity(0, true));
    EXPECT_TRUE(user_.shown.empty());
}

struct ErrorCase {
    Change change;
    std::wstring text;
    bool onlyForCommands;
    std::wstring caption = kError;
};

TEST_F(IntegrityCheck, FirstErrorIsShownAndEndsTheCheck) {
    const ErrorCase cases[] = {
        {[](OmDesignSetup& s) { s = OmDesignSetup(); }, L"No JTAG chain defined.", false,
         kProductName},
        {[](OmDesignSetup& s) { s.ChipCount = s.AddrCmdShift = -1; },
         L"Please select DATA bus organization.", false},
        {[](OmDesignSetup& s) { s.WordSize = -1; }, L"Please select DATA bus organization.", false},
        {[](OmDesignSetup& s) {
             s.AddrCmdShift = -1;
             s.addressPins.clear();
         },
         L"Please select the maximum data width that a single chip is capable of.", false},
        {[](OmDesignSetup& s) {
             s.addressPins.clear();
             s.dataPins.clear();
         },
         L"Connections of flash address bus are not specified.", false},
        {[](OmDesignSetup& s) {
             s.dataPins.clear();
             s.oe.Device = -1;
         },
         L"Connections of flash data bus are not specified.", false},
        {[](OmDesignSetup& s) { s.oe.Device = -1; }, kControlPins, true},
        {[](OmDesignSetup& s) { s.we.Device = s.addressPins[0].Device = -1; }, kControlPins, true},
        {[](OmDesignSetup& s) { s.addressPins[0].Device = s.dataPins[0].Device = -1; },
         L"A0 flash pin must be connected to a certain pin of JTAG chain device in order to "
         L"perform "
         L"info, erase, program or lock/unlock actions.",
         true},
        {[](OmDesignSetup& s) {
             s.AddrCmdShift = 2;
             s.addressPins.resize(2);
         },
         L"A2 flash pin must be connected to a certain pin of JTAG chain device in order to "
         L"perform "
         L"info, erase, program or lock/unlock actions.",
         true},
        {[](OmDesignSetup& s) { s.dataPins[0].Device = -1; }, kLowBits, true},
        {[](OmDesignSetup& s) { s.dataPins.resize(7); }, kLowBits, true},
        {[](OmDesignSetup& s) { // the second of two chips
             s.ChipCount = 2;
             s.WordSize = 1;
             s.dataPins[8].Device = -1;
         },
         kLowBits, true},
    };
    for (const ErrorCase& c : cases) {
        const OmDesignSetup setup = MakeChanged(c.change);
        for (const bool quiet : {false, true}) {
            user_.Expect(c.text, kWarningBox, OmAnswer::Ok, c.caption);
            EXPECT_FALSE(setup.CheckSetupIntegrity(1, quiet));
        }
        if (c.onlyForCommands) {
            EXPECT_TRUE(setup.CheckSetupIntegrity(0, true));
        }
    }
}

struct WarningCase {
    Change change;
    std::wstring text;
};

TEST_F(IntegrityCheck, EverythingOddIsAskedAboutAtOnce) {
    const WarningCase cases[] = {
        {[](OmDesignSetup& s) { // the lower two are not wired to a chip in its 8-bit mode
             s.AddrCmdShift = 2;
             s.addressPins[0].Device = s.addressPins[1].Device = -1;
         },
         kSkippedAddress},
        {[](OmDesignSetup& s) { s.WordSize = 1; }, kExtraData},
        {[](OmDesignSetup& s) { s.dataPins.resize(8); }, kSkippedData},
        {[](OmDesignSetup& s) { s.dataPins[15].Device = -1; }, kSkippedData},
        {[](OmDesignSetup& s) { s.ce.Device = -1; }, kUsualControlPins},
        {[](OmDesignSetup& s) {
             s.addressPins[5].Device = -1;
             s.dataPins[9].Device = -1;
             s.dataPins.resize(17);
             s.ce.Device = -1;
         },
         std::wstring(kSkippedAddress) + kExtraData + kSkippedData + kUsualControlPins},
    };
    for (const WarningCase& c : cases) {
        const OmDesignSetup setup = MakeChanged(c.change);
        for (const unsigned flags : {0u, 1u}) {
            user_.Expect(c.text + kProceed, kWarningQuestionBox, OmAnswer::Yes, kWarning);
            EXPECT_TRUE(setup.CheckSetupIntegrity(flags, false));
            user_.Expect(c.text + kProceed, kWarningQuestionBox, OmAnswer::No, kWarning);
            EXPECT_FALSE(setup.CheckSetupIntegrity(flags, false));
            EXPECT_TRUE(setup.CheckSetupIntegrity(flags, true));
        }
    }
}

TEST_F(IntegrityCheck, MissingLowBitIsAWarningForOtherActions) {
    const OmDesignSetup setup =
        MakeChanged([](OmDesignSetup& s) { s.dataPins[0].Device = s.oe.Device = -1; });
    user_.Expect(std::wstring(kSkippedData) + kUsualControlPins + kProceed, kWarningQuestionBox,
                 OmAnswer::Yes, kWarning);
    EXPECT_TRUE(setup.CheckSetupIntegrity(0, false));
}

struct CollisionCase {
    Change change;
    std::wstring report; // empty: none
};

TEST_F(IntegrityCheck, EachSharedPinIsOneLineWithAllItsSignals) {
    const CollisionCase cases[] = {
        {[](OmDesignSetup& s) { s.oe = s.ce; }, L"    CE is simultaneously connected to CE, OE"},
        {[](OmDesignSetup& s) {
             s.dataPins[3] = SignalPin{{0, "a", 4}};
             s.addressPins[7] = SignalPin{{0, "A", 4}, true};
         },
         L"    A(4) is simultaneously connected to A4, A7, D3"},
        {[](OmDesignSetup& s) {
             s.staticPins = {StaticPin{{0, "RST", -1}, 1, L""}, StaticPin{{0, "oe", -1}, 0, L""}};
         },
         L"    OE is simultaneously connected to OE, <static2>"},
        {[](OmDesignSetup& s) {
             s.staticPins.assign(2, StaticPin{{0, "R", 0}, 1, L""});
         },
         L"    R(0) is simultaneously connected to <static1>, <static2>"},
        {[](OmDesignSetup& s) {
             s.dataPins[15] = s.addressPins[1];
             s.staticPins = {StaticPin{{0, "CE", -1}, 1, L""}};
         },
         L"    CE is simultaneously connected to CE, <static1>;\n"
         L"    A(1) is simultaneously connected to A1, D15"},
        {[](OmDesignSetup& s) { s.dataPins.push_back(s.addressPins[0]); }, L""},
        {[](OmDesignSetup& s) {
             s.oe = SignalPin{{1, "CE", -1}};
         },
         L""},
        {[](OmDesignSetup& s) {
             s.oe = SignalPin{{0, "CE", 0}};
         },
         L""},
        {[](OmDesignSetup& s) {
             s.oe = s.ce;
             s.oe.Device = -1;
         },
         L""},
    };
    for (const CollisionCase& c : cases) {
        const OmDesignSetup setup = MakeChanged(c.change);
        if (!c.report.empty())
            user_.Expect(kCollision + c.report + L".", kWarningBox, OmAnswer::Ok, kError);
        EXPECT_EQ(setup.CheckPinCollisions(), c.report.empty());
    }
}

TEST_F(IntegrityCheck, CollisionComesBeforeTheLowBitsAndAfterTheControlPins) {
    const std::wstring collision =
        std::wstring(kCollision) + L"    CE is simultaneously connected to CE, <static1>.";
    OmDesignSetup setup = MakeSetup();
    setup.staticPins = {StaticPin{{0, "CE", -1}, 1, L""}};
    setup.dataPins[0].Device = -1;
    user_.Expect(collision, kWarningBox, OmAnswer::Ok, kError);
    EXPECT_FALSE(setup.CheckSetupIntegrity(1, true));
    user_.Expect(collision, kWarningBox, OmAnswer::Ok, kError);
    EXPECT_FALSE(setup.CheckSetupIntegrity(0, true));
    setup.we.Device = -1;
    user_.Expect(kControlPins, kWarningBox, OmAnswer::Ok, kError);
    EXPECT_FALSE(setup.CheckSetupIntegrity(1, true));
    EXPECT_EQ(setup.staticPins[0].Device, 0) << "the check marked the setup itself";
}

TEST_F(IntegrityCheck, ThousandsOfDifferentPinsPass) {
    OmDesignSetup setup = MakeSetup();
    for (int32_t index = 0; index < 50000; ++index)
        setup.staticPins.push_back(StaticPin{{0, "S", index}, 1, L""});
    EXPECT_TRUE(setup.CheckSetupIntegrity(1, false));
}

} // namespace
