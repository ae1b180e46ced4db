#include "tests/dialogs/CableSettingsFixture.h"
#include "tests/jtag/FakeDigilent.h"
#include "tests/jtag/FakeJLink.h"
#include "tests/jtag/FakeUsbBlaster.h"

namespace {

// Presses the button after the list of devices.
void Configure(wxWindow& dialog) {
    ForEachDescendant(dialog, [](wxWindow& window) {
        if (window.IsShownOnScreen() && window.GetLabel() == "...")
            PressButton(*window.GetParent(), "...");
    });
}

class UsbPagesTest : public CableSettingsDlgTest {};

} // namespace

TEST_F(UsbPagesTest, JLinkPageShowsItsSettings) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkUsb;
    settings_.jlinkUsbNumber = 2;
    settings_.jlinkUsbFrequency = 9600000;
    Show([](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)),
                  Names({"J-Link 0 (default)", "J-Link 1", "J-Link 2", "J-Link 3"}));
        EXPECT_EQ(Chosen(shown, kDevice), "J-Link 2");
        EXPECT_EQ(
            EntriesOf(ChoiceBehind(shown, kFrequency)),
            Names({"12 MHz",  "9.6 MHz", "8 MHz",   "6 MHz",   "4 MHz",   "3 MHz",   "2 MHz",
                   "1 MHz",   "750 KHz", "600 KHz", "500 KHz", "400 KHz", "300 KHz", "200 KHz",
                   "150 KHz", "100 KHz", "50 KHz",  "25 KHz",  "10 KHz",  "5 KHz",   "1 KHz"}));
        EXPECT_EQ(Chosen(shown, kFrequency), "9.6 MHz");
        TakeScreenshot(shown, "connection_jlink");
        Choose(shown, kDevice, "J-Link 3");
        Choose(shown, kFrequency, "25 KHz");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.jlinkUsbNumber, 3);
    EXPECT_EQ(settings_.jlinkUsbFrequency, 25000);
    EXPECT_EQ(jlink.loaded, 0);
}

TEST_F(UsbPagesTest, UnlistedJLinkFrequencyBecomesTheNextLowerOne) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkUsb;
    settings_.jlinkUsbFrequency = 5000000;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kFrequency), "4 MHz");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(UsbPagesTest, JLinkIpPageShowsItsSettings) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkIp;
    Show([](wxDialog& shown) {
        EXPECT_EQ(TextBehind(shown, "Host:"), "localhost");
        EXPECT_EQ(TextBehind(shown, "Port:"), "19020");
        EXPECT_EQ(Chosen(shown, kFrequency), "6 MHz");
        TakeScreenshot(shown, "connection_jlink_ip");
        Type(shown, "Host:", " lab.example ");
        Type(shown, "Port:", "65535");
        Choose(shown, kFrequency, "12 MHz");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.jlinkIpHost, "lab.example");
    EXPECT_EQ(settings_.jlinkIpPort, 65535);
    EXPECT_EQ(settings_.jlinkIpFrequency, 12000000);
}

TEST_F(UsbPagesTest, JLinkIpPageRefusesBadHostAndPort) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkIp;
    ExpectRefused("Please specify a host name or IP address.",
                  [](wxDialog& shown) { Type(shown, "Host:", "  "); });
    for (const char* port : {"", "65536", "-1", "http"})
        ExpectRefused("TCP/IP port must be in a range from 0 to 65535. The default port for Segger "
                      "J-Link TCP/IP server is 19020.",
                      [&](wxDialog& shown) { Type(shown, "Port:", port); });
}

TEST_F(UsbPagesTest, BadHostPassesWhileAnotherPageIsShown) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkIp;
    EXPECT_EQ(Show([](wxDialog& shown) {
                  Type(shown, "Host:", "");
                  Choose(shown, kConnection, "Wiggler");
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_EQ(settings_.jlinkIpHost, "localhost");
    EXPECT_EQ(settings_.cableType, OmCableType::Wiggler);
}

TEST_F(UsbPagesTest, DigilentPageOffersTheConfiguredDevices) {
    FakeDigilent digilent;
    settings_.cableType = OmCableType::DigilentAdept;
    settings_.digilentId = "Basys";
    Show([](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)), Names({"DigilentUsb", "Basys"}));
        EXPECT_EQ(Chosen(shown, kDevice), "Basys");
        TakeScreenshot(shown, "connection_digilent");
        Choose(shown, kDevice, "DigilentUsb");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.digilentId, "DigilentUsb");
}

