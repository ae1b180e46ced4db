#include "jtag/JLink.h"

#include "jtag/CableFactory.h"
#include "jtag/Exception.h"
#include "tests/jtag/FakeJLink.h"
#include "tests/jtag/LogCollector.h"
#include "tests/jtag/ScanHelpers.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

constexpr const char* kRequired[] = {
    "JLINKARM_Open",
    "JLINKARM_Close",
    "JLINKARM_SelectUSB",
    "JLINKARM_SelectIP",
    "JLINKARM_SetWarnOutHandler",
    "JLINKARM_SetErrorOutHandler",
    "JLINKARM_HasError",
    "JLINKARM_ClrError",
    "JLINKARM_SetSpeed",
    "JLINKARM_JTAG_StoreGetRaw",
    "JLINKARM_JTAG_StoreRaw",
};

class JLinkScan : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(cable.Initialize(0, "", 0, 6000000));
        library.TakeCalls();
    }

    FakeJLink library;
    OmJLink cable;
};

struct WalkCase {
    bool instruction;
    int from;
    int to;
    const char* call;
    uint8_t tdo; // for 1, 0
};

} // namespace

TEST(JLink, VectorsPerTransferFollowFromTheLength) {
    OmJLink cable;
    float reading = 0;
    float blind = 0;
    float status = 0;
    cable.GetVectorsPerTransfer(103, &reading, &blind, &status); // 103 / 4 is 25
    EXPECT_FLOAT_EQ(reading, 36.214287F);
    EXPECT_FLOAT_EQ(blind, 36.214287F);
    EXPECT_EQ(status, -1.0F);
    cable.GetVectorsPerTransfer(1, nullptr, &blind, nullptr);
    EXPECT_FLOAT_EQ(blind, 338.0F);
    cable.GetVectorsPerTransfer(1, nullptr, nullptr, nullptr);
}

TEST(JLink, NeedsNoKernelDriverAndIsItsOwnHal) {
    OmJLink cable;
    EXPECT_STREQ(cable.GetDriverName(), "");
    EXPECT_EQ(cable.GetJtagHAL(), static_cast<OmJtagHAL*>(&cable));
}

TEST(JLink, LoadsTheLibraryOnce) {
    FakeJLink library;
    OmJLink cable;
    LogCollector log;
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading JLinkARM.dll ...  OK\n");
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading JLinkARM.dll ...  OK (DLL already loaded)\n");
    EXPECT_EQ(library.asked, Calls{"JLinkARM.dll"});
}

TEST(JLink, FailsWithoutTheLibrary) {
    FakeJLink library;
    library.libraries.clear();
    OmJLink cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(0, "", 0, 6000000));
    EXPECT_EQ(log.text, L"Loading JLinkARM.dll ...  *** FAILED *** (LoadLibrary() failed)\n");
}

TEST(JLink, EveryEntryPointIsRequired) {
    for (const char* name : kRequired) {
        FakeJLink library;
        library.missing = name;
        OmJLink cable;
        LogCollector log;
        EXPECT_FALSE(cable.Load()) << name;
        EXPECT_EQ(log.text, L"Loading JLinkARM.dll ...  *** FAILED *** (failed to resolve all "
                            L"required exported functions)\n")
            << name;
        EXPECT_EQ(library.loaded, 0) << name;
        library.missing.clear();
        EXPECT_TRUE(cable.Load()) << name;
    }
}

// What a blind batch stores may wait in the library, and its errors with it.
TEST(JLink, WhatIsStoredIsSentBeforeTheActionEnds) {
    FakeJLink library;
    library.ExportSyncBits();
    OmJLink cable;
    ASSERT_TRUE(cable.Initialize(0, "", 0, 6000000));
    const OmScanList blind{{{1, 0, 1}, false}};
    library.TakeCalls();
    cable.ScanVectors(blind, nullptr);
    EXPECT_EQ(library.TakeCalls().back(), "SyncBits");
    library.syncError = "USB gone";
    EXPECT_THROW(cable.ScanVectors(blind, nullptr), OmException);
    OmBitVector out;
    cable.ScanDR({1, 0, 1}, &out, kScanFromIdle, kScanToIdle);
    EXPECT_EQ(library.TakeCalls().back(), "SyncBits");
}

