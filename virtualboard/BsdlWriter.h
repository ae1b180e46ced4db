// Writes BSDL texts of invented devices: what a test needs to build its setup from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vb {

// How the boundary register serves a pin.
enum class PinStyle {
    Separate,      // control, output and input cell for each bit
    SharedControl, // one bidirectional cell for each bit, one control cell for up to eight bits
    OutputOnly,    // an output cell that cannot be released
    Input,
};

struct PortPlan {
    std::string name;
    unsigned width = 0; // 0 for a scalar
    PinStyle style = PinStyle::Separate;
    bool ascending = false; // "0 to 7" in place of "7 downto 0"
};

struct DevicePlan {
    std::string entity;
    unsigned instructionLength = 4;
    uint32_t idcode = 0;      // 0 for a device without IDCODE register
    bool disableValue = true; // of all control cells
    bool hasPreload = true;   // otherwise SAMPLE alone
    unsigned paddingCells = 0;
    std::vector<PortPlan> ports;
};

std::string WriteBsdl(const DevicePlan& plan);

} // namespace vb
