#include "jtag/UsbBlaster.h"

#include "jtag/CableFactory.h"
#include "tests/jtag/FakeUsbBlaster.h"
#include "tests/jtag/LogCollector.h"
#include "tests/support/VirtualClock.h"

#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;

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
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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
        FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
    d2xx.missing = "FT_GetDeviceInfo";
    OmUsbBlaster cable;
    EXPECT_TRUE(cable.Load());
}

TEST(UsbBlaster, InitializesInOneOrderOfCalls) {
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
    d2xx.Answer({1, 0, 1});
    VirtualClock clock;
    OmUsbBlaster cable;
    EXPECT_TRUE(cable.Initialize("USB-Blaster", ""));
    EXPECT_TRUE(d2xx.queue.empty());
    EXPECT_EQ(d2xx.calls.back(), "FT_Read 3");
}

TEST(UsbBlaster, FailedResyncClosesTheDevice) {
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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

// A library that has gone mad could keep the program reading for hours.
TEST(UsbBlaster, MoreStaleBytesThanAnyQueueHoldsCloseTheDevice) {
    FakeUsbBlaster d2xx;
    d2xx.waiting = 0xFFFFFFFE;
    VirtualClock clock;
    OmUsbBlaster cable;
    EXPECT_FALSE(cable.Initialize("USB-Blaster", ""));
    EXPECT_EQ(d2xx.openHandles, 0);
    EXPECT_EQ(d2xx.Count("FT_Read"), 0);
    EXPECT_EQ(clock.sleptMilliseconds, 32U);
}

TEST(UsbBlaster, FailureToListOrOpenIsFalse) {
    for (const char* call : {"FT_CreateDeviceInfoList", "FT_GetDeviceInfoDetail", "FT_OpenEx"}) {
        FakeUsbBlaster d2xx;
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
        FakeUsbBlaster d2xx;
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
        FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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
    FakeUsbBlaster d2xx;
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
