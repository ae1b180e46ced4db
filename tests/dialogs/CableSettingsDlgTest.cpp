#include "jtag/CableTable.h"
#include "jtag/ui/CablePages.h"
#include "tests/dialogs/CableSettingsFixture.h"
#include "tests/jtag/FakeLibrary.h"

TEST_F(CableSettingsDlgTest, OffersTenConnections) {
    const struct {
        const char* name;
        OmCableType type;
    } connections[] = {
        {"Altera USB-Blaster", OmCableType::AlteraUsbBlaster},
        {"Generic FTDI FT2232", OmCableType::Ftd2xx},
        {"Segger J-Link", OmCableType::JLinkUsb},
        {"Segger J-Link via TCP/IP server", OmCableType::JLinkIp},
        {"Digilent JTAG-USB", OmCableType::DigilentAdept},
        {"Xilinx Parallel Cable III / IV", OmCableType::XilinxParallelCable3},
        {"Altera ByteBlaster MV / II", OmCableType::AlteraByteBlasterMV},
        {"Lattice Parallel ispDownload", OmCableType::LatticeParallelIspDownload},
        {"Wiggler", OmCableType::Wiggler},
        {"Embest EasyICE", OmCableType::EmbestEasyIce},
    };

    Names expected;
    for (const auto& connection : connections)
        expected.push_back(connection.name);
    for (const auto& connection : connections) {
        settings_.cableType = connection.type;
        Show([&](wxDialog& shown) {
            EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kConnection)), expected);
            EXPECT_EQ(Chosen(shown, kConnection), connection.name);
            ExpectGoodLayout(shown);
            PressButton(shown, wxID_CANCEL);
        });
    }
    for (const auto& connection : connections) {
        FakeLoader nothing; // the error pages let everything pass
        Show([&](wxDialog& shown) {
            Choose(shown, kConnection, connection.name);
            PressOk(shown);
        });
        EXPECT_EQ(settings_.cableType, connection.type);
    }
}

TEST_F(CableSettingsDlgTest, EveryTypeHasAPage) {
    for (const OmCableRow& row : GetCableRows())
        EXPECT_NE(FindCablePageMaker(row.type), nullptr) << row.label;
    EXPECT_EQ(FindCablePageMaker(static_cast<OmCableType>(kCableTypeCount)), nullptr);
}

TEST_F(CableSettingsDlgTest, CancelKeepsTheSettings) {
    const OmConnectionSettings before = settings_;
    EXPECT_EQ(Show([](wxDialog& shown) {
                  Choose(shown, kConnection, "Wiggler");
                  PressButton(shown, wxID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_TRUE(settings_.SameConnection(before));
}

TEST_F(CableSettingsDlgTest, MissingDriversShowTheirErrorInsteadOfThePage) {
    FakeLoader nothing;
    ports_->absent = true;

    const struct {
        const char* connection;
        const char* error;
    } cases[] = {
        {"Wiggler", "ERROR: failed to open parallel port I/O driver. Reinstalling this software "
                    "might solve the problem."},
        {"Generic FTDI FT2232", "ERROR: FTD2XX driver is not installed! Please install driver that "
                                "came with your FT2232 based hardware."},
        {"Segger J-Link", "ERROR: failed to load JLinkARM.dll."},
        {"Segger J-Link via TCP/IP server", "ERROR: failed to load JLinkARM.dll."},
        {"Digilent JTAG-USB", "ERROR: Digilent Adept Suite software is not installed! Visit "
                              "https://digilent.com to download."},
        {"Altera USB-Blaster", "ERROR: Altera USB-Blaster driver is not installed!"},
    };

    Show([&](wxDialog& shown) {
        for (const auto& c : cases) {
            Choose(shown, kConnection, c.connection);
            EXPECT_EQ(Error(shown), c.error);
        }
        TakeScreenshot(shown, "connection_error");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(CableSettingsDlgTest, ParallelPageOffersThePortsOfTheMachine) {
    ports_->addresses = {0x378, 0, 0x278};
    settings_.cableType = OmCableType::Wiggler;
    settings_.lptPort = 2;
    settings_.lptFrequency = 50000;
    Show([](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, "Port:")), Names({"LPT1", "LPT3"}));
        EXPECT_EQ(Chosen(shown, "Port:"), "LPT3");
        EXPECT_EQ(TextBehind(shown, kFrequency), "50000");
        TakeScreenshot(shown, "connection_parallel");
        Choose(shown, "Port:", "LPT1");
        Type(shown, kFrequency, "1000");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.lptPort, 0);
    EXPECT_EQ(settings_.lptFrequency, 1000);
}

TEST_F(CableSettingsDlgTest, MachineWithoutParallelPortsSaysSo) {
    ports_->addresses = {0, 0, 0};
    Show([](wxDialog& shown) {
        EXPECT_EQ(Error(shown), "ERROR: there are no parallel ports found in your computer.");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(CableSettingsDlgTest, ParallelFrequencyHasLimits) {
    for (const char* text : {"", "999", "200001", "1 MHz"})
        ExpectRefused("The TCK frequency must be in a range from 1000Hz to 200000Hz.",
                      [&](wxDialog& shown) { Type(shown, kFrequency, text); });
}

TEST_F(CableSettingsDlgTest, AbsentPortIsRefusedWithoutAWord) {
    settings_.lptPort = 1;
    ExpectRefused("", [](wxDialog& shown) { EXPECT_EQ(Chosen(shown, "Port:"), ""); });
}
