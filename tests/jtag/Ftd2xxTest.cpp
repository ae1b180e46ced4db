#include "jtag/Ftd2xx.h"

#include "jtag/CableFactory.h"
#include "jtag/Exception.h"
#include "tests/jtag/FakeD2xx.h"
#include "tests/jtag/LogCollector.h"
#include "tests/support/VirtualClock.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

// Opening with the settings that a test does not care about.
struct Opening {
    std::string description = "Dual RS232-HS A";
    std::string serial;
    uint32_t frequency = 6000000;
    bool adaptive = false;
    uint16_t gpioDir = 0x051B;
    uint16_t gpioValue = 0x010A;
    bool isHighSpeed = false;

    bool Run(OmFtd2xx& cable) {
        return cable.Initialize(description, serial, frequency, adaptive, gpioDir, gpioValue,
                                isHighSpeed);
    }
};

constexpr const char* kRequired[] = {
    "FT_CreateDeviceInfoList",
    "FT_GetDeviceInfoDetail",
    "FT_GetDeviceInfo",
    "FT_OpenEx",
    "FT_Close",
    "FT_ResetDevice",
    "FT_SetUSBParameters",
    "FT_Purge",
    "FT_SetLatencyTimer",
    "FT_SetBitMode",
    "FT_GetQueueStatus",
    "FT_Write",
    "FT_Read",
};

struct SetupCase {
    const char* name;
    uint32_t openedType;
    uint32_t frequency;
    bool adaptive;
    uint16_t gpioDir;
    uint16_t gpioValue;
    Bytes block;
    uint32_t applied;
};

} // namespace

TEST(Ftd2xx, LogsItsCreationAndDestruction) {
    LogCollector log;
    { OmFtd2xx cable; }
    EXPECT_EQ(log.text, L"Creating OmFtd2xx\nDestroying OmFtd2xx\n");
}

TEST(Ftd2xx, NeedsNoKernelDriverAndIsItsOwnHal) {
    OmFtd2xx cable;
    EXPECT_STREQ(cable.GetDriverName(), "");
    EXPECT_EQ(cable.GetJtagHAL(), static_cast<OmJtagHAL*>(&cable));
}

TEST(Ftd2xx, LoadsTheLibraryOnce) {
    FakeD2xx d2xx;
    OmFtd2xx cable;
    LogCollector log;
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading ftd2xx.dll ...  OK\n");
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading ftd2xx.dll ...  OK (DLL already loaded)\n");
    EXPECT_EQ(d2xx.asked, Calls{"ftd2xx.dll"});
    EXPECT_EQ(d2xx.loaded, 1);
}

TEST(Ftd2xx, FailsWithoutTheLibrary) {
    FakeD2xx d2xx;
    d2xx.libraries.clear();
    OmFtd2xx cable;
    LogCollector log;
    Opening opening;
    EXPECT_FALSE(opening.Run(cable));
    EXPECT_EQ(log.text, L"Loading ftd2xx.dll ...  *** FAILED *** (LoadLibrary() failed)\n");
}

TEST(Ftd2xx, EveryEntryPointIsRequired) {
    for (const char* name : kRequired) {
        FakeD2xx d2xx;
        d2xx.missing = name;
        OmFtd2xx cable;
        LogCollector log;
        EXPECT_FALSE(cable.Load()) << name;
        EXPECT_EQ(log.Take(),
                  L"Loading ftd2xx.dll ...  *** FAILED *** (failed to resolve all required "
                  L"exported functions)\n")
            << name;
        EXPECT_EQ(d2xx.loaded, 0) << name;
        d2xx.missing.clear();
        EXPECT_TRUE(cable.Load()) << name;
        EXPECT_EQ(log.Take(), L"Loading ftd2xx.dll ...  OK\n") << name;
    }
}

TEST(Ftd2xx, NeedsNoFunctionOfAnotherCable) {
    FakeD2xx d2xx;
    d2xx.missing = "FT_SetBaudRate";
    OmFtd2xx cable;
    EXPECT_TRUE(cable.Load());
}

