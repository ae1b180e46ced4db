#include "cli/Connection.h"

#include <gtest/gtest.h>

namespace {

OmConnectionChoice Choose(const char* cable) {
    OmConnectionChoice choice;
    choice.cable = FindCable(cable);
    EXPECT_TRUE(choice.cable) << cable;
    return choice;
}

TEST(CliConnection, EveryCableHasAName) {
    EXPECT_EQ(ListCableNames(), "ft2232, usb-blaster, jlink, jlink-ip, digilent, xilinx3, "
                                "byteblaster, ispdownload, wiggler, easyice");
    EXPECT_EQ(FindCable("ft2232"), OmCableType::Ftd2xx);
    EXPECT_EQ(FindCable("easyice"), OmCableType::EmbestEasyIce);
    EXPECT_EQ(GetCableName(OmCableType::JLinkIp), "jlink-ip");
    EXPECT_FALSE(FindCable("FT2232"));
    EXPECT_FALSE(FindCable(""));
}

TEST(CliConnection, EveryTypeIsFoundByItsNameAndTakesItsOwnOptions) {
    for (int type = 0; type < kCableTypeCount; ++type) {
        const auto cable = static_cast<OmCableType>(type);
        EXPECT_EQ(FindCable(GetCableName(cable)), cable) << type;
        OmConnectionChoice choice;
        choice.cable = cable;
        OmConnectionSettings settings;
        std::string error;
        EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
        EXPECT_EQ(settings.cableType, cable);
    }
    EXPECT_EQ(GetCableName(static_cast<OmCableType>(kCableTypeCount)), "");
}

TEST(CliConnection, NothingChosenLeavesTheSettings) {
    OmConnectionSettings settings;
    settings.cableType = OmCableType::JLinkIp;
    settings.jlinkIpHost = "bench";
    std::string error;
    EXPECT_TRUE(ApplyConnection({}, settings, error));
    EXPECT_EQ(settings.cableType, OmCableType::JLinkIp);
    EXPECT_EQ(settings.jlinkIpHost, "bench");
}

TEST(CliConnection, ValuesGoToTheChosenCable) {
    std::string error;
    OmConnectionSettings settings;
    OmConnectionChoice choice = Choose("ft2232");
    choice.frequency = 15000000;
    choice.serial = "FT123";
    choice.description = "Pod A";
    choice.adaptiveClocking = true;
    EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
    EXPECT_EQ(settings.ftd2xxFrequency, 15000000);
    EXPECT_EQ(settings.ftd2xxSerial, "FT123");
    EXPECT_EQ(settings.ftd2xxDescription, "Pod A");
    EXPECT_TRUE(settings.ftd2xxAdaptiveClocking);
    EXPECT_EQ(settings.jlinkUsbFrequency, 6000000);

    choice = Choose("jlink");
    choice.serial = "2";
    choice.frequency = 4000000;
    EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
    EXPECT_EQ(settings.jlinkUsbNumber, 2);
    EXPECT_EQ(settings.jlinkUsbFrequency, 4000000);

    choice = Choose("jlink-ip");
    choice.server = "bench:19021";
    EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
    EXPECT_EQ(settings.jlinkIpHost, "bench");
    EXPECT_EQ(settings.jlinkIpPort, 19021);

    choice = Choose("wiggler");
    choice.lptPort = 2;
    choice.frequency = 100000;
    EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
    EXPECT_EQ(settings.lptPort, 2);
    EXPECT_EQ(settings.lptFrequency, 100000);
}

TEST(CliConnection, WhatTheCableLacksIsRefused) {
    struct {
        const char* cable;
        void (*choose)(OmConnectionChoice&);
        const char* error;
    } const cases[] = {
        {"usb-blaster", [](OmConnectionChoice& c) { c.frequency = 6000000; },
         "--frequency does not suit the cable usb-blaster"},
        {"wiggler", [](OmConnectionChoice& c) { c.serial = "1"; },
         "--serial does not suit the cable wiggler"},
        {"jlink", [](OmConnectionChoice& c) { c.serial = "x"; },
         "--serial: a jlink has a number from 0 to 3, not 'x'"},
        {"digilent", [](OmConnectionChoice& c) { c.description = "x"; },
         "--description does not suit the cable digilent"},
        {"ft2232", [](OmConnectionChoice& c) { c.server = "x"; },
         "--server does not suit the cable ft2232"},
        {"jlink-ip", [](OmConnectionChoice& c) { c.server = "x:y"; },
         "--server: 'x:y' does not end with the number of a port"},
        {"ft2232", [](OmConnectionChoice& c) { c.lptPort = 0; },
         "--port does not suit the cable ft2232"},
        {"jlink", [](OmConnectionChoice& c) { c.adaptiveClocking = false; },
         "--adaptive does not suit the cable jlink"},
        {"jlink", [](OmConnectionChoice& c) { c.serial = "9"; },
         "--serial: a jlink has a number from 0 to 3, not '9'"},
        {"ft2232", [](OmConnectionChoice& c) { c.frequency = 60000000; },
         "--frequency: the cable ft2232 takes 1000 to 30000000 Hz"},
        {"jlink", [](OmConnectionChoice& c) { c.frequency = 999; },
         "--frequency: the cable jlink takes 1000 to 12000000 Hz"},
        {"wiggler", [](OmConnectionChoice& c) { c.frequency = 200001; },
         "--frequency: the cable wiggler takes 1000 to 200000 Hz"},
        {"jlink-ip", [](OmConnectionChoice& c) { c.server = "x:65536"; },
         "--server: 'x:65536' does not end with the number of a port"},
        {"jlink-ip", [](OmConnectionChoice& c) { c.server = ":19020"; },
         "--server: ':19020' names no host"},
    };

    for (const auto& c : cases) {
        OmConnectionChoice choice = Choose(c.cable);
        c.choose(choice);
        OmConnectionSettings settings;
        std::string error;
        EXPECT_FALSE(ApplyConnection(choice, settings, error));
        EXPECT_EQ(error, c.error);
    }
}

// What is accepted here must not be out of range for the settings.
TEST(CliConnection, HighestValuesAreThoseOfTheSettings) {
    struct {
        const char* cable;
        int32_t highest;
    } const cases[] = {{"ft2232", 30000000},
                       {"jlink", 12000000},
                       {"jlink-ip", 12000000},
                       {"xilinx3", 200000},
                       {"easyice", 200000}};

    for (const auto& c : cases) {
        for (const int32_t frequency : {1000, c.highest}) {
            OmConnectionChoice choice = Choose(c.cable);
            choice.frequency = frequency;
            OmConnectionSettings settings;
            std::string error;
            EXPECT_TRUE(ApplyConnection(choice, settings, error)) << error;
            EXPECT_TRUE(settings.IsValid()) << c.cable;
        }
    }
}

} // namespace
