#include "jtag/UsbBlaster.h"

#include "jtag/CableFactory.h"
#include "jtag/Exception.h"
#include "tests/jtag/FakeD2xx.h"
#include "tests/jtag/LogCollector.h"
#include "tests/support/VirtualClock.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

constexpr uint32_t kBlasterId = 0x09FB6001;

constexpr const char* kRequired[] = {
    "FT_CreateDeviceInfoList",
    "FT_GetDeviceInfoDetail",
    "FT_OpenEx",
    "FT_Close",
    "FT_ResetDevice",
    "FT_SetUSBParameters",
    "FT_Purge",
    "FT_SetLatencyTimer",
    "FT_SetBaudRate",
    "FT_SetBitMode",
    "FT_GetQueueStatus",
    "FT_Write",
    "FT_Read",
};

// One USB-Blaster behind the vendor's private library.
class UsbBlasterD2xx : public FakeD2xx {
  public:
    UsbBlasterD2xx() {
        libraries = {"usbblstr32.dll"};
        devices = {{"USB-Blaster", "91D28408", 5, 0, kBlasterId}};
    }
};

class UsbBlasterScan : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(cable.Initialize("USB-Blaster", ""));
        d2xx.TakeCalls();
        d2xx.TakeWrites();
        clock.sleptMilliseconds = 0;
    }

    std::wstring MessageOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const OmException& error) {
            return error.GetText();
        }
        return L"(nothing thrown)";
    }

    UsbBlasterD2xx d2xx;
    VirtualClock clock;
    OmUsbBlaster cable;
};

Bytes operator+(const Bytes& one, const Bytes& other) {
    Bytes joined = one;
    joined.insert(joined.end(), other.begin(), other.end());
    return joined;
}

struct WalkCase {
    bool instruction;
    int from;
    int to;
    const char* in; // pin states as characters
    const char* out;
};

constexpr WalkCase kWalks[] = {
    {false, 0, 1, "<=>?<=<=<", ">?<=<"}, {false, 0, 0, "<=>?<=<=<", "<=<"},
    {false, 0, 2, "<=>?<=<=<", "<=<"},   {false, 1, 1, ">?<=<=<", ">?<=<"},
    {false, 1, 0, ">?<=<=<", "<=<"},     {false, 1, 2, ">?<=<=<", "<=<"},
    {false, 2, 1, ">?<=<", ">?<=<"},     {false, 2, 0, ">?<=<", "<=<"},
    {false, 9, 9, ">?<=<", "<=<"},       {true, 0, 1, "<=>?>?<=<=<", ">?<=<"},
    {true, 0, 0, "<=>?>?<=<=<", "<=<"},  {true, 0, 2, "<=>?>?<=<=<", "<=<"},
    {true, 1, 1, ">?>?<=<=<", ">?<=<"},  {true, 1, 0, ">?>?<=<=<", "<=<"},
    {true, 1, 2, ">?>?<=<=<", "<=<"},    {true, 2, 1, ">?<=<", ">?<=<"},
    {true, 2, 0, ">?<=<", "<=<"},        {true, -1, -1, ">?<=<", "<=<"},
};

Bytes Pins(const std::string& states) {
    return {states.begin(), states.end()};
}

const Bytes kFromIdle = Pins(">?<=<=<");
const Bytes kToIdle = Pins(">?<=<");

struct LengthCase {
    const char* in; // leftmost is shifted first
    Bytes body;
    Bytes answer;
    const char* out;
};

OmBitVector Shifted(const std::string& text) {
    return BitsFromText(std::string(text.rbegin(), text.rend()));
}

struct ChoiceCase {
    const char* name;
    std::vector<FakeD2xx::Device> devices;
    std::string description;
    std::string serial;
    std::string opened;
};

} // namespace

