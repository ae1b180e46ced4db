// What the board knows of a device's test logic, as read from its BSDL text.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vb {

// Names are held in capitals: BSDL knows no case.
struct PortDescription {
    std::string name;
    std::string direction; // "IN", "OUT", "INOUT", "BUFFER", "LINKAGE"
    int first = -1;        // bounds of a vector as written, -1 for a scalar
    int last = -1;

    bool Holds(int index) const;
};

enum class CellFunction { Input, Output, Control, Internal, Bidirectional };

// What a pin does while its driver is disabled: released, or held weakly.
enum class DisableResult { Released, WeakLow, WeakHigh };

struct CellEntry {
    std::string type; // BC_1 and so on
    std::string port; // "*" for none
    int index = -1;   // element of a vector port, -1 for a scalar
    CellFunction function = CellFunction::Internal;
    int controlCell = -1;
    bool disableValue = false;
    DisableResult disableResult = DisableResult::Released;
};

// Longest instruction register; the board holds an instruction in one word.
constexpr unsigned kMaxInstructionBits = 64;

struct DeviceDescription {
    std::string entity;
    std::vector<PortDescription> ports;
    unsigned instructionLength = 0;
    std::map<std::string, std::vector<uint64_t>> opcodes;
    uint64_t instructionCapture = 1; // IEEE 1149.1: the two low bits capture as 01
    std::optional<uint32_t> idcode;
    std::vector<std::vector<CellEntry>> cells; // by cell number; a cell can have several entries

    const PortDescription* FindPort(const std::string& name) const;
};

// Reads the parts of a BSDL text that a board needs; throws std::runtime_error with what is wrong.
DeviceDescription ReadBsdl(const std::string& text);

} // namespace vb
