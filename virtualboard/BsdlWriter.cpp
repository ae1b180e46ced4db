#include "virtualboard/BsdlWriter.h"

#include <algorithm>

namespace vb {

namespace {

constexpr unsigned kBitsPerControl = 8;
constexpr uint64_t kIdcodeOpcode = 2;
constexpr uint64_t kSampleOpcode = 1;
constexpr uint64_t kHighZOpcode = 4;

std::string Binary(uint64_t value, unsigned digits) {
    std::string text(digits, '0');
    for (unsigned i = 0; i < digits; ++i)
        if (value >> i & 1)
            text[digits - 1 - i] = '1';
    return text;
}

// Lists inside an attribute string: one entry a line, joined by '&'.
std::string JoinStrings(const std::vector<std::string>& entries) {
    std::string text;
    for (size_t i = 0; i < entries.size(); ++i) {
        const bool last = i + 1 == entries.size();
        text += "    \"" + entries[i] + (last ? "\"" : ",\" &\n");
    }
    return text;
}

const char* DirectionOf(PinStyle style) {
    if (style == PinStyle::Input)
        return "in";
    return style == PinStyle::OutputOnly ? "out" : "inout";
}

std::string TypeOf(const PortPlan& port) {
    if (port.width == 0)
        return "bit";
    const std::string high = std::to_string(port.width - 1);
    return port.ascending ? "bit_vector(0 to " + high + ")" : "bit_vector(" + high + " downto 0)";
}

std::string PortClause(const DevicePlan& plan) {
    std::string text = "  port (\n    TCK, TMS, TDI : in bit;\n    TDO : out bit;\n";
    for (const PortPlan& port : plan.ports)
        text += "    " + port.name + " : " + DirectionOf(port.style) + " " + TypeOf(port) + ";\n";
    return text + "    GND, VCC : linkage bit_vector(1 to 2)\n  );\n";
}

std::string PinMap(const DevicePlan& plan) {
    std::vector<std::string> entries = {"TCK : 1", "TMS : 2",      "TDI : 3",
                                        "TDO : 4", "GND : (5, 6)", "VCC : (7, 8)"};
    unsigned pin = 9;
    for (const PortPlan& port : plan.ports) {
        std::string pins = std::to_string(pin++);
        for (unsigned i = 1; i < port.width; ++i)
            pins += ", " + std::to_string(pin++);
        entries.push_back(port.name + " : " + (port.width ? "(" + pins + ")" : pins));
    }
    return "  constant PACKAGE_A : PIN_MAP_STRING :=\n" + JoinStrings(entries) + ";\n";
}

std::vector<std::string> Opcodes(const DevicePlan& plan) {
    const unsigned length = plan.instructionLength;
    std::vector<std::string> entries = {"EXTEST (" + Binary(0, length) + ")",
                                        "SAMPLE (" + Binary(kSampleOpcode, length) + ")"};
    if (plan.hasPreload)
        entries.push_back("PRELOAD (" + Binary(kSampleOpcode, length) + ")");
    if (plan.idcode != 0)
        entries.push_back("IDCODE (" + Binary(kIdcodeOpcode, length) + ")");
    if (length > 2)
        entries.push_back("HIGHZ (" + Binary(kHighZOpcode, length) + ")");
    entries.push_back("BYPASS (" + std::string(length, '1') + ")");
    return entries;
}

// Hands out cell numbers and writes a line for each.
class CellWriter {
  public:
    explicit CellWriter(const DevicePlan& plan) : plan_(plan) {}

    std::vector<std::string> Write() {
        for (const PortPlan& port : plan_.ports)
            WritePort(port);
        for (unsigned i = 0; i < plan_.paddingCells; ++i)
            Line("BC_1, *, internal, X");
        if (lines_.empty())
            Line("BC_1, *, internal, X"); // a boundary register has at least one cell
        return lines_;
    }

  private:
    void WritePort(const PortPlan& port) {
        unsigned control = 0;
        for (unsigned i = 0; i < std::max(port.width, 1u); ++i) {
            const std::string name =
                port.width ? port.name + "(" + std::to_string(i) + ")" : port.name;
            const bool released =
                port.style == PinStyle::Separate || port.style == PinStyle::SharedControl;
            if (released && (port.style == PinStyle::Separate || i % kBitsPerControl == 0))
                control = Line("BC_2, *, control, " + DisableText());
            WritePin(name, port.style, control);
        }
    }

    void WritePin(const std::string& name, PinStyle style, unsigned control) {
        const std::string disable =
            ", X, " + std::to_string(control) + ", " + DisableText() + ", Z";
        if (style == PinStyle::SharedControl)
            Line("BC_7, " + name + ", bidir" + disable);
        if (style == PinStyle::Separate)
            Line("BC_2, " + name + ", output3" + disable);
        if (style == PinStyle::OutputOnly)
            Line("BC_2, " + name + ", output2, 1");
        if (style == PinStyle::Separate || style == PinStyle::Input)
            Line("BC_4, " + name + ", input, X");
    }

    std::string DisableText() const { return plan_.disableValue ? "1" : "0"; }

    unsigned Line(const std::string& cell) {
        lines_.push_back(std::to_string(lines_.size()) + " (" + cell + ")");
        return static_cast<unsigned>(lines_.size() - 1);
    }

    const DevicePlan& plan_;
    std::vector<std::string> lines_;
};

} // namespace

std::string WriteBsdl(const DevicePlan& plan) {
    const std::string of = " of " + plan.entity + " : entity is";
    const std::vector<std::string> cells = CellWriter(plan).Write();
    std::string text =
        "entity " + plan.entity + " is\n\n" +
        "  generic (PHYSICAL_PIN_MAP : string := \"PACKAGE_A\");\n\n" + PortClause(plan) +
        "\n  use STD_1149_1_1994.all;\n\n" + "  attribute COMPONENT_CONFORMANCE" + of +
        " \"STD_1149_1_1993\";\n" + "  attribute PIN_MAP" + of + " PHYSICAL_PIN_MAP;\n\n" +
        PinMap(plan) + "\n" + "  attribute TAP_SCAN_IN of TDI : signal is true;\n" +
        "  attribute TAP_SCAN_OUT of TDO : signal is true;\n" +
        "  attribute TAP_SCAN_MODE of TMS : signal is true;\n" +
        "  attribute TAP_SCAN_CLOCK of TCK : signal is (30.0e6, BOTH);\n\n" +
        "  attribute INSTRUCTION_LENGTH" + of + " " + std::to_string(plan.instructionLength) +
        ";\n" + "  attribute INSTRUCTION_OPCODE" + of + "\n" + JoinStrings(Opcodes(plan)) + ";\n" +
        "  attribute INSTRUCTION_CAPTURE" + of + " \"" + Binary(1, plan.instructionLength) +
        "\";\n";
    if (plan.idcode != 0)
        text += "  attribute IDCODE_REGISTER" + of + " \"" + Binary(plan.idcode, 32) + "\";\n";
    return text + "\n  attribute BOUNDARY_LENGTH" + of + " " + std::to_string(cells.size()) +
           ";\n" + "  attribute BOUNDARY_REGISTER" + of + "\n" + JoinStrings(cells) + ";\n\n" +
           "end " + plan.entity + ";\n";
}

} // namespace vb