TEST(Ftd2xx, InitializesInOneOrderOfCalls) {
    FakeD2xx d2xx;
    VirtualClock clock;
    LogCollector log;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_EQ(
        d2xx.TakeCalls(),
        (Calls{"FT_CreateDeviceInfoList", "FT_GetDeviceInfoDetail 0",
               "FT_OpenEx 'Dual RS232-HS A' 2", "FT_ResetDevice", "FT_SetUSBParameters 16384 0",
               "FT_Purge 3", "FT_SetLatencyTimer 16", "FT_GetDeviceInfo", "FT_SetBitMode 0 0",
               "FT_SetBitMode 0 2", "FT_Write 11", "FT_GetQueueStatus"}));
    EXPECT_EQ(clock.sleptMilliseconds, 32U);
    EXPECT_EQ(log.text, L"Creating OmFtd2xx\n"
                        L"Loading ftd2xx.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"Initialization succeeded\n");
}

TEST(Ftd2xx, TckIsNeverFasterThanAskedForAndTheAppliedOneIsTold) {
    const struct {
        uint32_t openedType;
        uint32_t wanted;
        uint32_t applied;
    } cases[] = {{6, 16000000, 15000000}, {6, 29999999, 15000000},
                 {6, 14999999, 10000000}, {6, 3750000, 3750000},
                 {6, 1100, 1099},         {4, 5999999, 3000000},
                 {4, 25000, 25000},       {4, 7, 91}};

    for (const auto& row : cases) {
        FakeD2xx d2xx;
        d2xx.openedType = row.openedType;
        OmFtd2xx cable;
        Opening opening;
        opening.frequency = row.wanted;
        EXPECT_TRUE(opening.Run(cable));
        EXPECT_EQ(cable.GetFrequency(), row.applied) << row.wanted;
    }
}

TEST(Ftd2xx, TimeOutsAreSetWhereTheLibraryHasThem) {
    FakeD2xx d2xx;
    d2xx.ExportOptional();
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_TRUE(opening.Run(cable));
    const Calls calls = d2xx.TakeCalls();
    const auto opened = std::ranges::find(calls, "FT_OpenEx 'Dual RS232-HS A' 2");
    ASSERT_NE(opened, calls.end());
    EXPECT_EQ(opened[1], "FT_SetTimeouts 50 2500");
}

// A scan of 1,000 bits takes a second at 1 kHz; 31 reads in 300 ms would give up on it.
TEST(Ftd2xx, SlowScanIsWaitedForAsLongAsItTakes) {
    FakeD2xx d2xx;
    d2xx.ExportOptional();
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    opening.frequency = 1000;
    ASSERT_TRUE(opening.Run(cable));
    d2xx.TakeCalls();
    d2xx.answerAt = clock.Milliseconds() + 1000;
    d2xx.Answer(Bytes(126, 0xFF));
    OmBitVector out;
    cable.ScanDR(OmBitVector(1000, 1), &out, kScanFromIdle, kScanToIdle);
    EXPECT_EQ(out, OmBitVector(1000, 1));
    EXPECT_EQ(d2xx.calls[1], "FT_SetTimeouts 50 8660"); // 385 bytes of commands: at most 3,080 ms
}

TEST(Ftd2xx, LostAnswerIsToldWithinThreeSeconds) {
    FakeD2xx d2xx;
    d2xx.ExportOptional();
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    ASSERT_TRUE(opening.Run(cable));
    d2xx.readMilliseconds = 50;
    const uint64_t start = clock.Milliseconds();
    OmBitVector out;
    EXPECT_THROW(cable.ScanDR(OmBitVector(1000, 1), &out, kScanFromIdle, kScanToIdle), OmException);
    EXPECT_LT(clock.Milliseconds() - start, 3000U);
}

TEST(Ftd2xx, SetupBlockSetsPinsDivisorAndClocking) {
    const SetupCase cases[] = {
        {"high speed at 6 MHz",
         6,
         6000000,
         false,
         0x051B,
         0x010A,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x01, 0x05, 0x8A, 0x86, 0x04, 0x00},
         6000000},
        {"high speed at 30 MHz",
         6,
         30000000,
         false,
         0x051B,
         0x010A,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x01, 0x05, 0x8A, 0x86, 0x00, 0x00},
         30000000},
        {"high speed at 1 kHz",
         8,
         1000,
         false,
         0x051B,
         0x010A,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x01, 0x05, 0x8A, 0x86, 0x2F, 0x75},
         1000},
        {"high speed at 7 MHz",
         7,
         7000000,
         false,
         0x051B,
         0x010A,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x01, 0x05, 0x8A, 0x86, 0x04, 0x00},
         6000000},
        {"high speed, adaptive, all pins high",
         6,
         30000000,
         true,
         0xFFFF,
         0xFFFF,
         {0x85, 0x80, 0x7A, 0x7B, 0x82, 0xFF, 0xFF, 0x8A, 0x86, 0x00, 0x00, 0x96},
         30000000},
        {"high speed, pins as wrong as can be",
         6,
         6000000,
         false,
         0x0004,
         0x0005,
         {0x85, 0x80, 0x0A, 0x0B, 0x82, 0x00, 0x00, 0x8A, 0x86, 0x04, 0x00},
         6000000},
        {"FT2232C at 6 MHz",
         4,
         6000000,
         false,
         0x0710,
         0x0300,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x03, 0x07, 0x86, 0x00, 0x00},
         6000000},
        {"FT2232C asked for 30 MHz",
         4,
         30000000,
         false,
         0x0710,
         0x0300,
         {0x85, 0x80, 0x0A, 0x1B, 0x82, 0x03, 0x07, 0x86, 0x00, 0x00},
         6000000},
        {"FT2232C asked for adaptive clocking",
         4,
         1000,
         true,
         0xFFFF,
         0xFFFF,
         {0x85, 0x80, 0xFA, 0xFB, 0x82, 0xFF, 0xFF, 0x86, 0x6F, 0x17},
         1000},
    };
    for (const SetupCase& row : cases) {
        FakeD2xx d2xx;
        d2xx.openedType = row.openedType;
        VirtualClock clock;
        OmFtd2xx cable;
        Opening opening;
        opening.frequency = row.frequency;
        opening.adaptive = row.adaptive;
        opening.gpioDir = row.gpioDir;
        opening.gpioValue = row.gpioValue;
        EXPECT_TRUE(opening.Run(cable)) << row.name;
        EXPECT_EQ(d2xx.writes, std::vector<Bytes>{row.block}) << row.name;
        EXPECT_EQ(cable.GetFrequency(), row.applied) << row.name;
        EXPECT_EQ(opening.isHighSpeed, row.openedType != 4) << row.name;
    }
}