TEST(UsbBlaster, HasAFixedFrequencyAndNoBatching) {
    OmUsbBlaster cable;
    EXPECT_EQ(cable.GetFrequency(), 12000000U);
    float reading = 0;
    float blind = 0;
    float status = 0;
    cable.GetVectorsPerTransfer(100, &reading, &blind, &status);
    EXPECT_EQ(reading, -1.0F);
    EXPECT_EQ(blind, -1.0F);
    EXPECT_EQ(status, -1.0F);
    cable.GetVectorsPerTransfer(100, nullptr, nullptr, nullptr);
    EXPECT_STREQ(cable.GetDriverName(), "");
    EXPECT_EQ(cable.GetJtagHAL(), static_cast<OmJtagHAL*>(&cable));
}

TEST(UsbBlaster, VendorsOwnLibraryGoesFirst) {
    UsbBlasterD2xx d2xx;
    d2xx.libraries = {"usbblstr32.dll", "ftd2xx.dll"};
    OmUsbBlaster cable;
    LogCollector log;
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading USB-Blaster FTD2XX interface:\n"
                          L"Loading usbblstr32.dll ...  OK\n");
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.Take(), L"Loading USB-Blaster FTD2XX interface:\n"
                          L"  OK (DLL already loaded)\n");
    EXPECT_EQ(d2xx.asked, Calls{"usbblstr32.dll"});
}

TEST(UsbBlaster, GeneralLibraryGoesSecond) {
    UsbBlasterD2xx d2xx;
    d2xx.libraries = {"ftd2xx.dll"};
    OmUsbBlaster cable;
    LogCollector log;
    EXPECT_TRUE(cable.Load());
    EXPECT_EQ(log.text, L"Loading USB-Blaster FTD2XX interface:\n"
                        L"Loading usbblstr32.dll ...  *** FAILED *** (LoadLibrary() failed)\n"
                        L"Loading ftd2xx.dll ...  OK\n");
    EXPECT_EQ(d2xx.asked, (Calls{"usbblstr32.dll", "ftd2xx.dll"}));
}

TEST(UsbBlaster, FailsWithoutEitherLibrary) {
    UsbBlasterD2xx d2xx;
    d2xx.libraries.clear();
    OmUsbBlaster cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("USB-Blaster", ""));
    EXPECT_EQ(log.text, L"Loading USB-Blaster FTD2XX interface:\n"
                        L"Loading usbblstr32.dll ...  *** FAILED *** (LoadLibrary() failed)\n"
                        L"Loading ftd2xx.dll ...  *** FAILED *** (LoadLibrary() failed)\n");
}

TEST(UsbBlaster, EveryEntryPointIsRequired) {
    for (const char* name : kRequired) {
        UsbBlasterD2xx d2xx;
        d2xx.libraries = {"usbblstr32.dll", "ftd2xx.dll"};
        d2xx.missing = name;
        OmUsbBlaster cable;
        LogCollector log;
        EXPECT_FALSE(cable.Load()) << name;
        EXPECT_EQ(log.text, L"Loading USB-Blaster FTD2XX interface:\n"
                            L"Loading usbblstr32.dll ...  *** FAILED *** (failed to resolve all "
                            L"required exported functions)\n")
            << name;
        EXPECT_EQ(d2xx.loaded, 0) << name;
        d2xx.missing.clear();
        EXPECT_TRUE(cable.Load()) << name;
    }
}

TEST(UsbBlaster, NeedsNoFunctionOfAnotherCable) {
    UsbBlasterD2xx d2xx;
    d2xx.missing = "FT_GetDeviceInfo";
    OmUsbBlaster cable;
    EXPECT_TRUE(cable.Load());
}

