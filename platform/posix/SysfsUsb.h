// The USB devices as Linux shows them in /sys/bus/usb/devices, with their nodes in /dev/bus/usb.
#pragma once

#include "platform/UsbBus.h"

#include <filesystem>

// False if there is no such folder. The folders are parameters for the sake of tests.
bool ListSysfsUsbDevices(const std::filesystem::path& sysFolder,
                         const std::filesystem::path& nodeFolder,
                         std::vector<OmUsbDevice>& devices);
