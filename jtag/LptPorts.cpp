#include "jtag/LptPorts.h"

#include "platform/PortDriver.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr size_t kPorts = 3;

// Wanted: a driver that has answered once stays open to the end of the run, at one handle a call. A
// demand-started driver would otherwise be unloaded and loaded again with each look at the ports.
void KeepOpen(std::unique_ptr<OmPortDriver> driver) {
    static std::vector<std::unique_ptr<OmPortDriver>> kept;
    kept.push_back(std::move(driver));
}

} // namespace

bool GetLptAddresses(uint16_t* lpt1, uint16_t* lpt2, uint16_t* lpt3) {
    std::unique_ptr<OmPortDriver> driver = GetPortDriverOpener().Open(kPortDriverName);
    if (!driver)
        return false;
    std::array<uint8_t, 2 * kPorts> record{};
    size_t returned = 0;
    if (!driver->Control(kPortEnumerate, {}, record, returned) || returned != record.size())
        return false;
    uint16_t* const addresses[kPorts] = {lpt1, lpt2, lpt3};
    for (size_t i = 0; i < kPorts; ++i) {
        if (addresses[i])
            *addresses[i] = static_cast<uint16_t>(record[2 * i] | record[2 * i + 1] << 8);
    }
    KeepOpen(std::move(driver));
    return true;
}
