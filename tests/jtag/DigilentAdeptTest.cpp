#include "jtag/DigilentAdept.h"

#include "jtag/CableFactory.h"
#include "tests/jtag/FakeDigilent.h"
#include "tests/jtag/LogCollector.h"
#include "tests/jtag/ScanHelpers.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

constexpr const char* kRequired[] = {
    "DpcInit",      "DpcTerm",       "DvmgGetDevCount", "DvmgGetDevName", "DpcOpenJtag",
    "DpcCloseJtag", "DpcEnableJtag", "DpcDisableJtag",  "DpcPutTdiBits",  "DpcPutTmsTdiBits",
};

class DigilentScan : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(cable.Initialize("Basys"));
        library.TakeCalls();
    }

    FakeDigilent library;
    OmDigilentAdept cable;
};

// Pairs read from the low bits up: 1 is TDI alone, 2 is TMS alone, 3 is both.
struct WalkCase {
    int from;
    int to;
    const char* call;
    std::vector<uint8_t> tdo; // for 1, 0
};

} // namespace

TEST(DigilentAdept, HasAFixedFrequency) {
    OmDigilentAdept cable;
    EXPECT_EQ(cable.GetFrequency(), 1400000U);
    EXPECT_STREQ(cable.GetDriverName(), "");
    EXPECT_EQ(cable.GetJtagHAL(), static_cast<OmJtagHAL*>(&cable));
}

TEST(DigilentAdept, VectorsPerTransferFollowFromTheLength) {
    OmDigilentAdept cable;
    float reading = 0;
    float blind = 0;
    float status = 0;
    cable.GetVectorsPerTransfer(103, &reading, &blind, &status); // 103 / 4 is 25
    EXPECT_FLOAT_EQ(reading, 36.214287F);
    EXPECT_FLOAT_EQ(blind, 36.214287F);
    EXPECT_EQ(status, -1.0F);
    cable.GetVectorsPerTransfer(1, &reading, nullptr, nullptr);
    EXPECT_FLOAT_EQ(reading, 338.0F);
    cable.GetVectorsPerTransfer(1, nullptr, nullptr, nullptr);
}

TEST(DigilentAdept, LoadsTheLibraryOnce) {
    FakeDigilent library;
    OmDigilentAdept cable;
    LogCollector log;
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading dpcutil.dll ...  OK\n");
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading dpcutil.dll ...  OK (already loaded)\n");
    EXPECT_EQ(library.calls, Calls{"DpcInit"});
}

TEST(DigilentAdept, FailsWithoutTheLibrary) {
    FakeDigilent library;
    library.libraries.clear();
    OmDigilentAdept cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("Basys"));
    EXPECT_EQ(log.text, L"Initializing OmDigilentAdept ('Basys')\n"
                        L"Loading dpcutil.dll ...  *** FAILED *** (LoadLibrary() failed)\n");
}

TEST(DigilentAdept, EveryEntryPointIsRequired) {
    for (const char* name : kRequired) {
        FakeDigilent library;
        library.missing = name;
        OmDigilentAdept cable;
        LogCollector log;
        EXPECT_FALSE(cable.Load()) << name;
        EXPECT_EQ(log.text, L"Loading dpcutil.dll ...  ** FAILED *** (not all required exported "
                            L"functions were resolved)\n")
            << name;
        EXPECT_EQ(library.loaded, 0) << name;
        EXPECT_TRUE(library.calls.empty()) << name;
        library.missing.clear();
        EXPECT_TRUE(cable.Load()) << name;
    }
}

TEST(DigilentAdept, WindowForConfiguringDevicesIsForWindowsAlone) {
    FakeDigilent library;
    {
        OmDigilentAdept cable;
        EXPECT_TRUE(cable.Load());
        EXPECT_TRUE(cable.CanConfigureDevices());
    }
    library.missing = "DvmgStartConfigureDevices";
    OmDigilentAdept cable;
    EXPECT_TRUE(cable.Load());
    EXPECT_FALSE(cable.CanConfigureDevices());
}

