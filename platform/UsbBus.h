// What the host says about the USB devices that are plugged in, for telling why a cable does not
// open. A cable itself reaches its device through its vendor's library alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Vendor and product by which a USB device is known.
struct OmUsbId {
    uint16_t vendor;
    uint16_t product;

    constexpr uint32_t AsNumber() const { return uint32_t{vendor} << 16 | product; }

    bool operator==(const OmUsbId&) const = default;
};

struct OmUsbDevice {
    OmUsbId id;
    std::string product; // as the device calls itself, may be empty
    bool mayOpen = true; // this user may reach the device
    std::string driver;  // of the kernel, which holds one of its interfaces; empty for none

    bool operator==(const OmUsbDevice&) const = default;
};

class OmUsbBus {
  public:
    virtual ~OmUsbBus() = default;

    // False if the host does not say.
    virtual bool ListDevices(std::vector<OmUsbDevice>& devices) = 0;
};

OmUsbBus& GetUsbBus();

// Installs `bus` (not owned; null restores the host's); returns the one installed before, null for
// the host's.
OmUsbBus* SetUsbBus(OmUsbBus* bus);
