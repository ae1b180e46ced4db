#include "bsdl/BsdlData.h"
#include "bsdl/BsdlXml.h"
#include "bsdl/XmlElements.h"

#include <algorithm>
#include <limits>

namespace {

bool GetText(const wxXmlNode& node, const char* name, std::string& value) {
    value = GetXmlText(node, name);
    return !value.empty();
}

bool GetNumber(const wxXmlNode& node, const char* name, int32_t& value) {
    using Limits = std::numeric_limits<int32_t>;
    const auto number = GetXmlNumber(node, name, Limits::min(), Limits::max());
    value = static_cast<int32_t>(number.value_or(value));
    return number.has_value();
}

// Leaves `value` alone if the attribute is missing.
bool GetOptionalNumber(const wxXmlNode& node, const char* name, int32_t& value) {
    return !node.HasAttribute(name) || GetNumber(node, name, value);
}

// A register length, which the entity also gets as an attribute.
bool LoadLength(const wxXmlNode& node, const char* xmlName, const char* attributeName, int minimum,
                OmBsdlData& data) {
    int32_t length = 0;
    if (!GetNumber(node, xmlName, length) || length < minimum)
        return false;
    data.AddAttribute(attributeName, data.entity, "entity", std::to_string(length));
    return true;
}

bool LoadDefaultPinMapping(const wxXmlNode& node, OmBsdlData& data) {
    if (const wxXmlNode* child = FindXmlChild(node, "DefaultPinMapping"))
        data.SetDefaultPinMapping(GetXmlText(*child, "Name"));
    return true;
}

bool LoadPort(const wxXmlNode& node, OmBsdlData& data) {
    std::string name;
    std::string direction;
    int32_t i1 = -1;
    int32_t i2 = -1;
    if (!GetText(node, "N", name) || !GetText(node, "T", direction) ||
        !GetOptionalNumber(node, "I1", i1) || !GetOptionalNumber(node, "I2", i2))
        return false;
    data.AddPort(name, direction, i1, i2);
    // One that is unknown could not be saved again.
    return data.ports.back().Direction != OmBsdlPortDirection::Undefined;
}

bool LoadPorts(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* ports = FindXmlChild(node, "Ports");
    return ports && ForEachXmlChild(*ports, "Port",
                                    [&](const wxXmlNode& child) { return LoadPort(child, data); });
}

bool LoadMap(const wxXmlNode& node, const std::string& mapping, OmBsdlData& data) {
    std::string port;
    std::string pin;
    int32_t index = -1;
    if (!GetText(node, "P", port) || !GetText(node, "S", pin) ||
        !GetOptionalNumber(node, "I", index))
        return false;
    data.AddPinMapEntry(mapping, port, index, pin);
    return true;
}

bool LoadPinMapping(const wxXmlNode& node, OmBsdlData& data) {
    std::string name;
    return GetText(node, "Name", name) && ForEachXmlChild(node, "Map", [&](const wxXmlNode& child) {
               return LoadMap(child, name, data);
           });
}

bool LoadPinMappings(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* mappings = FindXmlChild(node, "PinMappings");
    return mappings && ForEachXmlChild(*mappings, "PinMapping", [&](const wxXmlNode& child) {
               return LoadPinMapping(child, data);
           });
}

bool LoadCode(const wxXmlNode& node, const std::string& instruction, OmBsdlData& data) {
    std::string code;
    if (!GetText(node, "Value", code))
        return false;
    data.AddInstructionCode(instruction, code);
    return true;
}

bool LoadInstruction(const wxXmlNode& node, OmBsdlData& data) {
    std::string name;
    return GetText(node, "Name", name) &&
           ForEachXmlChild(node, "Code",
                           [&](const wxXmlNode& child) { return LoadCode(child, name, data); });
}

bool LoadInstructions(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* ir = FindXmlChild(node, "IR");
    return ir && LoadLength(*ir, "IRLen", "INSTRUCTION_LENGTH", 2, data) &&
           data.GetInstructionLength() > 0 && // not beyond what any device has
           ForEachXmlChild(*ir, "Instruction",
                           [&](const wxXmlNode& child) { return LoadInstruction(child, data); });
}

bool LoadIdcode(const wxXmlNode& node, OmBsdlData& data) {
    if (!node.HasAttribute("Value"))
        return false;
    data.AddIdcode(GetXmlText(node, "Value"));
    return true;
}

bool LoadIdcodes(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* idcodes = FindXmlChild(node, "Idcodes");
    return !idcodes || ForEachXmlChild(*idcodes, "Idcode", [&](const wxXmlNode& child) {
        return LoadIdcode(child, data);
    });
}

bool LoadCell(const wxXmlNode& node, OmBsdlData& data) {
    std::string type;
    std::string port;
    return GetText(node, "T", type) && GetText(node, "P", port) &&
           data.AddCell(GetXmlText(node, "N"), type, port, GetXmlText(node, "F"),
                        GetXmlText(node, "SB"), GetXmlText(node, "CC"), GetXmlText(node, "DV"),
                        GetXmlText(node, "DR"));
}

bool LoadCells(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* bsr = FindXmlChild(node, "BSR");
    return bsr && LoadLength(*bsr, "BSRLen", "BOUNDARY_LENGTH", 1, data) &&
           ForEachXmlChild(*bsr, "Cell",
                           [&](const wxXmlNode& child) { return LoadCell(child, data); });
}

// The table can only have another size than BSRLen if that was not usable; then it is empty.
bool EveryCellIsDescribed(const OmBsdlData& data) {
    return !data.cells.empty() &&
           std::ranges::none_of(data.cells, [](const auto& entries) { return entries.empty(); });
}

} // namespace

bool LoadBsdlXml(const wxXmlNode& node, OmBsdlData& data) {
    return GetText(node, "Entity", data.entity) && LoadDefaultPinMapping(node, data) &&
           LoadPorts(node, data) && LoadPinMappings(node, data) && LoadInstructions(node, data) &&
           LoadIdcodes(node, data) && LoadCells(node, data) && EveryCellIsDescribed(data);
}