// What DpcTerm ends, it ends for the whole process.
TEST(DigilentAdept, SecondObjectNeitherBeginsNorEndsTheLibrarysUse) {
    FakeDigilent library;
    OmDigilentAdept cable;
    EXPECT_TRUE(cable.Initialize("Basys"));
    {
        OmDigilentAdept look;
        EXPECT_TRUE(look.Load());
        EXPECT_EQ(look.GetDeviceCount(), 2);
    }
    EXPECT_EQ(library.initialized, 1);
    EXPECT_NO_THROW(cable.ResetTap());
    EXPECT_EQ(std::ranges::count(library.calls, "DpcInit"), 1);
    EXPECT_EQ(std::ranges::count(library.calls, "DpcTerm"), 0);
}

TEST(DigilentAdept, LibraryThatWillNotStartIsFreedUnderTheSameLine) {
    FakeDigilent library;
    library.Fail("DpcInit");
    OmDigilentAdept cable;
    LogCollector log;
    EXPECT_FALSE(cable.Load());
    EXPECT_EQ(log.text, L"Loading dpcutil.dll ...  ** FAILED *** (not all required exported "
                        L"functions were resolved)\n");
    EXPECT_EQ(library.loaded, 0);
    library.Fail("");
    EXPECT_TRUE(cable.Load());
}

TEST(DigilentAdept, InitializesAndEndsInOneOrderOfCalls) {
    FakeDigilent library;
    LogCollector log;
    {
        OmDigilentAdept cable;
        EXPECT_TRUE(cable.Initialize("Basys"));
    }
    EXPECT_EQ(library.calls, (Calls{"DpcInit", "DpcOpenJtag 'Basys'", "DpcEnableJtag",
                                    "DpcDisableJtag", "DpcCloseJtag", "DpcTerm"}));
    EXPECT_EQ(log.text, L"Creating OmDigilentAdept\n"
                        L"Initializing OmDigilentAdept ('Basys')\n"
                        L"Loading dpcutil.dll ...  OK\n"
                        L"Initializing succeeded\n"
                        L"Destroying OmDigilentAdept\n");
}

TEST(DigilentAdept, CableThatOnlyLoadedEndsTheLibrarysUse) {
    FakeDigilent library;
    {
        OmDigilentAdept cable;
        EXPECT_TRUE(cable.Load());
    }
    EXPECT_EQ(library.calls, (Calls{"DpcInit", "DpcTerm"}));
}

TEST(DigilentAdept, FailedOpenLeavesNothingOpen) {
    FakeDigilent library;
    library.Fail("DpcOpenJtag");
    OmDigilentAdept cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("Gone"));
    EXPECT_EQ(log.text, L"Initializing OmDigilentAdept ('Gone')\n"
                        L"Loading dpcutil.dll ...  OK\n"
                        L"*** FAILED *** (DpcOpenJtag() failed)\n");
    library.Fail("");
    EXPECT_TRUE(cable.Initialize("Basys")) << "the next attempt works";
}

TEST(DigilentAdept, FailedEnableClosesTheInterface) {
    FakeDigilent library;
    library.Fail("DpcEnableJtag");
    OmDigilentAdept cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("Basys"));
    EXPECT_EQ(log.text, L"Initializing OmDigilentAdept ('Basys')\n"
                        L"Loading dpcutil.dll ...  OK\n"
                        L"*** FAILED *** (DpcEnableJtag() failed)\n");
    EXPECT_EQ(library.calls.back(), "DpcCloseJtag");
    EXPECT_EQ(library.opened, 0);
    library.Fail("");
    EXPECT_TRUE(cable.Initialize("Basys")) << "the next attempt works";
}

TEST(DigilentAdept, OpeningAgainClosesTheInterfaceBefore) {
    FakeDigilent library;
    OmDigilentAdept cable;
    EXPECT_TRUE(cable.Initialize("Basys"));
    EXPECT_TRUE(cable.Initialize("DigilentUsb"));
    EXPECT_EQ(library.opened, 1);
}

