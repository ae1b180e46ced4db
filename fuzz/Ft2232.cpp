// The FT2232 cable over a D2XX library that may answer anything.

#include "fuzz/CableScans.h"
#include "fuzz/HostileD2xx.h"
#include "fuzz/Patience.h"
#include "jtag/Ftd2xx.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Patience patience;
    HostileD2xx pod(data, size);
    OmFtd2xx cable;
    std::vector<OmFtd2xxRecord> devices;
    if (cable.Load())
        cable.ListDevices(devices);
    const std::string description = devices.empty() ? "" : devices.back().description;
    bool isHighSpeed = false;
    if (cable.Initialize(description, "", pod.input.ConsumeIntegral<uint32_t>(),
                         pod.input.ConsumeBool(), 0x051B, 0x010A, isHighSpeed))
        RunScans(cable, pod);
    return 0;
}
