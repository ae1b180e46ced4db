#include "jtag/ConnectionObstacles.h"

#include "platform/UsbBus.h"
#include "tests/jtag/FakeLibrary.h"

#include <gtest/gtest.h>

namespace {

class FakeUsbBus : public OmUsbBus {
  public:
    FakeUsbBus() : previous_(SetUsbBus(this)) {}

    ~FakeUsbBus() override { SetUsbBus(previous_); }

    FakeUsbBus(const FakeUsbBus&) = delete;
    FakeUsbBus& operator=(const FakeUsbBus&) = delete;

    bool ListDevices(std::vector<OmUsbDevice>& devices) override {
        devices = plugged;
        return says;
    }

    std::vector<OmUsbDevice> plugged;
    bool says = true;

  private:
    OmUsbBus* previous_;
};

std::wstring Describe(OmCableType type) {
    OmConnectionSettings settings;
    settings.cableType = type;
    return DescribeObstacles(settings);
}

class ConnectionObstacles : public testing::Test {
  protected:
    ConnectionObstacles() { loader.libraries = {"ftd2xx.dll", "JLinkARM.dll", "dpcutil.dll"}; }

    ~ConnectionObstacles() override { EXPECT_EQ(loader.loaded, 0); }

    FakeLoader loader;
    FakeUsbBus bus;
};

} // namespace

TEST_F(ConnectionObstacles, NothingIsToldWhereNothingIsKnown) {
    bus.plugged = {{{0x0403, 0x6010}, "Dual RS232", true, ""}};
    EXPECT_EQ(Describe(OmCableType::Ftd2xx), L"");
    EXPECT_EQ(Describe(OmCableType::Wiggler), L"");
    EXPECT_EQ(Describe(OmCableType::DigilentAdept), L"");
    bus.says = false;
    EXPECT_EQ(Describe(OmCableType::AlteraUsbBlaster), L"");
}

TEST_F(ConnectionObstacles, MissingLibraryIsNamedAsTheHostCallsIt) {
    loader.libraries.clear();
#ifdef _WIN32
    const std::wstring names[] = {L"JLinkARM.dll", L"ftd2xx.dll"};
#else
    const std::wstring names[] = {L"libjlinkarm.so", L"libftd2xx.so"};
#endif
    EXPECT_EQ(Describe(OmCableType::JLinkUsb),
              L"The vendor's library cannot be loaded: " + names[0] +
                  L". Install the vendor's software, or name the file in the environment variable "
                  L"VELFLASH_JLINKARM.");
    EXPECT_EQ(Describe(OmCableType::AlteraUsbBlaster),
              L"The vendor's library cannot be loaded: " + names[1] +
                  L". Install the vendor's software, or name the file in the environment variable "
                  L"VELFLASH_FTD2XX.");
}

TEST_F(ConnectionObstacles, KernelDriverIsToldWithItsRemedy) {
    bus.plugged = {{{0x0403, 0x6001}, "FT232R", true, "ftdi_sio"}, // a serial port, not meant
                   {{0x0403, 0x6010}, "Dual RS232", true, "ftdi_sio"}};
    EXPECT_EQ(Describe(OmCableType::Ftd2xx),
              L"The kernel's driver ftdi_sio holds the device Dual RS232 (USB 0403:6010), so that "
              L"the vendor's library cannot open it. Remove the driver with \"sudo rmmod "
              L"ftdi_sio\", and try again.");
}

TEST_F(ConnectionObstacles, MissingPermissionIsToldWithItsRemedy) {
    bus.plugged = {{{0x09FB, 0x6001}, "USB-Blaster", false, ""}};
    EXPECT_EQ(Describe(OmCableType::AlteraUsbBlaster),
              L"This user may not open the device USB-Blaster (USB 09FB:6001). Put the line\n\n"
              L"SUBSYSTEM==\"usb\", ATTR{idVendor}==\"09fb\", ATTR{idProduct}==\"6001\", "
              L"MODE=\"0660\", TAG+=\"uaccess\"\n\ninto a file "
              L"/etc/udev/rules.d/60-velflash.rules, unplug the device and plug it in again.");
}

TEST_F(ConnectionObstacles, AnyProductOfSeggerIsAJLink) {
    bus.plugged = {{{0x1366, 0x1051}, "", false, ""}};
    EXPECT_TRUE(Describe(OmCableType::JLinkUsb)
                    .starts_with(L"This user may not open the device USB 1366:1051."));
    bus.plugged.clear();
    EXPECT_EQ(Describe(OmCableType::JLinkUsb), L"No device of this kind is plugged in.");
}
