#include "jtag/CableSettingsDlg.h"

#include "jtag/StaticPinsSchemes.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/jtag/FakeDigilent.h"
#include "tests/jtag/FakeJLink.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/jtag/FakeUsbBlaster.h"
#include "tests/support/RecordingUserInterface.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/ModalSteps.h"

#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/wx.h>

namespace {

using Names = std::vector<std::string>;

constexpr char kConnection[] = "Connec&tion:";
constexpr char kDevice[] = "Device:";
constexpr char kFrequency[] = "TCK freq:";
constexpr char kPins[] = "Static pins:";
constexpr char kAdaptive[] = "Adaptive Clocking";

const FakeD2xx::Device kHighSpeed{"Pod H A", "H1", 6};
const FakeD2xx::Device kFullSpeed{"Pod C A", "C1", 4};

// What the error page says.
std::string Error(wxWindow& dialog) {
    return BoxBehind(dialog, kConnection).GetValue().ToStdString();
}

// Presses the button behind the list of devices.
void Configure(wxWindow& dialog) {
    ForEachDescendant(dialog, [](wxWindow& window) {
        if (window.IsShownOnScreen() && window.GetLabel() == "...")
            PressButton(*window.GetParent(), "...");
    });
}

std::string Chosen(wxWindow& dialog, const char* label) {
    return ChoiceBehind(dialog, label).GetStringSelection().ToStdString();
}

} // namespace

class CableSettingsDlgTest : public testing::Test {
  protected:
    CableSettingsDlgTest()
        : previousStore_(wxConfigBase::Set(new wxFileConfig(
              "test", "test", folder_.Path("settings"), wxString(), wxCONFIG_USE_LOCAL_FILE))) {
        GetStaticPinsSchemes() = LoadStaticPinsSchemes();
    }

    ~CableSettingsDlgTest() override { delete wxConfigBase::Set(previousStore_); }

    // Shows settings_ and takes them back as the dialog leaves them.
    int Show(const ModalSteps::Step& step) {
        OmCableSettingsDlg dialog(nullptr);
        dialog.settings = settings_;
        user_.Expect("JTAG Connection", step);
        const int button = dialog.ShowModal();
        settings_ = dialog.settings;
        adaptiveWarningAnswered_ = dialog.adaptiveWarningAnswered;
        return button;
    }

    // Shows the dialog, takes `step`, presses OK and cancels behind the box with `text`; an empty
    // text stands for no box.
    void ExpectRefused(const wxString& text, const ModalSteps::Step& step) {
        SCOPED_TRACE(text.ToStdString());
        if (!text.empty())
            boxes_.Expect(text.ToStdWstring(), kWarningBox);
        Show([&](wxDialog& shown) {
            step(shown);
            PressButton(shown, wxID_OK);
            EXPECT_TRUE(shown.IsModal());
            PressButton(shown, wxID_CANCEL);
        });
    }

    static void PressOk(wxDialog& shown) { PressButton(shown, wxID_OK); }

    void UseFtd2xx(const FakeD2xx::Device& device) {
        settings_.cableType = OmCableType::Ftd2xx;
        settings_.ftd2xxDescription = device.description;
        settings_.ftd2xxSerial = device.serial;
        settings_.ftd2xxGpioDir = 0x0710;
        settings_.ftd2xxGpioValue = 0x0300;
    }

    TemporaryFolder folder_;
    RecordingUserInterface boxes_;
    ModalSteps user_;
    FakePortDriver ports_;
    OmConnectionSettings settings_;
    bool adaptiveWarningAnswered_ = false;

  private:
    wxConfigBase* previousStore_;
};

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

// --- parallel ports

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

// --- FT2232

TEST_F(CableSettingsDlgTest, Ftd2xxPageShowsItsSettings) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed, kFullSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    settings_.ftd2xxGpioSchemeDesc = L"Olimex ARM-USB-OCD";
    Show([](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)), Names({"Pod H A (H1)", "Pod C A (C1)"}));
        EXPECT_EQ(Chosen(shown, kDevice), "Pod H A (H1)");
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kPins)),
                  Names({"Amontec JTAGkey", "Olimex ARM-USB-OCD", "Turtelizer 2"}));
        EXPECT_EQ(Chosen(shown, kPins), "Olimex ARM-USB-OCD");
        EXPECT_EQ(
            EntriesOf(ChoiceBehind(shown, kFrequency)),
            Names({"30 MHz",  "15 MHz",  "10 MHz", "7.5 MHz", "6 MHz",   "5 MHz",   "3.75 MHz",
                   "3 MHz",   "2 MHz",   "1 MHz",  "750 KHz", "500 KHz", "300 KHz", "200 KHz",
                   "150 KHz", "100 KHz", "50 KHz", "10 KHz",  "5 KHz",   "1 KHz"}));
        EXPECT_EQ(Chosen(shown, kFrequency), "15 MHz");
        EXPECT_TRUE(IsEnabled(shown, kAdaptive));
        ExpectGoodLayout(shown);
        TakeScreenshot(shown, "connection_ftd2xx");
        Choose(shown, kDevice, "Pod C A (C1)");
        Choose(shown, kPins, "Turtelizer 2");
        Choose(shown, kFrequency, "400 KHz");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.ftd2xxDescription, "Pod C A");
    EXPECT_EQ(settings_.ftd2xxSerial, "C1");
    EXPECT_EQ(settings_.ftd2xxFrequency, 400000);
    EXPECT_EQ(settings_.ftd2xxGpioSchemeDesc, L"Turtelizer 2");
    EXPECT_EQ(settings_.ftd2xxGpioDir, 0x0010);
    EXPECT_EQ(settings_.ftd2xxGpioValue, 0x0000);
}