TEST(UsbBlaster, InitializesInOneOrderOfCalls) {
    UsbBlasterD2xx d2xx;
    VirtualClock clock;
    LogCollector log;
    {
        OmUsbBlaster cable;
        EXPECT_TRUE(cable.Initialize("USB-Blaster", ""));
    }
    EXPECT_EQ(
        d2xx.calls,
        (Calls{"FT_CreateDeviceInfoList", "FT_GetDeviceInfoDetail 0", "FT_OpenEx 'USB-Blaster' 2",
               "FT_ResetDevice", "FT_Purge 3", "FT_SetLatencyTimer 2", "FT_SetBaudRate 3000000",
               "FT_SetBitMode 0 0", "FT_Write 75", "FT_GetQueueStatus", "FT_Close"}));
    EXPECT_EQ(clock.sleptMilliseconds, 32U);
    EXPECT_EQ(log.text, L"Creating OmUsbBlaster\n"
                        L"Loading USB-Blaster FTD2XX interface:\n"
                        L"Loading usbblstr32.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"Initialization succeeded\n"
                        L"Destroying OmUsbBlaster\n");
}

TEST(UsbBlaster, ResyncIs37PairsAndALowByteWithTmsHigh) {
    UsbBlasterD2xx d2xx;
    VirtualClock clock;
    OmUsbBlaster cable;
    ASSERT_TRUE(cable.Initialize("USB-Blaster", ""));
    ASSERT_EQ(d2xx.writes.size(), 1U);
    std::string expected;
    for (int i = 0; i < 37; ++i)
        expected += ">?";
    EXPECT_EQ(d2xx.writes[0], Pins(expected + ">"));
}

TEST(UsbBlaster, NothingStaleIsLeftInTheQueue) {
    UsbBlasterD2xx d2xx;
    d2xx.Answer({1, 0, 1});
    VirtualClock clock;
    OmUsbBlaster cable;
    EXPECT_TRUE(cable.Initialize("USB-Blaster", ""));
    EXPECT_TRUE(d2xx.queue.empty());
    EXPECT_EQ(d2xx.calls.back(), "FT_Read 3");
}

TEST(UsbBlaster, FailedResyncClosesTheDevice) {
    UsbBlasterD2xx d2xx;
    d2xx.Fail("FT_Write");
    VirtualClock clock;
    OmUsbBlaster cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("USB-Blaster", ""));
    EXPECT_EQ(log.text, L"Loading USB-Blaster FTD2XX interface:\n"
                        L"Loading usbblstr32.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"*** FAILED *** (ResyncCPLD() has thrown an exception)\n");
    EXPECT_EQ(d2xx.openHandles, 0);
    d2xx.Fail("");
    EXPECT_TRUE(cable.Initialize("USB-Blaster", "")) << "the next attempt works";
}

TEST(UsbBlaster, StaleBytesThatNeverComeCloseTheDevice) {
    UsbBlasterD2xx d2xx;
    d2xx.waiting = 2;
    VirtualClock clock;
    OmUsbBlaster cable;
    LogCollector log;
    EXPECT_FALSE(cable.Initialize("USB-Blaster", ""));
    EXPECT_EQ(log.text, L"Loading USB-Blaster FTD2XX interface:\n"
                        L"Loading usbblstr32.dll ...  OK\n"
                        L"Device successfully opened\n"
                        L"*** FAILED *** (FtdiRead() has thrown an exception)\n");
    EXPECT_EQ(d2xx.openHandles, 0);
    EXPECT_EQ(clock.sleptMilliseconds, 332U);
}

TEST(UsbBlaster, FailureToListOrOpenIsFalse) {
    for (const char* call : {"FT_CreateDeviceInfoList", "FT_GetDeviceInfoDetail", "FT_OpenEx"}) {
        UsbBlasterD2xx d2xx;
        d2xx.Fail(call);
        VirtualClock clock;
        OmUsbBlaster cable;
        EXPECT_FALSE(cable.Initialize("USB-Blaster", "")) << call;
        d2xx.Fail("");
        EXPECT_TRUE(cable.Initialize("USB-Blaster", "")) << call;
    }
}