TEST(DigilentAdept, ForwardsTheConfiguredDevices) {
    FakeDigilent library;
    OmDigilentAdept cable;
    ASSERT_TRUE(cable.Load());
    LogCollector log;
    EXPECT_EQ(cable.GetDeviceCount(), 2);
    EXPECT_EQ(log.text, L"Found 2 DigilentAdept device(s)\n");
    std::string name = "unchanged";
    EXPECT_TRUE(cable.GetDeviceName(1, name));
    EXPECT_EQ(name, "Basys");
    EXPECT_FALSE(cable.GetDeviceName(2, name));
    EXPECT_EQ(name, "Basys");
    library.deviceCount = -1;
    EXPECT_EQ(cable.GetDeviceCount(), 0);
    library.deviceCount = 0x7FFFFFFF;
    EXPECT_EQ(cable.GetDeviceCount(), 1024) << "callers ask for the name of each";
}

TEST(DigilentAdept, ForwardsTheConfigurationWindow) {
    FakeDigilent library;
    OmDigilentAdept cable;
    ASSERT_TRUE(cable.Load());
    int window = 0;
    EXPECT_EQ(cable.ConfigureDevices(&window), 0);
    EXPECT_EQ(library.configuredOver, &window);
    library.configureError = 3007;
    EXPECT_EQ(cable.ConfigureDevices(nullptr), 3007);
}

TEST(DigilentAdept, FactoryOpensItFromTheSettings) {
    FakeDigilent library;
    LogCollector log;
    OmConnectionSettings settings;
    settings.cableType = OmCableType::DigilentAdept;
    settings.digilentId = "DigilentUsb";
    EXPECT_NE(CreateCable(settings), nullptr);
    EXPECT_EQ(library.calls[1], "DpcOpenJtag 'DigilentUsb'");
    EXPECT_TRUE(log.text.starts_with(L"Creating cable object  DIGILENT_ADEPT\n"
                                     L"Creating OmDigilentAdept\n"));
}

TEST_F(DigilentScan, ResetTapIsSixPairs) {
    cable.ResetTap();
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 6 FF F7"});
}

TEST_F(DigilentScan, ScanDrWalksFromEveryStartToEveryEnd) {
    // In: the walk, the clock into Shift with TDI high, TDI 0, TDI 1 with TMS, the way out. TDO 1,
    // 0 shows from the clock into Shift on; all else is 1 so that a wrong place is seen.
    const WalkCase cases[] = {
        {0, 1, "DpcPutTmsTdiBits 8 tdo 5D 7C", {0xEF}},
        {0, 0, "DpcPutTmsTdiBits 7 tdo 5D 1C", {0x6F}},
        {0, 2, "DpcPutTmsTdiBits 7 tdo 5D 1C", {0x6F}},
        {1, 1, "DpcPutTmsTdiBits 7 tdo 17 1F", {0x77}},
        {1, 0, "DpcPutTmsTdiBits 6 tdo 17 07", {0x37}},
        {1, 2, "DpcPutTmsTdiBits 6 tdo 17 07", {0x37}},
        {2, 1, "DpcPutTmsTdiBits 6 tdo C7 07", {0x3B}},
        {2, 0, "DpcPutTmsTdiBits 5 tdo C7 01", {0x1B}},
        {7, 9, "DpcPutTmsTdiBits 5 tdo C7 01", {0x1B}},
    };
    for (const WalkCase& row : cases) {
        library.tdo = {row.tdo};
        OmBitVector out{9, 9, 9};
        cable.ScanDR({0, 1}, &out, row.from, row.to);
        EXPECT_EQ(library.TakeCalls(), Calls{row.call}) << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{1, 0})) << row.from << row.to;
    }
}

TEST_F(DigilentScan, ScanDrOfOneBitRidesTheClockIntoExit1) {
    library.tdo = {{0x04}};
    OmBitVector out;
    cable.ScanDR({0}, &out, 1, 1);
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 6 tdo 97 07"});
    EXPECT_EQ(out, OmBitVector{1});
}