TEST_F(CableSettingsDlgTest, SlowerDeviceHasOtherFrequenciesAndNoAdaptiveClocking) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed, kFullSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    settings_.ftd2xxAdaptiveClocking = true;
    Show([](wxDialog& shown) {
        EXPECT_TRUE(CheckBox(shown, kAdaptive).GetValue());
        Choose(shown, kDevice, "Pod C A (C1)");
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kFrequency)),
                  Names({"6 MHz", "3 MHz", "2 MHz", "1 MHz", "750 KHz", "600 KHz", "500 KHz",
                         "400 KHz", "300 KHz", "200 KHz", "150 KHz", "100 KHz", "50 KHz", "25 KHz",
                         "10 KHz", "5 KHz", "1 KHz"}));
        EXPECT_EQ(Chosen(shown, kFrequency), "6 MHz"); // 15 MHz is not there
        EXPECT_FALSE(IsEnabled(shown, kAdaptive));
        EXPECT_FALSE(CheckBox(shown, kAdaptive).GetValue());
        Choose(shown, kDevice, "Pod H A (H1)");
        EXPECT_TRUE(IsEnabled(shown, kAdaptive));
        EXPECT_TRUE(CheckBox(shown, kAdaptive).GetValue());
        EXPECT_EQ(Chosen(shown, kFrequency), "6 MHz");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(CableSettingsDlgTest, AdaptiveClockingIsWarnedAbout) {
    constexpr wchar_t kWarning[] =
        L"Use Adaptive Clocking ONLY IF a target device in a JTAG chain and a JTAG adapter support "
        L"this feature! Otherwise, the software will hang up with no error messages (!) upon "
        L"attempt to shift data into a JTAG chain.\n\nIgnore this warning and continue?";
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    boxes_.Expect(kWarning, kLossQuestionBox, OmAnswer::No, L"Warning");
    Show([](wxDialog& shown) {
        ClickCheck(shown, kAdaptive);
        PressOk(shown);
        EXPECT_TRUE(shown.IsModal());
        PressButton(shown, wxID_CANCEL);
    });
    EXPECT_FALSE(adaptiveWarningAnswered_);
    boxes_.Expect(kWarning, kLossQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_EQ(Show([](wxDialog& shown) {
                  ClickCheck(shown, kAdaptive);
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_TRUE(adaptiveWarningAnswered_);
    EXPECT_TRUE(settings_.ftd2xxAdaptiveClocking);
}

TEST_F(CableSettingsDlgTest, AdaptiveClockingOfAnotherCableIsNotWarnedAbout) {
    settings_.ftd2xxAdaptiveClocking = true;
    EXPECT_EQ(Show(PressOk), wxID_OK);
    EXPECT_TRUE(settings_.ftd2xxAdaptiveClocking);
    EXPECT_FALSE(adaptiveWarningAnswered_);
}

TEST_F(CableSettingsDlgTest, UnpluggedFtd2xxIsRefusedOnItsOwnPageOnly) {
    FakeD2xx d2xx;
    d2xx.devices.clear();
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxFrequency = 15000000;
    ExpectRefused("There are no FTDI FT2232 devices found.", [](wxDialog& shown) {
        EXPECT_EQ(EntriesOf(ChoiceBehind(shown, kDevice)),
                  Names({"press this button to refresh -->"}));
        EXPECT_FALSE(ChoiceBehind(shown, kDevice).IsThisEnabled());
        EXPECT_FALSE(ChoiceBehind(shown, kFrequency).IsThisEnabled());
        EXPECT_FALSE(IsEnabled(shown, kAdaptive));
        TakeScreenshot(shown, "connection_ftd2xx_unplugged");
    });
    EXPECT_EQ(Show([](wxDialog& shown) {
                  Choose(shown, kConnection, "Wiggler");
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_EQ(settings_.ftd2xxDescription, "Pod H A");
    EXPECT_EQ(settings_.ftd2xxFrequency, 15000000);
}

TEST_F(CableSettingsDlgTest, UnknownFtd2xxMustBeSelected) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kFullSpeed);
    ExpectRefused("Please select a device from the list.",
                  [](wxDialog& shown) { EXPECT_EQ(Chosen(shown, kDevice), ""); });
}

TEST_F(CableSettingsDlgTest, UpdateListFindsWhatWasPluggedIn) {
    FakeD2xx d2xx;
    d2xx.devices.clear();
    UseFtd2xx(kFullSpeed);
    EXPECT_EQ(Show([&](wxDialog& shown) {
                  d2xx.devices = {kHighSpeed, kFullSpeed};
                  PressButton(shown, "Update list");
                  EXPECT_EQ(Chosen(shown, kDevice), "Pod C A (C1)");
                  EXPECT_TRUE(ChoiceBehind(shown, kFrequency).IsThisEnabled());
                  PressOk(shown);
              }),
              wxID_OK);
    EXPECT_EQ(d2xx.loaded, 0);
}

TEST_F(CableSettingsDlgTest, SchemeThatIsGoneComesBack) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxGpioDir = 0x0510;
    settings_.ftd2xxGpioSchemeDesc = L"My pod";
    EXPECT_EQ(Show([](wxDialog& shown) {
                  EXPECT_EQ(Chosen(shown, kPins), "My pod");
                  PressOk(shown);
              }),
              wxID_OK);
    ASSERT_EQ(GetStaticPinsSchemes().size(), 4u);
    EXPECT_EQ(GetStaticPinsSchemes()[3],
              (OmFtd2xxStaticPinsScheme{L"My pod", 0x0510, 0x0300, false}));
}

TEST_F(CableSettingsDlgTest, SchemeThatDiffersInTheJtagPinsIsThePredefinedOne) {
    FakeD2xx d2xx;
    d2xx.devices = {kHighSpeed};
    UseFtd2xx(kHighSpeed);
    settings_.ftd2xxGpioDir = 0x071B;
    settings_.ftd2xxGpioSchemeDesc = L"My pod";
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kPins), "Amontec JTAGkey");
        PressOk(shown);
    });
    EXPECT_EQ(settings_.ftd2xxGpioDir, 0x0710);
    EXPECT_EQ(GetStaticPinsSchemes().size(), 3u);
}