TEST(UsbBlaster, FailureOfATuningCallIsIgnored) {
    for (const char* call : {"FT_ResetDevice", "FT_Purge", "FT_SetLatencyTimer", "FT_SetBaudRate",
                             "FT_SetBitMode", "FT_GetQueueStatus"}) {
        UsbBlasterD2xx d2xx;
        d2xx.Fail(call);
        VirtualClock clock;
        OmUsbBlaster cable;
        EXPECT_TRUE(cable.Initialize("USB-Blaster", "")) << call;
    }
}

TEST(UsbBlaster, ChoosesTheStoredDeviceOrTheFirstFreeOne) {
    const ChoiceCase cases[] = {
        {"one of that description",
         {{"One", "1", 5, 0, 1}, {"Two", "2", 5, 0, 2}},
         "Two",
         "",
         "'Two' 2"},
        {"the serial decides",
         {{"USB-Blaster", "1", 5, 0, kBlasterId}, {"USB-Blaster", "2", 5, 0, kBlasterId}},
         "USB-Blaster",
         "2",
         "'2' 1"},
        {"no such serial",
         {{"USB-Blaster", "1", 5, 0, kBlasterId}, {"USB-Blaster", "2", 5, 0, kBlasterId}},
         "USB-Blaster",
         "3",
         "'USB-Blaster' 2"},
        {"gone: the first free one of the vendor",
         {{"Other", "0", 6, 0, 0x04036010},
          {"Busy", "1", 5, 1, kBlasterId},
          {"Free", "2", 0, 0, 0x09FB6002},
          {"Late", "3", 5, 0, kBlasterId}},
         "Gone",
         "",
         "'Free' 2"},
        {"gone: none of the vendor", {{"Other", "0", 6, 0, 0x04036010}}, "Gone", "", ""},
    };
    for (const ChoiceCase& row : cases) {
        UsbBlasterD2xx d2xx;
        d2xx.devices = row.devices;
        VirtualClock clock;
        OmUsbBlaster cable;
        EXPECT_EQ(cable.Initialize(row.description, row.serial), !row.opened.empty()) << row.name;
        std::string opened;
        for (const std::string& call : d2xx.calls) {
            if (call.starts_with("FT_OpenEx "))
                opened = call.substr(10);
        }
        EXPECT_EQ(opened, row.opened) << row.name;
    }
}

TEST(UsbBlaster, ListsThoseOfTheVendorAndLogsTheLibrarysCount) {
    UsbBlasterD2xx d2xx;
    d2xx.devices = {{"USB-Blaster", "1", 5, 1, kBlasterId},
                    {"Dual RS232 A", "2", 4, 0, 0x04036010},
                    {"", "3", 5, 0, kBlasterId},
                    {"USB-Blaster", "4", 5, 0, 0x09FB6810},
                    {"Unreadable", "5", 5, 0, kBlasterId, false}};
    OmUsbBlaster cable;
    ASSERT_TRUE(cable.Load());
    LogCollector log;
    std::vector<OmUsbBlasterRecord> records{{"stale", "stale"}};
    cable.ListDevices(records);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].description, "USB-Blaster");
    EXPECT_EQ(records[0].serial, "1");
    EXPECT_EQ(records[1].serial, "4");
    EXPECT_EQ(log.Take(), L"Found 5 USB-Blaster device(s)\n");
    d2xx.Fail("FT_CreateDeviceInfoList");
    cable.ListDevices(records);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(log.text, L"");
}

TEST(UsbBlaster, FactoryOpensItFromTheSettings) {
    UsbBlasterD2xx d2xx;
    d2xx.devices.push_back({"USB-Blaster", "2", 5, 0, kBlasterId});
    VirtualClock clock;
    LogCollector log;
    OmConnectionSettings settings;
    settings.cableType = OmCableType::AlteraUsbBlaster;
    settings.usbBlasterDescription = "USB-Blaster";
    settings.usbBlasterSerial = "2";
    EXPECT_NE(CreateCable(settings), nullptr);
    EXPECT_EQ(d2xx.Count("FT_OpenEx '2' 1"), 1);
    EXPECT_TRUE(log.text.starts_with(L"Creating cable object  ALTERA_USB_BLASTER\n"
                                     L"Creating OmUsbBlaster\n"));
}

