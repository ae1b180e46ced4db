// The USB-Blaster over a D2XX library that may answer anything.

#include "jtag/UsbBlaster.h"
#include "fuzz/CableScans.h"
#include "fuzz/HostileD2xx.h"
#include "fuzz/Patience.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Patience patience;
    HostileD2xx pod(data, size);
    OmUsbBlaster cable;
    std::vector<OmUsbBlasterRecord> devices;
    if (cable.Load())
        cable.ListDevices(devices);
    const std::string description = devices.empty() ? "" : devices.back().description;
    if (cable.Initialize(description, ""))
        RunScans(cable, pod);
    return 0;
}