TEST(JLink, OpensOverUsbAndClosesInOneOrderOfCalls) {
    FakeJLink library;
    LogCollector log;
    {
        OmJLink cable;
        EXPECT_TRUE(cable.Initialize(0, "ignored", 7, 12000000));
        EXPECT_EQ(cable.GetFrequency(), 12000000U);
    }
    EXPECT_EQ(library.calls,
              (Calls{"SelectUSB 0", "SetWarnOutHandler", "Open", "SetErrorOutHandler", "HasError",
                     "SetSpeed 12000", "HasError", "HasError", "Close"}));
    EXPECT_EQ(log.text, L"Creating OmJLink\n"
                        L"Loading JLinkARM.dll ...  OK\n"
                        L"Destroying OmJLink\n");
}

TEST(JLink, MinusOneSelectsTheServer) {
    FakeJLink library;
    OmJLink cable;
    EXPECT_TRUE(cable.Initialize(-1, "bench.example", 19020, 999));
    EXPECT_EQ(library.calls[0], "SelectIP 'bench.example' 19020");
    EXPECT_EQ(library.calls[5], "SetSpeed 0");
    EXPECT_EQ(cable.GetFrequency(), 999U);
}

TEST(JLink, FailedSelectionIsFalseWithoutAnotherLine) {
    for (const int number : {3, -1}) {
        FakeJLink library;
        library.selectResult = -1;
        OmJLink cable;
        LogCollector log;
        EXPECT_FALSE(cable.Initialize(number, "host", 1, 1000));
        EXPECT_EQ(log.text, L"Loading JLinkARM.dll ...  OK\n");
        EXPECT_EQ(library.calls.size(), 1U);
        library.selectResult = 0;
        EXPECT_TRUE(cable.Initialize(number, "host", 1, 1000)) << "the next attempt works";
    }
}

TEST(JLink, FailedOpenLogsTheLibrarysText) {
    FakeJLink library;
    library.openFailure = "Cannot connect to J-Link 100% \xB5";
    OmJLink cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize(0, "", 0, 1000));
    EXPECT_EQ(log.text, L"Loading JLinkARM.dll ...  OK\n"
                        L"*** FAILED *** (JLINK_Open() failed: Cannot connect to J-Link 100% "
                        L"\u00B5)\n");
    library.openFailure = nullptr;
    EXPECT_TRUE(cable.Initialize(0, "", 0, 1000)) << "the next attempt works";
}

TEST(JLink, PendingErrorsAreClearedOnOpeningAndClosing) {
    FakeJLink library;
    library.pendingError = true;
    {
        OmJLink cable;
        EXPECT_TRUE(cable.Initialize(0, "", 0, 1000));
        EXPECT_FALSE(library.pendingError);
        library.pendingError = true;
    } // the library's double checks that nothing is pending when it is closed
    EXPECT_FALSE(library.pendingError);
}

TEST(JLink, OpeningAgainClosesTheConnectionBefore) {
    FakeJLink library;
    OmJLink cable;
    EXPECT_TRUE(cable.Initialize(0, "", 0, 1000));
    library.TakeCalls();
    EXPECT_TRUE(cable.Initialize(1, "", 0, 1000));
    EXPECT_EQ(library.calls[1], "Close");
    EXPECT_EQ(library.calls[2], "SelectUSB 1");
}

TEST(JLink, FactoryOpensEitherFormFromTheSettings) {
    FakeJLink library;
    OmConnectionSettings settings;
    settings.jlinkUsbNumber = 2;
    settings.jlinkUsbFrequency = 4000000;
    settings.jlinkIpHost = "bench.example";
    settings.jlinkIpPort = 19021;
    settings.jlinkIpFrequency = 2000000;
    LogCollector log;
    settings.cableType = OmCableType::JLinkUsb;
    EXPECT_NE(CreateCable(settings), nullptr);
    EXPECT_EQ(library.calls[0], "SelectUSB 2");
    EXPECT_EQ(library.calls[5], "SetSpeed 4000");
    EXPECT_TRUE(log.Take().starts_with(L"Creating cable object  JLINK_USB\nCreating OmJLink\n"));
    library.TakeCalls();
    settings.cableType = OmCableType::JLinkIp;
    EXPECT_NE(CreateCable(settings), nullptr);
    EXPECT_EQ(library.calls[0], "SelectIP 'bench.example' 19021");
    EXPECT_EQ(library.calls[5], "SetSpeed 2000");
    EXPECT_TRUE(log.Take().starts_with(L"Creating cable object  JLINK_IP\nCreating OmJLink\n"));
}