TEST_F(UsbBlasterScan, ResetTapIsFiveHighClocksAndALowOne) {
    cable.ResetTap();
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{Pins(">?>?>?>?>?<=<")});
    EXPECT_EQ(d2xx.calls, Calls{"FT_Write 13"});
}

TEST_F(UsbBlasterScan, WalksFromEveryStartToEveryEnd) {
    for (const WalkCase& row : kWalks) {
        d2xx.Answer({0xFE, 0x01}); // only bit 0 counts
        OmBitVector out{9, 9, 9};
        if (row.instruction)
            cable.ScanIR({0, 1}, &out, row.from, row.to);
        else
            cable.ScanDR({0, 1}, &out, row.from, row.to);
        const Bytes program = Pins(row.in) + Bytes{0x2C, 0x6D, 0x3E, 0x7F} + Pins(row.out);
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program})
            << row.instruction << row.from << row.to;
        EXPECT_EQ(out, (OmBitVector{0, 1})) << row.instruction << row.from << row.to;
    }
}

TEST_F(UsbBlasterScan, ScansOfManyLengths) {
    const LengthCase cases[] = {
        {"1", {0x3E, 0x7F}, {0x01}, "1"},
        {"0", {0x2E, 0x6F}, {0x00}, "0"},
        {"10000010",
         {0x3C, 0x7D, 0x2C, 0x6D, 0x2C, 0x6D, 0x2C, 0x6D, //
          0x2C, 0x6D, 0x2C, 0x6D, 0x3C, 0x7D, 0x2E, 0x6F},
         {1, 1, 0, 0, 0, 0, 0, 1},
         "11000001"},
        {"110000101", {0xC1, 0x43, 0x3E, 0x7F}, {0xA5, 0x00}, "101001010"},
        {"11111111010",
         {0xC1, 0xFF, 0x2C, 0x6D, 0x3C, 0x7D, 0x2E, 0x6F},
         {0x80, 1, 0, 1},
         "00000001101"},
    };
    for (const LengthCase& row : cases) {
        d2xx.Answer(row.answer);
        OmBitVector out;
        cable.ScanDR(Shifted(row.in), &out, 1, 1);
        const Bytes program = kFromIdle + row.body + kToIdle;
        EXPECT_EQ(d2xx.TakeWrites(), std::vector<Bytes>{program}) << row.in;
        EXPECT_EQ(BitsToText(out, OmBitOrder::LowestFirst), row.out) << row.in;
        EXPECT_TRUE(d2xx.queue.empty()) << row.in;
    }
}

