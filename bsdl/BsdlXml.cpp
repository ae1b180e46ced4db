#include "bsdl/BsdlXml.h"

#include "bsdl/BsdlData.h"
#include "bsdl/XmlElements.h"

namespace {

std::string BitText(uint8_t bit) {
    return bit == 0 ? "0" : bit == 1 ? "1" : "X";
}

void SavePorts(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender ports(node);
    for (const OmBsdlPort& port : data.ports) {
        wxXmlNode& element = ports.Add("Port");
        SetXml(element, "N", port.Name);
        // An undefined direction is written as empty text, which the reader refuses.
        const char* direction = GetPortDirectionName(port.Direction);
        SetXml(element, "T", std::string(direction ? direction : ""));
        if (port.I1 != -1 && port.I2 != -1) {
            SetXml(element, "I1", int64_t{port.I1});
            SetXml(element, "I2", int64_t{port.I2});
        }
    }
}

void SavePinMapping(wxXmlNode& node, const OmBsdlData::PinMapping& entries) {
    OmXmlAppender maps(node);
    for (const OmBsdlPinMapEntry& entry : entries) {
        wxXmlNode& element = maps.Add("Map");
        SetXml(element, "P", entry.Port);
        SetXml(element, "S", entry.Pin);
        if (entry.Index != -1)
            SetXml(element, "I", int64_t{entry.Index});
    }
}

void SavePinMappings(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender mappings(node);
    for (const auto& [name, entries] : data.pinMappings) {
        wxXmlNode& element = mappings.Add("PinMapping");
        SetXml(element, "Name", name);
        SavePinMapping(element, entries);
    }
}

void SaveInstructions(wxXmlNode& node, const OmBsdlData& data) {
    SetXml(node, "IRLen", int64_t{data.GetInstructionLength()});
    OmXmlAppender instructions(node);
    for (const auto& [name, codes] : data.instructions) {
        wxXmlNode& element = instructions.Add("Instruction");
        SetXml(element, "Name", name);
        OmXmlAppender children(element);
        for (const std::string& code : codes)
            SetXml(children.Add("Code"), "Value", code);
    }
}

void SaveIdcodes(wxXmlNode& node, const OmBsdlData& data) {
    OmXmlAppender idcodes(node);
    for (const std::string& pattern : data.idcodes)
        SetXml(idcodes.Add("Idcode"), "Value", pattern);
}

void SaveCell(wxXmlNode& node, size_t number, const OmBsdlCell& cell) {
    SetXml(node, "N", static_cast<int64_t>(number));
    SetXml(node, "T", cell.Cell);
    SetXml(node, "P", cell.Port);
    SetXml(node, "F", std::string(GetCellFunctionName(cell.Function)));
    SetXml(node, "SB", BitText(cell.Safe));
    if (cell.ControlCell < 0)
        return;
    SetXml(node, "CC", int64_t{cell.ControlCell});
    if (cell.DisableValue != kBitUnknown)
        SetXml(node, "DV", BitText(cell.DisableValue));
    SetXml(node, "DR", cell.DisableResult);
}

void SaveCells(wxXmlNode& node, const OmBsdlData& data) {
    SetXml(node, "BSRLen", static_cast<int64_t>(data.GetBoundaryLength()));
    OmXmlAppender cells(node);
    for (size_t number = 0; number < data.cells.size(); ++number)
        for (const OmBsdlCell& cell : data.cells[number])
            SaveCell(cells.Add("Cell"), number, cell);
}

} // namespace

void SaveBsdlXml(wxXmlNode& node, const OmBsdlData& data) {
    SetXml(node, "Entity", data.entity);
    OmXmlAppender children(node);
    if (const char* mapping = data.GetDefaultPinMapping())
        SetXml(children.Add("DefaultPinMapping"), "Name", std::string(mapping));
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
