#include "bsdl/BsdlXml.h"

#include "bsdl/BsdlData.h"
#include "bsdl/XmlAppender.h"
#include "platform/Text.h"

namespace {

void Set(wxXmlNode& node, const char* name, const std::string& value) {
    node.AddAttribute(name, FromLocal(value));
}

void Set(wxXmlNode& node, const char* name, int value) {
    node.AddAttribute(name, std::to_string(value));
}

std::string BitText(uint8_t bit) {
    return bit == 0 ? "0" : bit == 1 ? "1" : "X";
}

void SavePorts(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender ports(node);
    for (const OmBsdlPort& port : data.ports) {
        wxXmlNode& element = ports.Add("Port");
        Set(element, "N", port.Name);
        // An undefined direction is written as empty text, which the reader refuses.
        const char* direction = GetPortDirectionName(port.Direction);
        Set(element, "T", std::string(direction ? direction : ""));
        if (port.I1 != -1 && port.I2 != -1) {
            Set(element, "I1", port.I1);
            Set(element, "I2", port.I2);
        }
    }
}

void SavePinMapping(wxXmlNode& node, const OmBsdlData::PinMapping& entries) {
    OmXmlAppender maps(node);
    for (const OmBsdlPinMapEntry& entry : entries) {
        wxXmlNode& element = maps.Add("Map");
        Set(element, "P", entry.Port);
        Set(element, "S", entry.Pin);
        if (entry.Index != -1)
            Set(element, "I", entry.Index);
    }
}

void SavePinMappings(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender mappings(node);
    for (const auto& [name, entries] : data.pinMappings) {
        wxXmlNode& element = mappings.Add("PinMapping");
        Set(element, "Name", name);
        SavePinMapping(element, entries);
    }
}

void SaveInstructions(wxXmlNode& node, const OmBsdlData& data) {
    Set(node, "IRLen", data.GetInstructionLength());
    OmXmlAppender instructions(node);
    for (const auto& [name, codes] : data.instructions) {
        wxXmlNode& element = instructions.Add("Instruction");
        Set(element, "Name", name);
        OmXmlAppender children(element);
        for (const std::string& code : codes)
            Set(children.Add("Code"), "Value", code);
    }
}

void SaveIdcodes(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender idcodes(node);
    for (const std::string& pattern : data.idcodes)
        Set(idcodes.Add("Idcode"), "Value", pattern);
}

void SaveCell(wxXmlNode& node, size_t number, const OmBsdlCell& cell) {
    Set(node, "N", static_cast<int>(number));
    Set(node, "T", cell.Cell);
    Set(node, "P", cell.Port);
    Set(node, "F", std::string(GetCellFunctionName(cell.Function)));
    Set(node, "SB", BitText(cell.Safe));
    if (cell.ControlCell < 0)
        return;
    Set(node, "CC", cell.ControlCell);
    if (cell.DisableValue != kBitUnknown)
        Set(node, "DV", BitText(cell.DisableValue));
    Set(node, "DR", cell.DisableResult);
}

void SaveCells(wxXmlNode& node, const OmBsdlData& data) {
    Set(node, "BSRLen", static_cast<int>(data.GetBoundaryLength()));
    OmXmlAppender cells(node);
    for (size_t number = 0; number < data.cells.size(); ++number)
        for (const OmBsdlCell& cell : data.cells[number])
            SaveCell(cells.Add("Cell"), number, cell);
}

} // namespace

void SaveBsdlXml(wxXmlNode& node, const OmBsdlData& data) {
    Set(node, "Entity", data.entity);
    OmXmlAppender children(node);
    if (const char* mapping = data.GetDefaultPinMapping())
        Set(children.Add("DefaultPinMapping"), "Name", std::string(mapping));
    SavePorts(children.Add("Ports"), data);
    SavePinMappings(children.Add("PinMappings"), data);
    SaveInstructions(children.Add("IR"), data);
    if (!data.GetIdcodes().empty())
        SaveIdcodes(children.Add("Idcodes"), data);
    SaveCells(children.Add("BSR"), data);
}

bool CheckBsdlContent(const OmBsdlData& source, OmBsdlData& copy) {
    wxXmlNode node(wxXML_ELEMENT_NODE, "BSDL");
    SaveBsdlXml(node, source);
    return LoadBsdlXml(node, copy);
}