TEST_F(UsbBlasterScan, RunsHoldAtMost63Bytes) {
    d2xx.queue.assign(65, 0xFF);
    OmBitVector out;
    cable.ScanDR(OmBitVector(513, 1), &out, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0xFF} + Bytes(63, 0xFF) + Bytes{0xC1, 0xFF} + Bytes{0x3E, 0x7F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 80", "FT_Read 65"}));
    EXPECT_EQ(out, OmBitVector(513, 1));
}

TEST_F(UsbBlasterScan, WithoutAnOutNothingIsRead) {
    cable.ScanDR(Shifted("11111111010"), nullptr, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0x81, 0xFF, 0x2C, 0x2D, 0x3C, 0x3D, 0x2E, 0x2F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 20"}));
}

TEST_F(UsbBlasterScan, OnlyExactlyOneIsShiftedAsOne) {
    cable.ScanDR({'X', 'Z', 2, 1, 0xFF, 1, 0, '1', 'X', 1, 'Z'}, nullptr, 1, 1);
    const Bytes program =
        kFromIdle + Bytes{0x81, 0x28, 0x2C, 0x2D, 0x3C, 0x3D, 0x2E, 0x2F} + kToIdle;
    EXPECT_EQ(d2xx.writes, std::vector<Bytes>{program});
}

TEST_F(UsbBlasterScan, BatchIsOneScanAfterTheOther) {
    d2xx.Answer({0x01});
    OmCapturedList captured{{1, 1}};
    cable.ScanVectors({{{1}, false}, {{0}, true}, {{1}, false}}, &captured);
    EXPECT_EQ(d2xx.writes, (std::vector<Bytes>{kFromIdle + Bytes{0x3E, 0x3F} + kToIdle,
                                               kFromIdle + Bytes{0x2E, 0x6F} + kToIdle,
                                               kFromIdle + Bytes{0x3E, 0x3F} + kToIdle}));
    EXPECT_EQ(captured, OmCapturedList{{1}});
    EXPECT_EQ(d2xx.Count("FT_Read"), 1);
}

TEST_F(UsbBlasterScan, WithoutAListFlagsAskForNothing) {
    cable.ScanVectors({{{1}, true}}, nullptr);
    EXPECT_EQ(d2xx.calls, (Calls{"FT_GetQueueStatus", "FT_Write 14"}));
}

TEST_F(UsbBlasterScan, EmptyBatchSendsNothing) {
    OmCapturedList captured{{1}};
    cable.ScanVectors({}, &captured);
    EXPECT_TRUE(captured.empty());
    EXPECT_TRUE(d2xx.calls.empty());
}

TEST_F(UsbBlasterScan, TooLongAScanIsRefusedUnsent) {
    // 65522 bytes hold 1023 full runs of 64 bytes, and 50 bytes more in one of 49.
    const size_t longest = 8 * (1023 * 63 + 49) + 1;
    cable.ScanDR(OmBitVector(longest, 1), nullptr, 1, 1);
    EXPECT_EQ(d2xx.TakeWrites().at(0).size(), 65536U);
    EXPECT_EQ(MessageOf([&] { cable.ScanDR(OmBitVector(longest + 1, 1), nullptr, 1, 1); }),
              L"The JTAG chain is too long for this cable.");
    EXPECT_TRUE(d2xx.writes.empty());
}

TEST_F(UsbBlasterScan, RefusesAScanOfNoBits) {
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({}, &out, 1, 1); }),
              L"A JTAG scan of no bits was asked for.");
    EXPECT_TRUE(d2xx.calls.empty());
}

TEST_F(UsbBlasterScan, EachFailedCallIsAConnectionErrorAndTheNextAttemptWorks) {
    const std::function<void()> scans[] = {
        [this] {
            OmBitVector out;
            d2xx.queue.assign(2, 0);
            cable.ScanDR(OmBitVector(9, 1), &out, 1, 1);
        },
        [this] {
            OmBitVector out;
            d2xx.queue.assign(2, 0);
            cable.ScanIR(OmBitVector(9, 1), &out, 1, 1);
        },
        [this] {
            OmCapturedList captured;
            d2xx.queue.assign(2, 0);
            cable.ScanVectors({{OmBitVector(9, 1), true}}, &captured);
        },
    };
    for (const char* call : {"FT_GetQueueStatus", "FT_Write", "FT_Read"}) {
        for (const auto& scan : scans) {
            d2xx.Fail(call);
            EXPECT_EQ(MessageOf(scan), L"JTAG connection error") << call;
            d2xx.Fail("");
            EXPECT_EQ(MessageOf(scan), L"(nothing thrown)") << call;
        }
    }
    d2xx.Fail("FT_Write");
    EXPECT_EQ(MessageOf([this] { cable.ResetTap(); }), L"JTAG connection error");
}

TEST_F(UsbBlasterScan, ReadGivesUpAfter31Rounds) {
    OmBitVector out;
    EXPECT_EQ(MessageOf([&] { cable.ScanDR({1, 0}, &out, 1, 1); }), L"JTAG connection error");
    EXPECT_EQ(d2xx.Count("FT_Read"), 31);
    EXPECT_EQ(clock.sleptMilliseconds, 300U);
}