TEST(Ftd2xx, PartThatDoesNotTellItsTypeCountsAsHighSpeed) {
    FakeD2xx d2xx;
    d2xx.openedType = 4;
    d2xx.Fail("FT_GetDeviceInfo");
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_TRUE(opening.isHighSpeed);
}

TEST(Ftd2xx, PlainPartClearsTheHighSpeedFlag) {
    FakeD2xx d2xx;
    d2xx.openedType = 4;
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    opening.isHighSpeed = true;
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_FALSE(opening.isHighSpeed);
}

TEST(Ftd2xx, RefusesAFrequencyOfZero) {
    FakeD2xx d2xx;
    OmFtd2xx cable;
    Opening opening;
    opening.frequency = 0;
    EXPECT_FALSE(opening.Run(cable));
}

TEST(Ftd2xx, StaleBytesAreReadAndThrownAway) {
    FakeD2xx d2xx;
    d2xx.Answer({0xFA, 0x96, 0x00});
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_TRUE(d2xx.queue.empty());
    EXPECT_EQ(d2xx.calls.back(), "FT_Read 3");
}

TEST(Ftd2xx, FailedFirstWriteClosesTheDevice) {
    FakeD2xx d2xx;
    d2xx.Fail("FT_Write");
    VirtualClock clock;
    OmFtd2xx cable;
    LogCollector log;
    Opening opening;
    EXPECT_FALSE(opening.Run(cable));
    EXPECT_EQ(log.text, L"Loading ftd2xx.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"*** FAILED *** (first write operation failed)\n");
    EXPECT_EQ(d2xx.openHandles, 0);
    EXPECT_EQ(d2xx.calls.back(), "FT_Close");
    d2xx.Fail("");
    EXPECT_TRUE(opening.Run(cable)) << "the next attempt works";
}

TEST(Ftd2xx, StaleBytesThatNeverComeCloseTheDevice) {
    FakeD2xx d2xx;
    d2xx.waiting = 5;
    VirtualClock clock;
    OmFtd2xx cable;
    LogCollector log;
    Opening opening;
    EXPECT_FALSE(opening.Run(cable));
    EXPECT_EQ(log.text, L"Loading ftd2xx.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"*** FAILED *** (FtdiRead() has thrown an exception)\n");
    EXPECT_EQ(d2xx.openHandles, 0);
    EXPECT_EQ(clock.sleptMilliseconds, 332U);
    d2xx.waiting = 0;
    EXPECT_TRUE(opening.Run(cable)) << "the next attempt works";
}

// A library that has gone mad could keep the program reading for hours.
TEST(Ftd2xx, MoreStaleBytesThanAnyQueueHoldsCloseTheDevice) {
    FakeD2xx d2xx;
    d2xx.waiting = 0xFFFFFFFE;
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_FALSE(opening.Run(cable));
    EXPECT_EQ(d2xx.openHandles, 0);
    EXPECT_EQ(d2xx.Count("FT_Read"), 0);
    EXPECT_EQ(clock.sleptMilliseconds, 32U);
}

TEST(Ftd2xx, FailureToListOrOpenIsFalseWithoutAnotherLine) {
    for (const char* call : {"FT_CreateDeviceInfoList", "FT_GetDeviceInfoDetail", "FT_OpenEx"}) {
        FakeD2xx d2xx;
        d2xx.Fail(call);
        VirtualClock clock;
        LogCollector log;
        OmFtd2xx cable;
        log.Take();
        Opening opening;
        EXPECT_FALSE(opening.Run(cable)) << call;
        EXPECT_EQ(log.Take(), L"Loading ftd2xx.dll ...  OK\n") << call;
        d2xx.Fail("");
        EXPECT_TRUE(opening.Run(cable)) << call;
        EXPECT_EQ(log.Take(), L"Loading ftd2xx.dll ...  OK (DLL already loaded)\n"
                              L"Device successfully opened\n"
                              L"Initialization succeeded\n")
            << call;
    }
}

TEST(Ftd2xx, FailureOfATuningCallIsIgnored) {
    for (const char* call : {"FT_ResetDevice", "FT_SetUSBParameters", "FT_Purge",
                             "FT_SetLatencyTimer", "FT_SetBitMode", "FT_GetQueueStatus"}) {
        FakeD2xx d2xx;
        d2xx.Fail(call);
        VirtualClock clock;
        OmFtd2xx cable;
        Opening opening;
        EXPECT_TRUE(opening.Run(cable)) << call;
    }
}

TEST(Ftd2xx, OpeningAgainClosesTheDeviceBefore) {
    FakeD2xx d2xx;
    VirtualClock clock;
    OmFtd2xx cable;
    Opening opening;
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_TRUE(opening.Run(cable));
    EXPECT_EQ(d2xx.openHandles, 1);
}

TEST(Ftd2xx, DestructorClosesTheDeviceBeforeItFreesTheLibrary) {
    FakeD2xx d2xx; // fails the test if a handle or the library is left
    VirtualClock clock;
    auto cable = std::make_unique<OmFtd2xx>();
    Opening opening;
    EXPECT_TRUE(opening.Run(*cable));
    cable.reset();
    EXPECT_EQ(d2xx.calls.back(), "FT_Close");
    EXPECT_EQ(d2xx.loaded, 0);
}

TEST(Ftd2xx, FactoryOpensItFromTheSettings) {
    FakeD2xx d2xx;
    d2xx.devices = {{"Pod A", "1"}, {"Pod A", "2"}};
    VirtualClock clock;
    LogCollector log;
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    settings.ftd2xxDescription = "Pod A";
    settings.ftd2xxSerial = "2";
    settings.ftd2xxFrequency = 15000000;
    settings.ftd2xxAdaptiveClocking = true;
    settings.ftd2xxGpioDir = 0x0710;
    settings.ftd2xxGpioValue = 0x0300;
    const auto cable = CreateCable(settings);
    ASSERT_NE(cable, nullptr);
    EXPECT_TRUE(settings.ftd2xxIsHighSpeed);
    EXPECT_EQ(cable->GetJtagHAL()->GetFrequency(), 15000000U);
    EXPECT_EQ(d2xx.calls[3], "FT_OpenEx '2' 1");
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{{0x85, 0x80, 0x0A, 0x1B, 0x82, 0x03, 0x07, 0x8A,
                                                0x86, 0x01, 0x00, 0x96}}));
    EXPECT_EQ(log.text, L"Creating cable object  FTD2XX\n"
                        L"Creating OmFtd2xx\n"
                        L"Loading ftd2xx.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"Initialization succeeded\n");
}

TEST(Ftd2xx, FactoryDeletesACableThatFails) {
    FakeD2xx d2xx;
    d2xx.devices.clear();
    LogCollector log;
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    EXPECT_EQ(CreateCable(settings), nullptr);
    EXPECT_EQ(log.text, L"Creating cable object  FTD2XX\n"
                        L"Creating OmFtd2xx\n"
                        L"Loading ftd2xx.dll ...  OK\n"
                        L"Destroying OmFtd2xx\n"
                        L"*** FAILED *** (CreateCable failed)\n");
}
