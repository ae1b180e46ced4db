#include "jtag/ConnectionObstacles.h"

#include "jtag/CableTable.h"
#include "platform/SharedLibrary.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <algorithm>

namespace {

constexpr uint16_t kAnyProduct = 0;

bool IsOneOf(const OmUsbDevice& device, std::span<const OmUsbId> identifiers) {
    return std::ranges::any_of(identifiers, [&device](OmUsbId identifier) {
        return identifier == device.id ||
               (identifier.vendor == device.id.vendor && identifier.product == kAnyProduct);
    });
}

std::wstring Describe(const OmUsbDevice& device) {
    const std::wstring id =
        OmFormat(L"USB %04X:%04X", unsigned{device.id.vendor}, unsigned{device.id.product});
    return device.product.empty() ? id : FromLocal(device.product) + L" (" + id + L")";
}

std::wstring DescribeMissingLibrary(const OmCableRow& row) {
    const auto isThere = [](const char* name) { return GetLibraryLoader().Load(name) != nullptr; };
    if (row.libraries.empty() || std::ranges::any_of(row.libraries, isThere))
        return {};
    const char* name = row.libraries.back();
    return TranslatedFormat(
        "The vendor's library cannot be loaded: %ls. Install the vendor's software, or name the "
        "file in the environment variable %ls.",
        FromLocal(GetHostLibraryName(name)).c_str(), FromLocal(GetLibraryVariable(name)).c_str());
}

std::wstring DescribeKernelDriver(const OmUsbDevice& device) {
    return TranslatedFormat("The kernel's driver %ls holds the device %ls, so that the vendor's "
                            "library cannot open it. Remove the driver with \"sudo rmmod %ls\", "
                            "and try again.",
                            FromLocal(device.driver).c_str(), Describe(device).c_str(),
                            FromLocal(device.driver).c_str());
}

std::wstring DescribePermission(const OmUsbDevice& device) {
    return TranslatedFormat(
        "This user may not open the device %ls. Put the line\n\nSUBSYSTEM==\"usb\", "
        "ATTR{idVendor}==\"%04x\", ATTR{idProduct}==\"%04x\", MODE=\"0660\", "
        "TAG+=\"uaccess\"\n\ninto a file /etc/udev/rules.d/60-velflash.rules, unplug the device "
        "and plug it in again.",
        Describe(device).c_str(), unsigned{device.id.vendor}, unsigned{device.id.product});
}

std::wstring DescribeDevice(const OmUsbDevice& device, bool driverHinders) {
    if (!device.mayOpen)
        return DescribePermission(device);
    return driverHinders && !device.driver.empty() ? DescribeKernelDriver(device) : L"";
}

std::wstring DescribeDevices(const OmCableRow& row) {
    std::vector<OmUsbDevice> devices;
    if (row.usbIds.empty() || !GetUsbBus().ListDevices(devices))
        return {};
    std::erase_if(devices,
                  [&row](const OmUsbDevice& device) { return !IsOneOf(device, row.usbIds); });
    if (devices.empty())
        return Translated("No device of this kind is plugged in.");
    std::wstring text;
    for (const OmUsbDevice& device : devices) {
        const std::wstring one = DescribeDevice(device, row.driverHinders);
        if (!one.empty() && text.find(one) == std::wstring::npos)
            text += (text.empty() ? L"" : L"\n\n") + one;
    }
    return text;
}

} // namespace

std::wstring DescribeObstacles(const OmConnectionSettings& settings) {
    const OmCableRow* row = FindCableRow(settings.cableType);
    if (!row)
        return {};
    const std::wstring library = DescribeMissingLibrary(*row);
    return library.empty() ? DescribeDevices(*row) : library;
}
