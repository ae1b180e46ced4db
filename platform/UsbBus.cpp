#include "platform/UsbBus.h"

#include "platform/Host.h"

namespace {

OmUsbBus* installed = nullptr;

} // namespace

OmUsbBus& GetUsbBus() {
    return installed ? *installed : GetHostUsbBus();
}

OmUsbBus* SetUsbBus(OmUsbBus* bus) {
    OmUsbBus* previous = installed;
    installed = bus;
    return previous;
}