TEST_F(CableSettingsDlgTest, DefaultPinStatesGetANameThatCanBeStored) {
    FakeD2xx d2xx;
    settings_.cableType = OmCableType::Ftd2xx;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kPins), "(unnamed)");
        PressButton(shown, wxID_CANCEL);
    });
}

// --- J-Link

TEST_F(CableSettingsDlgTest, JLinkPageShowsItsSettings) {
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

TEST_F(CableSettingsDlgTest, UnlistedJLinkFrequencyBecomesTheNextLowerOne) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkUsb;
    settings_.jlinkUsbFrequency = 5000000;
    Show([](wxDialog& shown) {
        EXPECT_EQ(Chosen(shown, kFrequency), "4 MHz");
        PressButton(shown, wxID_CANCEL);
    });
}

TEST_F(CableSettingsDlgTest, JLinkIpPageShowsItsSettings) {
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

TEST_F(CableSettingsDlgTest, JLinkIpPageRefusesBadHostAndPort) {
    FakeJLink jlink;
    settings_.cableType = OmCableType::JLinkIp;
    ExpectRefused("Please specify a host name or IP address.",
                  [](wxDialog& shown) { Type(shown, "Host:", "  "); });
    for (const char* port : {"", "65536", "-1", "http"})
        ExpectRefused("TCP/IP port must be in a range from 0 to 65535. The default port for Segger "
                      "J-Link TCP/IP server is 19020.",
                      [&](wxDialog& shown) { Type(shown, "Port:", port); });
}

TEST_F(CableSettingsDlgTest, BadHostPassesWhileAnotherPageIsShown) {
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

// --- Digilent

TEST_F(CableSettingsDlgTest, DigilentPageOffersTheConfiguredDevices) {
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

TEST_F(CableSettingsDlgTest, DigilentPageWantsADevice) {
    FakeDigilent digilent;
    digilent.deviceCount = 0;
    settings_.cableType = OmCableType::DigilentAdept;
    ExpectRefused("Please configure and select a Digilent communication module",
                  [](wxDialog& shown) {
                      EXPECT_EQ(Chosen(shown, kDevice), "press this button to add -->");
                      EXPECT_FALSE(ChoiceBehind(shown, kDevice).IsThisEnabled());
                  });
}

TEST_F(CableSettingsDlgTest, DigilentDevicesCanBeConfigured) {
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

TEST_F(CableSettingsDlgTest, FailedConfigurationIsTold) {
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

// --- USB-Blaster

TEST_F(CableSettingsDlgTest, OnlyUsbBlasterIsSelected) {
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

TEST_F(CableSettingsDlgTest, OneOfSeveralUsbBlastersMustBeSelected) {
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

TEST_F(CableSettingsDlgTest, MissingUsbBlasterIsRefusedUntilItIsThere) {
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
