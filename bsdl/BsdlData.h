// What a BSDL file (IEEE 1149.1, annex B) says about one device, in the form that the rest of the
// program needs. Filled by the parser or from the XML form that rides in a setup file. A value
// type.
#pragma once

#include "jtag/BitVector.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct OmBsdlAttribute {
    std::string Name;
    std::string Entity;
    std::string Class;
    std::string Value;

    bool operator==(const OmBsdlAttribute&) const = default;
};

// Undefined is what an unknown direction text leaves behind.
enum class OmBsdlPortDirection { In, Out, Buffer, Inout, Linkage, Undefined };

struct OmBsdlPort {
    std::string Name;
    OmBsdlPortDirection Direction = OmBsdlPortDirection::Undefined;
    int32_t I1 = -1; // bounds of a vector as written, left then right; -1 for a scalar
    int32_t I2 = -1;

    bool operator==(const OmBsdlPort&) const = default;
};

struct OmBsdlPinMapEntry {
    std::string Port;
    int32_t Index = -1; // element of a vector port; -1 for a scalar
    std::string Pin;    // package pin

    bool operator==(const OmBsdlPinMapEntry&) const = default;
};

enum class OmBsdlCellFunction {
    Input,
    Output2,
    Output3,
    Control,
    ControlR,
    Internal,
    Clock,
    Bidir,
    ObserveOnly
};

struct OmBsdlCell {
    std::string Cell; // cell type such as BC_1, upper-cased
    std::string Port; // as in the file: "*" and "NAME(3)" included
    OmBsdlCellFunction Function = OmBsdlCellFunction::Input;
    uint8_t Safe = kBitUnknown;         // 0, 1 or 'X'
    int32_t ControlCell = -1;           // number of the control cell, -1 for none
    uint8_t DisableValue = kBitUnknown; // 0, 1 or 'X' for none
    std::string DisableResult;

    bool operator==(const OmBsdlCell&) const = default;
};

class OmBsdlData {
  public:
    using PinMapping = std::vector<OmBsdlPinMapEntry>;

    virtual ~OmBsdlData() = default;
    OmBsdlData() = default;
    OmBsdlData(const OmBsdlData&) = default;
    OmBsdlData& operator=(const OmBsdlData&) = default;
    bool operator==(const OmBsdlData&) const = default;

    // Keeps an attribute. The first BOUNDARY_LENGTH of this entity that is usable sizes the cell
    // table, once, so it must come before the cells. A length above a million is not usable and
    // leaves the table empty.
    void AddAttribute(const std::string& name, const std::string& target,
                      const std::string& targetClass, const std::string& value);

    // From INSTRUCTION_LENGTH of this entity, -1 if there is none from 2 to a million.
    int GetInstructionLength() const;

    // Number of boundary-register cells, 0 while unknown.
    size_t GetBoundaryLength() const { return cells.size(); }

    void AddPort(const std::string& name, std::string_view direction, int i1, int i2);
    void AddPinMapEntry(const std::string& mapping, const std::string& port, int index,
                        const std::string& pin);
    std::vector<std::string> GetPinMappingNames() const;

    // Null for an unknown name.
    const PinMapping* FindPinMapping(const std::string& name) const;

    // Blanks and tabs at both ends are dropped. Empty counts as none.
    void SetDefaultPinMapping(const std::string& text);
    const char* GetDefaultPinMapping() const; // null for none

    // Instruction names are kept upper-cased; a code that is already there is not added twice.
    void AddInstructionCode(const std::string& name, const std::string& code);
    std::vector<std::string> GetInstructionCodes(const std::string& name) const;

    void AddIdcode(const std::string& pattern) { idcodes.push_back(pattern); }

    const std::vector<std::string>& GetIdcodes() const { return idcodes; }

    // One entry of a boundary cell, all fields as in the file; empty text for an absent control
    // cell, disable value and disable result. False, and nothing added, if a field is malformed or
    // a number is not below the boundary length.
    bool AddCell(const std::string& number, const std::string& cell, const std::string& port,
                 const std::string& function, const std::string& safe,
                 const std::string& controlCell, const std::string& disableValue,
                 const std::string& disableResult);

    std::string entity;
    std::vector<OmBsdlAttribute> attributes;
    std::vector<OmBsdlPort> ports;
    std::string defaultPinMapping;
    std::map<std::string, PinMapping> pinMappings;
    std::vector<std::vector<OmBsdlCell>> cells; // by cell number; a cell can have several entries
    std::map<std::string, std::vector<std::string>> instructions; // by upper-cased name
    std::vector<std::string> idcodes; // 32 characters, bit 31 first, '0', '1' or a wildcard

  private:
    // What `instructions` holds, by name and code: a damaged file may have many thousand codes.
    std::set<std::pair<std::string, std::string>> knownCodes_;
};

// The BSDL keyword of a function ("OUTPUT3") and back, ignoring case.
const char* GetCellFunctionName(OmBsdlCellFunction function);
std::optional<OmBsdlCellFunction> FindCellFunction(std::string_view name);

// "in", "out", "buffer", "inout", "linkage"; null for Undefined.
const char* GetPortDirectionName(OmBsdlPortDirection direction);

// ASCII comparison without regard to case, as VHDL compares names.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