TEST_F(JLinkScan, ResetTapIs31HighClocksAndALowOne) {
    cable.ResetTap();
    EXPECT_EQ(library.calls, (Calls{"HasError", "StoreGetRaw 32 tms FF FF FF 7F tdi FF 00 00 00"}));
}

TEST_F(JLinkScan, WalksFromEveryStartToEveryEnd) {
    // In: the walk, 0, 1 with TMS, the way out; TDI is high on the walks. TDO 1, 0 stands after
    // the walk; all else is 1 so that a wrong place is seen.
    const WalkCase cases[] = {
        {false, 0, 1, "StoreGetRaw 8 tms 62 tdi EF", 0xDF},
        {false, 0, 0, "StoreGetRaw 7 tms 22 tdi 6F", 0xDF},
        {false, 0, 2, "StoreGetRaw 7 tms 22 tdi 6F", 0xDF},
        {false, 1, 1, "StoreGetRaw 7 tms 31 tdi 77", 0xEF},
        {false, 1, 0, "StoreGetRaw 6 tms 11 tdi 37", 0xEF},
        {false, 1, 2, "StoreGetRaw 6 tms 11 tdi 37", 0xEF},
        {false, 2, 1, "StoreGetRaw 6 tms 19 tdi 3B", 0xF7},
        {false, 2, 0, "StoreGetRaw 5 tms 09 tdi 1B", 0xF7},
        {false, 7, 9, "StoreGetRaw 5 tms 09 tdi 1B", 0xF7},
        {true, 0, 1, "StoreGetRaw 9 tms C6 00 tdi DF 01", 0xBF},
        {true, 0, 0, "StoreGetRaw 8 tms 46 tdi DF", 0xBF},
        {true, 0, 2, "StoreGetRaw 8 tms 46 tdi DF", 0xBF},
        {true, 1, 1, "StoreGetRaw 8 tms 63 tdi EF", 0xDF},
        {true, 1, 0, "StoreGetRaw 7 tms 23 tdi 6F", 0xDF},
        {true, 1, 2, "StoreGetRaw 7 tms 23 tdi 6F", 0xDF},
        {true, 2, 1, "StoreGetRaw 6 tms 19 tdi 3B", 0xF7},
        {true, 2, 0, "StoreGetRaw 5 tms 09 tdi 1B", 0xF7},
        {true, -1, -1, "StoreGetRaw 5 tms 09 tdi 1B", 0xF7},
    };
    for (const WalkCase& row : cases) {
        library.tdo = {{row.tdo}};
        OmBitVector out{9, 9, 9};
        if (row.instruction)
            cable.ScanIR({0, 1}, &out, row.from, row.to);
        else
            cable.ScanDR({0, 1}, &out, row.from, row.to);
        EXPECT_EQ(library.TakeCalls(), (Calls{"HasError", row.call}))
            << row.instruction << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{1, 0})) << row.instruction << row.from << row.to;
    }
}

TEST_F(JLinkScan, ScanOfOneBitPutsItWithTmsHigh) {
    library.tdo = {{0x08}};
    OmBitVector out;
    cable.ScanDR({0}, &out, 1, 1);
    EXPECT_EQ(library.calls.back(), "StoreGetRaw 6 tms 19 tdi 37");
    EXPECT_EQ(out, OmBitVector{1});
}

TEST_F(JLinkScan, ScanAcrossBytes) {
    library.tdo = {{0xF8, 0x07}}; // bits 3 to 11: eight ones, then a 0
    OmBitVector out;
    cable.ScanDR({1, 0, 0, 'X', 'Z', 2, 0, 1, 0}, &out, 1, 1);
    EXPECT_EQ(library.calls.back(), "StoreGetRaw 14 tms 01 18 tdi 0F 34");
    EXPECT_EQ(InShiftOrder(out), "111111110");
}

TEST_F(JLinkScan, ScansOfWholeBytesAndOfManyOfThem) {
    OmBitVector out;
    cable.ScanDR({1, 0, 0, 0, 0, 0, 0, 0}, &out, 1, 1);
    EXPECT_EQ(library.calls.back(), "StoreGetRaw 13 tms 01 0C tdi 0F 18");
    std::string tms = " 01";
    std::string tdi;
    for (int i = 0; i < 63; ++i)
        tms += " 00";
    for (int i = 0; i < 64; ++i)
        tdi += " FF";
    cable.ScanDR(OmBitVector(513, 1), &out, 1, 1);
    EXPECT_EQ(library.calls.back(), "StoreGetRaw 518 tms" + tms + " 18 tdi" + tdi + " 3F");
}

