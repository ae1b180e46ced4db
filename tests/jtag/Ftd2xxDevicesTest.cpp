#include "jtag/Ftd2xx.h"

#include "tests/jtag/FakeD2xx.h"
#include "tests/jtag/LogCollector.h"
#include "tests/support/VirtualClock.h"

#include <gtest/gtest.h>

namespace {

struct ChoiceCase {
    const char* name;
    std::vector<FakeD2xx::Device> devices;
    std::string description;
    std::string serial;
    std::string opened; // the call, empty if none is opened
};

struct ListCase {
    const char* name;
    std::vector<FakeD2xx::Device> devices;
    std::vector<std::string> listed; // "description/serial", "*" after it for high speed
};

// Which device a cable with these stored texts opens.
std::string OpenedBy(FakeD2xx& d2xx, const std::string& description, const std::string& serial) {
    VirtualClock clock;
    OmFtd2xx cable;
    bool isHighSpeed = false;
    const bool opened =
        cable.Initialize(description, serial, 6000000, false, 0x051B, 0x010A, isHighSpeed);
    std::string call;
    for (const std::string& line : d2xx.TakeCalls()) {
        if (line.starts_with("FT_OpenEx "))
            call = line.substr(10);
    }
    EXPECT_EQ(opened, !call.empty());
    return call;
}

} // namespace

TEST(Ftd2xxDevices, ChoosesTheStoredDeviceOrTheFirstSuitableOne) {
    const ChoiceCase cases[] = {
        {"one of that description",
         {{"Pod A", "1"}, {"Other A", "2"}},
         "Other A",
         "",
         "'Other A' 2"},
        {"one of that description, of another serial", {{"Pod A", "1"}}, "Pod A", "9", "'Pod A' 2"},
        {"two of that description, the serial decides",
         {{"Pod A", "1"}, {"Pod A", "2"}},
         "Pod A",
         "2",
         "'2' 1"},
        {"two of that description, no such serial",
         {{"Pod A", "1"}, {"Pod A", "2"}},
         "Pod A",
         "9",
         "'Pod A' 2"},
        {"two of that description, two of that serial",
         {{"Pod A", "1"}, {"Pod A", "1"}},
         "Pod A",
         "1",
         "'Pod A' 2"},
        {"the serial alone does not choose",
         {{"Other A", "1"}, {"Pod A", "2"}},
         "Gone A",
         "2",
         "'Other A' 2"},
        {"an open one is still opened by its name",
         {{"Pod A", "1", 6, 1}},
         "Pod A",
         "1",
         "'Pod A' 2"},
        {"gone: the first that is free",
         {{"Busy A", "1", 6, 1}, {"Free A", "2"}, {"Late A", "3"}},
         "Gone A",
         "",
         "'Free A' 2"},
        {"gone: not a part without MPSSE",
         {{"BM", "1", 0}, {"AM", "2", 1}, {"100AX", "3", 2}, {"232R", "4", 5}},
         "Gone",
         "",
         ""},
        {"gone: unknown and later types will do",
         {{"232R", "1", 5}, {"New", "2", 3}},
         "Gone",
         "",
         "'New' 2"},
        {"gone: of an FT2232C only channel A",
         {{"Dual B", "1", 4}, {"A", "2", 4}, {" A", "3", 4}, {"X A", "4", 4}},
         "Gone",
         "",
         "'X A' 2"},
        {"gone: a later part needs no channel letter", {{"Hi B", "1", 6}}, "Gone", "", "'Hi B' 2"},
        {"nothing stored", {{"Pod A", "1"}}, "", "", "'Pod A' 2"},
        {"no description", {{"", "1"}, {"Pod A", "2"}}, "", "1", "'Pod A' 2"},
        {"nothing there", {}, "Pod A", "", ""},
    };
    for (const ChoiceCase& row : cases) {
        FakeD2xx d2xx;
        d2xx.devices = row.devices;
        EXPECT_EQ(OpenedBy(d2xx, row.description, row.serial), row.opened) << row.name;
    }
}

TEST(Ftd2xxDevices, DeviceWithoutDetailIsPassedOver) {
    FakeD2xx d2xx;
    d2xx.devices = {{"Broken A", "1"}, {"Pod A", "2"}};
    d2xx.devices[0].hasDetail = false;
    EXPECT_EQ(OpenedBy(d2xx, "Gone A", ""), "'Pod A' 2");
}

TEST(Ftd2xxDevices, CountThatNoMachineCanHaveIsNotBelieved) {
    FakeD2xx d2xx;
    d2xx.extraDevices = 4000000000U;
    EXPECT_EQ(OpenedBy(d2xx, "Gone A", ""), "'Dual RS232-HS A' 2");
}