TEST_F(DigilentScan, ScanDrAcrossBytes) {
    library.tdo = {{0xFC, 0x03}}; // bits 2 to 9: eight ones, then one 0
    OmBitVector out;
    cable.ScanDR({1, 0, 0, 0, 0, 0, 0, 0, 0}, &out, 1, 1);
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 14 tdo 57 00 80 07"});
    EXPECT_EQ(InShiftOrder(out), "111111110");
}

TEST_F(DigilentScan, ScanDrOfWholeBytesAndOfManyOfThem) {
    std::string bytes = " 57";
    for (int i = 0; i < 127; ++i)
        bytes += " 55";
    OmBitVector out;
    cable.ScanDR({1, 0, 0, 0, 0, 0, 0, 0}, &out, 1, 1);
    cable.ScanDR(OmBitVector(513, 1), &out, 1, 1);
    EXPECT_EQ(library.calls, (Calls{"DpcPutTmsTdiBits 13 tdo 57 00 E0 01",
                                    "DpcPutTmsTdiBits 518 tdo" + bytes + " D5 07"}));
}

TEST_F(DigilentScan, WithoutAnOutNothingIsRead) {
    cable.ScanDR({0, 1}, nullptr, 1, 1);
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 7 17 1F"});
}

TEST_F(DigilentScan, ScanIrWalksFromEveryStartToEveryEnd) {
    const struct {
        int from;
        int to;
        const char* head;
        const char* tail;
    } cases[] = {
        {0, 1, "DpcPutTmsTdiBits 4 7D", "DpcPutTmsTdiBits 3 1F"},
        {0, 0, "DpcPutTmsTdiBits 4 7D", "DpcPutTmsTdiBits 2 07"},
        {0, 2, "DpcPutTmsTdiBits 4 7D", "DpcPutTmsTdiBits 2 07"},
        {1, 1, "DpcPutTmsTdiBits 3 1F", "DpcPutTmsTdiBits 3 1F"},
        {1, 0, "DpcPutTmsTdiBits 3 1F", "DpcPutTmsTdiBits 2 07"},
        {1, 2, "DpcPutTmsTdiBits 3 1F", "DpcPutTmsTdiBits 2 07"},
        {2, 1, "DpcPutTmsTdiBits 1 03", "DpcPutTmsTdiBits 3 1F"},
        {2, 0, "DpcPutTmsTdiBits 1 03", "DpcPutTmsTdiBits 2 07"},
        {-1, -1, "DpcPutTmsTdiBits 1 03", "DpcPutTmsTdiBits 2 07"},
    };

    for (const auto& row : cases) {
        library.tdo = {{0x05}};
        OmBitVector out{9};
        cable.ScanIR({0, 1, 0, 1}, &out, row.from, row.to);
        EXPECT_EQ(library.TakeCalls(), (Calls{row.head, "DpcPutTdiBits 4 tms 0 tdo 05", row.tail}))
            << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{1, 0, 1, 0})) << row.from << row.to;
    }
}

TEST_F(DigilentScan, ScanIrOfOneBitSendsItInTheTail) {
    library.tdo = {{0x01}};
    OmBitVector out;
    cable.ScanIR({0}, &out, 1, 1);
    EXPECT_EQ(library.TakeCalls(), (Calls{"DpcPutTmsTdiBits 3 1F", "DpcPutTdiBits 1 tms 0 tdo 01",
                                          "DpcPutTmsTdiBits 3 1E"}));
    EXPECT_EQ(out, OmBitVector{1});
    cable.ScanIR({0}, &out, 1, 0);
    EXPECT_EQ(library.calls.back(), "DpcPutTmsTdiBits 2 06");
}

TEST_F(DigilentScan, ScanIrAcrossBytes) {
    library.tdo = {{0x00, 0x01}};
    OmBitVector out;
    cable.ScanIR({1, 0, 0, 0, 0, 0, 0, 1, 'X'}, &out, 1, 1);
    EXPECT_EQ(library.calls, (Calls{"DpcPutTmsTdiBits 3 1F", "DpcPutTdiBits 9 tms 0 tdo 03 01",
                                    "DpcPutTmsTdiBits 3 1E"}));
    EXPECT_EQ(InShiftOrder(out), "000000001");
}