TEST_F(JLinkScan, ShorterScanBehindALongerOneIsClean) {
    OmBitVector out;
    cable.ScanDR(OmBitVector(200, 1), &out, 1, 1);
    cable.ScanDR({0}, &out, 1, 0);
    EXPECT_EQ(library.calls.back(), "StoreGetRaw 5 tms 09 tdi 17");
}

TEST_F(JLinkScan, BatchWithoutAFlagIsOneSend) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({{{0, 1}, false}, {{1, 0}, false}}, &captured);
    EXPECT_EQ(library.calls, (Calls{"HasError", "StoreRaw 14 tms B1 18 tdi F7 37"}));
    EXPECT_TRUE(captured.empty());
}

TEST_F(JLinkScan, BatchThatBeginsWithACaptureRunsOnceOverAll) {
    library.tdo = {{0x08, 0x02}};
    OmCapturedList captured;
    cable.ScanVectors({{{1}, true}, {{0}, false}, {{1}, true}}, &captured);
    EXPECT_EQ(library.calls, (Calls{"HasError", "StoreGetRaw 18 tms 59 96 01 tdi FF FD 03"}));
    EXPECT_EQ(captured, (OmCapturedList{{1}, {0}}));
}

TEST_F(JLinkScan, BatchWithACaptureInTheMiddleRunsTwice) {
    library.tdo = {{0x08}};
    OmCapturedList captured;
    cable.ScanVectors({{{0}, false}, {{1}, true}, {{0}, false}}, &captured);
    EXPECT_EQ(library.calls, (Calls{"HasError", "StoreRaw 6 tms 19 tdi 37", "HasError",
                                    "StoreGetRaw 12 tms 59 06 tdi FF 0D"}));
    EXPECT_EQ(captured, OmCapturedList{{1}});
}

TEST_F(JLinkScan, WithoutAListBothPartsAreSends) {
    cable.ScanVectors({{{0}, false}, {{1}, true}}, nullptr);
    EXPECT_EQ(library.calls, (Calls{"HasError", "StoreRaw 6 tms 19 tdi 37", "HasError",
                                    "StoreRaw 6 tms 19 tdi 3F"}));
}

TEST_F(JLinkScan, EmptyBatchSendsNothing) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({}, &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(library.calls.empty());
}

TEST_F(JLinkScan, RefusesWhatIsNoScan) {
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

TEST_F(JLinkScan, ReportedErrorIsThrownWithTheLibrarysTextAndDoesNotPoisonTheNextScan) {
    OmBitVector out;
    OmCapturedList captured;
    const std::function<void()> actions[] = {
        [&] { cable.ResetTap(); },
        [&] { cable.ScanDR({1}, &out, 1, 1); },
        [&] { cable.ScanIR({1}, &out, 1, 1); },
        [&] {
            cable.ScanVectors({{{1}, false}}, &captured);
        },
        [&] {
            cable.ScanVectors({{{1}, true}}, &captured);
        },
    };
    for (const auto& action : actions) {
        LogCollector log;
        library.rawError = "100% lost %s";
        EXPECT_EQ(MessageOf(action), L"JTAG connection error:\n100% lost %s");
        EXPECT_EQ(log.Take(), L"*** J-Link ERROR: 100% lost %s\n");
        EXPECT_TRUE(library.pendingError);
        library.TakeCalls();
        EXPECT_EQ(MessageOf(action), L"(nothing thrown)");
        EXPECT_EQ(library.calls[0], "HasError");
        EXPECT_EQ(library.calls[1], "ClrError");
        EXPECT_EQ(log.text, L"");
    }
}

TEST_F(JLinkScan, WarningsAreOnlyLogged) {
    LogCollector log;
    library.rawWarning = "Target voltage low";
    EXPECT_EQ(MessageOf([this] { cable.ResetTap(); }), L"(nothing thrown)");
    EXPECT_EQ(log.text, L"*** J-Link WARNING: Target voltage low\n");
}

TEST_F(JLinkScan, ReportsWithoutATextAreTaken) {
    LogCollector log;
    library.onWarning(nullptr);
    EXPECT_EQ(log.Take(), L"*** J-Link WARNING: \n");
    library.onError(nullptr);
    EXPECT_EQ(log.Take(), L"*** J-Link ERROR: \n");
}