TEST(Ftd2xxDevices, ListsThePartsThatCanDoJtag) {
    const ListCase cases[] = {
        {"nothing", {}, {}},
        {"no MPSSE, no description",
         {{"BM", "1", 0}, {"AM", "2", 1}, {"100AX", "3", 2}, {"232R", "4", 5}, {"", "5", 6}},
         {}},
        {"high speed, busy or not",
         {{"Hi A", "1", 6, 1}, {"Hi B", "2", 6}, {"New", "3", 3}},
         {"Hi A/1*", "Hi B/2*", "New/3*"}},
        {"one FT2232C", {{"Dual A", "1A", 4}, {"Dual B", "1B", 4}}, {"Dual A/1A"}},
        {"channel B first", {{"Dual B", "1B", 4}, {"Dual A", "1A", 4}}, {"Dual A/1A"}},
        {"two alike, interleaved",
         {{"Dual A", "1A", 4}, {"Dual B", "1B", 4}, {"Dual A", "2A", 4}, {"Dual B", "2B", 4}},
         {"Dual A/1A", "Dual A/2A"}},
        {"channel B alone", {{"Dual B", "1B", 4}}, {"Dual B/1B"}},
        {"no blank before the letter",
         {{"DualA", "1", 4}, {"DualB", "2", 4}},
         {"DualA/1", "DualB/2"}},
        {"too short", {{" A", "1", 4}, {" B", "2", 4}}, {" A/1", " B/2"}},
        {"other stems", {{"One A", "1", 4}, {"Two B", "2", 4}}, {"One A/1", "Two B/2"}},
        {"high-speed channels are not folded",
         {{"Hi A", "1", 6}, {"Hi B", "2", 4}},
         {"Hi A/1*", "Hi B/2"}},
    };
    for (const ListCase& row : cases) {
        FakeD2xx d2xx;
        d2xx.devices = row.devices;
        OmFtd2xx cable;
        EXPECT_TRUE(cable.Load());
        LogCollector log;
        std::vector<OmFtd2xxRecord> records{{"stale", "stale", true}};
        cable.ListDevices(records);
        std::vector<std::string> listed;
        for (const OmFtd2xxRecord& record : records)
            listed.push_back(record.description + "/" + record.serial +
                             (record.isHighSpeed ? "*" : ""));
        EXPECT_EQ(listed, row.listed) << row.name;
        EXPECT_EQ(log.text, L"Found " + std::to_wstring(row.listed.size()) + L" FT2232 device(s)\n")
            << row.name;
    }
}

TEST(Ftd2xxDevices, ListIsEmptyAndSilentIfTheLibraryCannotList) {
    FakeD2xx d2xx;
    OmFtd2xx cable;
    std::vector<OmFtd2xxRecord> records{{"stale", "stale", true}};
    cable.ListDevices(records);
    EXPECT_TRUE(records.empty()) << "library not loaded";
    EXPECT_TRUE(cable.Load());
    d2xx.Fail("FT_CreateDeviceInfoList");
    LogCollector log;
    records.resize(1);
    cable.ListDevices(records);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(log.text, L"");
}

TEST(Ftd2xxDevices, DevicesWithIdentifiersOfTheirOwnAreLookedForOneByOne) {
    FakeD2xx d2xx;
    d2xx.ExportOptional();
    d2xx.devices = {{"Dual RS232 A", "FT1A", 4},
                    {"Amontec JTAGkey A", "K1A", 4, 0, 0x0403CFF8},
                    {"Olimex OpenOCD JTAG", "OL1", 4, 0, 0x15BA0003},
                    {"Something else", "X1", 4, 0, 0x12345678}};
    d2xx.customId = 0x0403CFF8; // as an earlier list left it
    OmFtd2xx cable;
    ASSERT_TRUE(cable.Load());
    std::vector<OmFtd2xxRecord> devices;
    cable.ListDevices(devices);
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(devices[0].description, "Dual RS232 A");
    EXPECT_EQ(devices[1].description, "Amontec JTAGkey A");
    EXPECT_EQ(devices[2].description, "Olimex OpenOCD JTAG");
}

TEST(Ftd2xxDevices, DeviceIsOpenedUnderItsOwnIdentifier) {
    FakeD2xx d2xx;
    d2xx.ExportOptional();
    d2xx.devices = {{"Amontec JTAGkey A", "K1A", 4, 0, 0x0403CFF8}};
    OmFtd2xx cable;
    bool isHighSpeed = false;
    VirtualClock clock;
    ASSERT_TRUE(cable.Initialize("Amontec JTAGkey A", "K1A", 6000000, false, 0, 0, isHighSpeed));
    EXPECT_EQ(d2xx.customId, 0x0403CFF8U);
    EXPECT_EQ(d2xx.Count("FT_OpenEx"), 1);
}
