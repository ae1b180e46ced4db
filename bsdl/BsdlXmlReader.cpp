#include "bsdl/BsdlData.h"
#include "bsdl/BsdlXml.h"
#include "platform/Text.h"

#include <algorithm>
#include <wx/xml/xml.h>

namespace {

const wxXmlNode* FindChild(const wxXmlNode& node, const char* name) {
    const wxXmlNode* child = node.GetChildren();
    while (child && child->GetName() != name)
        child = child->GetNext();
    return child;
}

// Calls `read` for every child of that name until one fails.
template <typename Read>
bool ForEachChild(const wxXmlNode& node, const char* name, Read read) {
    for (const wxXmlNode* child = node.GetChildren(); child; child = child->GetNext())
        if (child->GetName() == name && !read(*child))
            return false;
    return true;
}

std::string Get(const wxXmlNode& node, const char* name) {
    return ToLocal(node.GetAttribute(name).ToStdWstring());
}

bool GetText(const wxXmlNode& node, const char* name, std::string& value) {
    value = Get(node, name);
    return !value.empty();
}

bool GetNumber(const wxXmlNode& node, const char* name, const char* fallback, int32_t& value) {
    long number = 0;
    if (!node.GetAttribute(name, fallback).ToLong(&number))
        return false;
    value = static_cast<int32_t>(number);
    return value == number;
}

// A register length, which the entity also gets as an attribute.
bool LoadLength(const wxXmlNode& node, const char* xmlName, const char* attributeName, int minimum,
                OmBsdlData& data) {
    int32_t length = 0;
    if (!GetNumber(node, xmlName, "", length) || length < minimum)
        return false;
    data.AddAttribute(attributeName, data.entity, "entity", std::to_string(length));
    return true;
}

bool LoadDefaultPinMapping(const wxXmlNode& node, OmBsdlData& data) {
    if (const wxXmlNode* child = FindChild(node, "DefaultPinMapping"))
        data.SetDefaultPinMapping(Get(*child, "Name"));
    return true;
}

bool LoadPort(const wxXmlNode& node, OmBsdlData& data) {
    std::string name;
    std::string direction;
    int32_t i1 = -1;
    int32_t i2 = -1;
    if (!GetText(node, "N", name) || !GetText(node, "T", direction) ||
        !GetNumber(node, "I1", "-1", i1) || !GetNumber(node, "I2", "-1", i2))
        return false;
    data.AddPort(name, direction, i1, i2);
    // One that is unknown could not be saved again.
    return data.ports.back().Direction != OmBsdlPortDirection::Undefined;
}

bool LoadPorts(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* ports = FindChild(node, "Ports");
    return ports && ForEachChild(*ports, "Port",
                                 [&](const wxXmlNode& child) { return LoadPort(child, data); });
}

bool LoadMap(const wxXmlNode& node, const std::string& mapping, OmBsdlData& data) {
    std::string port;
    std::string pin;
    int32_t index = -1;
    if (!GetText(node, "P", port) || !GetText(node, "S", pin) || !GetNumber(node, "I", "-1", index))
        return false;
    data.AddPinMapEntry(mapping, port, index, pin);
    return true;
}

bool LoadPinMapping(const wxXmlNode& node, OmBsdlData& data) {
    std::string name;
    return GetText(node, "Name", name) && ForEachChild(node, "Map", [&](const wxXmlNode& child) {
               return LoadMap(child, name, data);
           });
}

bool LoadPinMappings(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* mappings = FindChild(node, "PinMappings");
    return mappings && ForEachChild(*mappings, "PinMapping", [&](const wxXmlNode& child) {
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
    return GetText(node, "Name", name) && ForEachChild(node, "Code", [&](const wxXmlNode& child) {
               return LoadCode(child, name, data);
           });
}

bool LoadInstructions(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* ir = FindChild(node, "IR");
    return ir && LoadLength(*ir, "IRLen", "INSTRUCTION_LENGTH", 2, data) &&
           data.GetInstructionLength() > 0 && // not beyond what any device has
           ForEachChild(*ir, "Instruction",
                        [&](const wxXmlNode& child) { return LoadInstruction(child, data); });
}

bool LoadIdcode(const wxXmlNode& node, OmBsdlData& data) {
    if (!node.HasAttribute("Value"))
        return false;
    data.AddIdcode(Get(node, "Value"));
    return true;
}

bool LoadIdcodes(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* idcodes = FindChild(node, "Idcodes");
    return !idcodes || ForEachChild(*idcodes, "Idcode", [&](const wxXmlNode& child) {
        return LoadIdcode(child, data);
    });
}

bool LoadCell(const wxXmlNode& node, OmBsdlData& data) {
    std::string type;
    std::string port;
    return GetText(node, "T", type) && GetText(node, "P", port) &&
           data.AddCell(Get(node, "N"), type, port, Get(node, "F"), Get(node, "SB"),
                        Get(node, "CC"), Get(node, "DV"), Get(node, "DR"));
}

bool LoadCells(const wxXmlNode& node, OmBsdlData& data) {
    const wxXmlNode* bsr = FindChild(node, "BSR");
    return bsr && LoadLength(*bsr, "BSRLen", "BOUNDARY_LENGTH", 1, data) &&
           ForEachChild(*bsr, "Cell",
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