TEST_F(DigilentScan, BlindBatchIsOneCallWithoutTdo) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({{{0, 1}, false}, {{1, 0}, false}}, &captured);
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 14 17 DF 95 07"});
    EXPECT_TRUE(captured.empty());
}

TEST_F(DigilentScan, BatchSplitsAtTheFirstCapture) {
    library.tdo = {{0x04, 0x00}};
    OmCapturedList captured;
    cable.ScanVectors({{{0}, false}, {{1}, true}, {{0}, false}}, &captured);
    EXPECT_EQ(library.calls,
              (Calls{"DpcPutTmsTdiBits 6 97 07", "DpcPutTmsTdiBits 12 tdo D7 77 79"}));
    EXPECT_EQ(captured, OmCapturedList{{1}});
}

TEST_F(DigilentScan, BatchThatBeginsWithACaptureIsOneCall) {
    library.tdo = {{0x04, 0x01}};
    OmCapturedList captured;
    cable.ScanVectors({{{1}, true}, {{1}, true}}, &captured);
    EXPECT_EQ(library.calls, Calls{"DpcPutTmsTdiBits 12 tdo D7 77 7D"});
    EXPECT_EQ(captured, (OmCapturedList{{1}, {1}}));
}

TEST_F(DigilentScan, WithoutAListNothingIsRead) {
    cable.ScanVectors({{{1}, false}, {{1}, true}}, nullptr);
    EXPECT_EQ(library.calls, (Calls{"DpcPutTmsTdiBits 6 D7 07", "DpcPutTmsTdiBits 6 D7 07"}));
}

TEST_F(DigilentScan, EmptyBatchSendsNothing) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({}, &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(library.calls.empty());
}

TEST_F(DigilentScan, RefusesWhatIsNoScan) {
    OmBitVector out;
    const wchar_t* const empty = L"A JTAG scan of no bits was asked for.";
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({}, &out, 1, 1); }), empty);
    EXPECT_EQ(MessageOf([&] { cable.ScanIR({}, &out, 1, 1); }), empty);
    EXPECT_EQ(MessageOf([&] {
                  cable.ScanVectors({{{1}, false}, {{1, 0}, false}}, nullptr);
              }),
              L"The JTAG scans of one batch differ in length.");
    EXPECT_TRUE(library.calls.empty());
}

TEST_F(DigilentScan, EachFailedCallIsAConnectionErrorAndTheNextAttemptWorks) {
    OmBitVector out;
    OmCapturedList captured;

    const struct {
        const char* call;
        int successes;
        std::function<void()> action;
    } cases[] = {
        {"DpcPutTmsTdiBits", 0, [&] { cable.ResetTap(); }},
        {"DpcPutTmsTdiBits", 0, [&] { cable.ScanDR({1}, &out, 1, 1); }},
        {"DpcPutTmsTdiBits", 0, [&] { cable.ScanDR({1}, nullptr, 1, 1); }},
        {"DpcPutTmsTdiBits", 0, [&] { cable.ScanIR({1}, &out, 1, 1); }},
        {"DpcPutTdiBits", 0, [&] { cable.ScanIR({1}, &out, 1, 1); }},
        {"DpcPutTmsTdiBits", 1, [&] { cable.ScanIR({1}, &out, 1, 1); }},
        {"DpcPutTmsTdiBits", 0,
         [&] {
             cable.ScanVectors({{{1}, true}}, &captured);
         }},
        {"DpcPutTmsTdiBits", 1,
         [&] {
             cable.ScanVectors({{{1}, false}, {{1}, true}}, &captured);
         }},
    };

    for (const auto& row : cases) {
        library.Fail(row.call, row.successes);
        EXPECT_EQ(MessageOf(row.action), L"JTAG connection error") << row.call;
        library.Fail("");
        EXPECT_EQ(MessageOf(row.action), L"(nothing thrown)") << row.call;
    }
}
