#include "bsdl/BsdlReport.h"

#include "bsdl/BsdlData.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <iterator>

namespace {

constexpr const char* kFunctionColumn[] = {" input   ", " output2 ", " output3 ",
                                           " control ", " controlr", " internal",
                                           " clock   ", " bidir   ", "observe_only"};

constexpr const char* kErrorMark = "***ERROR***";

std::string Join(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : ", ") + text;
    return joined;
}

std::string FormatPort(const OmBsdlPort& port) {
    const char* direction = GetPortDirectionName(port.Direction);
    const std::string bounds =
        port.I1 != -1 && port.I2 != -1 ? OmFormat("(%d-%d)", port.I1, port.I2) : std::string();
    return "    " + port.Name + bounds + ": " + (direction ? direction : kErrorMark) + "\n";
}

std::string FormatPorts(const OmBsdlData& data) {
    std::string text = ToLocal(Translated("Port signals:\n"));
    for (const OmBsdlPort& port : data.ports)
        text += FormatPort(port);
    return text + "\n";
}

std::string FormatPinMapEntry(const OmBsdlPinMapEntry& entry) {
    const std::string index = entry.Index != -1 ? OmFormat("(%d)", entry.Index) : std::string();
    return OmFormat("%5s : ", entry.Pin.c_str()) + entry.Port + index + "\n";
}

std::string FormatPinMappings(const OmBsdlData& data) {
    if (data.pinMappings.empty())
        return ToLocal(Translated("Device package pin mappings: n/a\n\n"));
    std::string text =
        ToLocal(TranslatedPlural("Device package pin mapping: ", "Device package pin mappings: ",
                                 static_cast<unsigned>(data.pinMappings.size())));
    text += Join(data.GetPinMappingNames()) + "\n";
    for (const auto& [name, entries] : data.pinMappings) {
        text += ToLocal(TranslatedFormat("\n%ls pin mapping:\n", FromLocal(name).c_str()));
        for (const OmBsdlPinMapEntry& entry : entries)
            text += FormatPinMapEntry(entry);
    }
    return text + "\n";
}

std::string FormatInstructions(const OmBsdlData& data) {
    const int length = data.GetInstructionLength();
    std::wstring wide = length < 2
                            ? Translated("Instruction register length: unknown")
                            : TranslatedFormat("Instruction register length: %d bits", length);
    wide += L"\n\n" + Translated("Instructions:\n");
    std::string text = ToLocal(wide);
    for (const auto& [name, codes] : data.instructions)
        text += "    " + name + " (" + Join(codes) + ")\n";
    return text + "\n";
}

std::string FormatIdcodes(const OmBsdlData& data) {
    const std::vector<std::string>& patterns = data.GetIdcodes();
    if (patterns.empty())
        return ToLocal(Translated("Device ID codes: n/a\n\n"));
    if (patterns.size() == 1)
        return ToLocal(Translated("Device ID code: ")) + patterns.front() + "\n\n";
    std::string text = ToLocal(Translated("Device ID codes:\n"));
    for (const std::string& pattern : patterns)
        text += "    " + pattern + "\n";
    return text + "\n";
}

const char* FormatFunction(OmBsdlCellFunction function) {
    const auto index = static_cast<size_t>(function);
    return index < std::size(kFunctionColumn) ? kFunctionColumn[index] : kErrorMark;
}

const char* FormatSafe(uint8_t safe) {
    return safe == 0 ? ", 0" : safe == 1 ? ", 1" : ", X";
}

std::string FormatDisable(const OmBsdlCell& cell) {
    if (cell.ControlCell < 0)
        return {};
    const char* value = cell.DisableValue == 0 ? "0, " : cell.DisableValue == 1 ? "1, " : "";
    return OmFormat(", %3d, ", cell.ControlCell) + value + cell.DisableResult;
}

std::string FormatCell(size_t number, const OmBsdlCell& cell) {
    return OmFormat("%5u (%s, %6s, ", static_cast<unsigned>(number), cell.Cell.c_str(),
                    cell.Port.c_str()) +
           FormatFunction(cell.Function) + FormatSafe(cell.Safe) + FormatDisable(cell) + ")\n";
}

std::string FormatCells(const OmBsdlData& data) {
    std::string text = ToLocal(TranslatedFormat("Boundary-scan register length: %u bits\n\n",
                                                static_cast<unsigned>(data.GetBoundaryLength())));
    if (data.cells.empty())
        return text + ToLocal(Translated("Boundary-scan register cells: n/a\n"));
    text += ToLocal(Translated("Boundary-scan register cells:\n"));
    for (size_t number = 0; number < data.cells.size(); ++number)
        for (const OmBsdlCell& cell : data.cells[number])
            text += FormatCell(number, cell);
    return text;
}

} // namespace

std::string FormatBsdlReport(const OmBsdlData& data) {
    return ToLocal(Translated("Device name: ")) + data.entity + "\n\n" + FormatPorts(data) +
           FormatPinMappings(data) + FormatInstructions(data) + FormatIdcodes(data) +
           FormatCells(data);
}
