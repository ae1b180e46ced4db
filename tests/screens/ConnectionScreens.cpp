#include "jtag/ui/CableSettingsDlg.h"
#include "jtag/ui/StaticPinsDlg.h"
#include "tests/jtag/FakeDigilent.h"
#include "tests/jtag/FakeJLink.h"
#include "tests/jtag/FakePortDriver.h"
#include "tests/jtag/FakeUsbBlaster.h"
#include "tests/screens/Screens.h"

#include <wx/listbox.h>

namespace {

class ConnectionScreens : public ScreensTest {
  protected:
    ConnectionScreens() { GetStaticPinsSchemes() = LoadStaticPinsSchemes(); }

    void ShowConnection(OmCableType type, const std::string& name) {
        settings_.cableType = type;
        OmCableSettingsDlg dialog(frame_);
        dialog.settings = settings_;
        Show(dialog, [&](wxDialog& shown) { Picture(shown, name); });
    }

    FakePortDriver ports_;
    OmConnectionSettings settings_;
};

} // namespace

TEST_F(ConnectionScreens, ParallelPort) {
    ShowConnection(OmCableType::Wiggler, "connection-parallel");
    ports_->addresses = {0, 0, 0};
    ShowConnection(OmCableType::XilinxParallelCable3, "connection-no-parallel-port");
}

TEST_F(ConnectionScreens, Ftd2xx) {
    FakeD2xx d2xx;
    d2xx.devices = {{"Velmora Demo Board A", "VELDEMO1A", 6}, {"Old pod A", "OLD0001A", 4}};
    settings_.ftd2xxDescription = "Velmora Demo Board A";
    settings_.ftd2xxSerial = "VELDEMO1A";
    settings_.ftd2xxGpioDir = 0x0710;
    settings_.ftd2xxGpioValue = 0x0300;
    ShowConnection(OmCableType::Ftd2xx, "connection-ftd2xx");
    settings_.ftd2xxDescription = "Old pod A";
    settings_.ftd2xxSerial = "OLD0001A";
    ShowConnection(OmCableType::Ftd2xx, "connection-ftd2xx-full-speed");
    d2xx.devices.clear();
    ShowConnection(OmCableType::Ftd2xx, "connection-ftd2xx-unplugged");
}

TEST_F(ConnectionScreens, UsbBlaster) {
    FakeUsbBlaster blaster;
    ShowConnection(OmCableType::AlteraUsbBlaster, "connection-usb-blaster");
    blaster.devices.clear();
    ShowConnection(OmCableType::AlteraUsbBlaster, "connection-usb-blaster-unplugged");
}

TEST_F(ConnectionScreens, JLink) {
    const FakeJLink jlink;
    ShowConnection(OmCableType::JLinkUsb, "connection-jlink");
    ShowConnection(OmCableType::JLinkIp, "connection-jlink-ip");
}

TEST_F(ConnectionScreens, Digilent) {
    FakeDigilent digilent;
    settings_.digilentId = "Basys";
    ShowConnection(OmCableType::DigilentAdept, "connection-digilent");
    digilent.deviceCount = 0;
    digilent.names.clear();
    ShowConnection(OmCableType::DigilentAdept, "connection-digilent-none");
}

TEST_F(ConnectionScreens, MissingLibraries) {
    const FakeLoader noLibraries;
    ShowConnection(OmCableType::Ftd2xx, "connection-ftd2xx-no-driver");
    ShowConnection(OmCableType::DigilentAdept, "connection-digilent-no-library");
}

TEST_F(ConnectionScreens, StaticPins) {
    OmFtd2xxStaticPinsDlg list(frame_);
    list.schemes = LoadStaticPinsSchemes();
    list.schemes.push_back({L"Velmora Demo Board", 0x051B, 0x010A, false});
    Show(list, [this](wxDialog& shown) {
        Picture(shown, "static-pins");
        SelectRow(*FindByClass<wxListBox>(shown), 3);
        Picture(shown, "static-pins-row-selected");
    });
    OmEditFtd2xxStaticPinsSchemeDlg own(frame_);
    own.scheme = list.schemes[3];
    Show(own, [this](wxDialog& shown) { Picture(shown, "static-pins-scheme"); });
    OmEditFtd2xxStaticPinsSchemeDlg predefined(frame_);
    predefined.scheme = list.schemes[0];
    Show(predefined, [this](wxDialog& shown) { Picture(shown, "static-pins-predefined"); });
}