TEST_F(UsbPagesTest, DigilentPageWantsADevice) {
    FakeDigilent digilent;
    digilent.deviceCount = 0;
    settings_.cableType = OmCableType::DigilentAdept;
    ExpectRefused("Please configure and select a Digilent communication module",
                  [](wxDialog& shown) {
                      EXPECT_EQ(Chosen(shown, kDevice), "press this button to add -->");
                      EXPECT_FALSE(ChoiceBehind(shown, kDevice).IsThisEnabled());
                  });
}

TEST_F(UsbPagesTest, DigilentDevicesCanBeConfigured) {
    FakeDigilent digilent;
    digilent.deviceCount = 0;
    settings_.cableType = OmCableType::DigilentAdept;
    Show([&](wxDialog& shown) {
        digilent.deviceCount = 2;
        Configure(shown);
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)), Names({"DigilentUsb", "Basys"}));
        EXPECT_EQ(digilent.configuredOver, shown.GetHandle());
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(UsbPagesTest, FailedConfigurationIsTold) {
    FakeDigilent digilent;
    digilent.configureError = 3001;
    settings_.cableType = OmCableType::DigilentAdept;
    Show([&](wxDialog& shown) {
        // The line is whatever the source has; the rest is fixed.
        struct : OmUserInterface {
            OmAnswer ShowMessage(const std::wstring& text, const std::wstring&,
                                 OmMessageStyle style) override {
                EXPECT_EQ(style, kErrorBox);
                shownText = text;
                return OmAnswer::Ok;
            }
            void BeginBusyCursor() override {}
            void EndBusyCursor() override {}
            std::wstring shownText;
        } user;
        OmUserInterface* previous = SetUserInterface(&user);
        Configure(shown);
        SetUserInterface(previous);
        EXPECT_TRUE(user.shownText.starts_with(L"Unexpected error 3001: CableSettingsPanel "));
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(UsbPagesTest, OnlyUsbBlasterIsSelected) {
    FakeUsbBlaster blaster;
    settings_.cableType = OmCableType::AlteraUsbBlaster;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kDevice), "USB-Blaster (91D28408)");
        TakeScreenshot(shown, "connection_usb_blaster");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.usbBlasterDescription, "USB-Blaster");
    EXPECT_EQ(settings_.usbBlasterSerial, "91D28408");
}

TEST_F(UsbPagesTest, OneOfSeveralUsbBlastersMustBeSelected) {
    FakeUsbBlaster blaster;
    blaster.devices.push_back({"USB-Blaster", "00000002", 5, 0, kBlasterId});
    settings_.cableType = OmCableType::AlteraUsbBlaster;
    ExpectRefused("Please select a cable.",
                  [](wxDialog& shown) { EXPECT_EQ(Chosen(shown, kDevice), ""); });
    settings_.usbBlasterDescription = "USB-Blaster";
    settings_.usbBlasterSerial = "00000002";
    EXPECT_EQ(Show(PressOk), wxID_OK);
    EXPECT_EQ(settings_.usbBlasterSerial, "00000002");
}

TEST_F(UsbPagesTest, MissingUsbBlasterIsRefusedUntilItIsThere) {
    FakeUsbBlaster blaster;
    const std::vector<FakeD2xx::Device> devices = blaster.devices;
    blaster.devices.clear();
    settings_.cableType = OmCableType::AlteraUsbBlaster;
    ExpectRefused("There are no Altera USB-Blaster cables found.", [](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kDevice), "press this button to refresh -->");
    });
    EXPECT_EQ(Show([&](wxDialog& shown) {
                  blaster.devices = devices;
                  PressButton(shown, "Update list");
                  PressOk(shown);
              }),
              wxID_OK);
}
