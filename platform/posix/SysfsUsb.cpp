#include "platform/posix/SysfsUsb.h"

#include "platform/Host.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// The one line of an attribute, empty if there is none.
std::string ReadAttribute(const fs::path& device, const char* name) {
    std::ifstream file(device / name);
    std::string line;
    std::getline(file, line);
    return line;
}

uint16_t ReadHexadecimal(const fs::path& device, const char* name) {
    return static_cast<uint16_t>(std::strtoul(ReadAttribute(device, name).c_str(), nullptr, 16));
}

// Nodes are named by bus and device number, three digits each.
bool MayOpen(const fs::path& device, const fs::path& nodeFolder) {
    char node[32];
    std::snprintf(node, sizeof node, "%03ld/%03ld",
                  std::strtol(ReadAttribute(device, "busnum").c_str(), nullptr, 10),
                  std::strtol(ReadAttribute(device, "devnum").c_str(), nullptr, 10));
    return access((nodeFolder / node).c_str(), R_OK | W_OK) == 0;
}

// Interfaces are folders below the device whose names begin with the device's own; one that a
// driver holds has a link to it. "usbfs" is a program such as this one.
std::string FindDriver(const fs::path& device) {
    const std::string prefix = device.filename().string() + ":";
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(device, error)) {
        const std::string name = entry.path().filename().string();
        const fs::path driver = fs::read_symlink(entry.path() / "driver", error).filename();
        if (name.starts_with(prefix) && !driver.empty() && driver != "usbfs")
            return driver.string();
    }
    return {};
}

class HostUsbBus : public OmUsbBus {
  public:
    bool ListDevices(std::vector<OmUsbDevice>& devices) override {
        return ListSysfsUsbDevices("/sys/bus/usb/devices", "/dev/bus/usb", devices);
    }
};

} // namespace

bool ListSysfsUsbDevices(const fs::path& sysFolder, const fs::path& nodeFolder,
                         std::vector<OmUsbDevice>& devices) {
    devices.clear();
    std::error_code error;
    std::vector<fs::path> folders;
    for (const fs::directory_entry& entry : fs::directory_iterator(sysFolder, error))
        if (!ReadAttribute(entry.path(), "idVendor").empty())
            folders.push_back(entry.path());
    std::ranges::sort(folders);
    for (const fs::path& folder : folders)
        devices.push_back(
            {{ReadHexadecimal(folder, "idVendor"), ReadHexadecimal(folder, "idProduct")},
             ReadAttribute(folder, "product"),
             MayOpen(folder, nodeFolder),
             FindDriver(folder)});
    return !error;
}

OmUsbBus& GetHostUsbBus() {
    static HostUsbBus bus;
    return bus;
}
