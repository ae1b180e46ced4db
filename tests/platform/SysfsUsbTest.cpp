#include "platform/posix/SysfsUsb.h"

#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

// A folder like /sys/bus/usb/devices, and one like /dev/bus/usb.
class Tree {
  public:
    Tree() : sys_(folder_.Path("sys")), nodes_(folder_.Path("dev")) {
        fs::create_directories(sys_);
        fs::create_directories(nodes_ / "001");
    }

    void Add(const std::string& name, const char* vendor, const char* product, int number) {
        fs::create_directories(sys_ / name);
        Write(sys_ / name / "idVendor", vendor);
        Write(sys_ / name / "idProduct", product);
        Write(sys_ / name / "busnum", "1");
        Write(sys_ / name / "devnum", std::to_string(number));
    }

    void Write(const fs::path& path, const std::string& text) {
        std::ofstream(path) << text << "\n";
    }

    void Hold(const std::string& device, const std::string& driver) {
        const fs::path interface = sys_ / device / (device + ":1.0");
        fs::create_directories(interface);
        fs::create_symlink(fs::path("/sys/bus/usb/drivers") / driver, interface / "driver");
    }

    std::vector<OmUsbDevice> List() {
        std::vector<OmUsbDevice> devices;
        EXPECT_TRUE(ListSysfsUsbDevices(sys_, nodes_, devices));
        return devices;
    }

    fs::path Sys(const std::string& name) { return sys_ / name; }

    fs::path Node(const std::string& name) { return nodes_ / name; }

  private:
    TemporaryFolder folder_;
    fs::path sys_;
    fs::path nodes_;
};

} // namespace

TEST(SysfsUsb, DeviceIsListedWithItsNameItsDriverAndWhetherItMayBeOpened) {
    Tree tree;
    tree.Add("1-2", "0403", "6010", 5);
    tree.Write(tree.Sys("1-2/product"), "Dual RS232-HS");
    tree.Hold("1-2", "ftdi_sio");
    tree.Write(tree.Node("001/005"), "");
    tree.Add("1-3", "09fb", "6001", 12);
    tree.Hold("1-3", "usbfs"); // another program
    EXPECT_EQ(tree.List(),
              (std::vector<OmUsbDevice>{{{0x0403, 0x6010}, "Dual RS232-HS", true, "ftdi_sio"},
                                        {{0x09FB, 0x6001}, "", false, ""}}));
}

TEST(SysfsUsb, InterfacesAreNoDevices) {
    Tree tree;
    fs::create_directories(tree.Sys("1-2:1.0"));
    EXPECT_TRUE(tree.List().empty());
}

TEST(SysfsUsb, MissingFolderIsTold) {
    std::vector<OmUsbDevice> devices{{}};
    EXPECT_FALSE(ListSysfsUsbDevices("/no/such/folder", "/dev/bus/usb", devices));
    EXPECT_TRUE(devices.empty());
}
