#include "bsdl/BsdlData.h"

#include "bsdl/NumberText.h"
#include "platform/Letters.h"

#include <algorithm>

namespace {

// Far above any real device (the largest have some 10,000 cells), far below what would hurt: a
// register length beyond it is a damaged or hostile file and counts as unknown.
constexpr uint32_t kMaxRegisterLength = 1000000;

constexpr const char* kFunctionNames[] = {"INPUT",   "OUTPUT2",  "OUTPUT3",
                                          "CONTROL", "CONTROLR", "INTERNAL",
                                          "CLOCK",   "BIDIR",    "OBSERVE_ONLY"};

constexpr const char* kDirectionNames[] = {"in", "out", "buffer", "inout", "linkage"};

std::optional<uint8_t> ReadBinaryDigit(std::string_view text) {
    if (text == "0" || text == "1")
        return static_cast<uint8_t>(text == "1");
    return std::nullopt;
}

std::optional<uint8_t> ReadSafe(std::string_view text) {
    return EqualsIgnoringCase(text, "X") ? kBitUnknown : ReadBinaryDigit(text);
}

std::optional<uint8_t> ReadDisableValue(std::string_view text) {
    return text.empty() ? kBitUnknown : ReadBinaryDigit(text);
}

// The number of a cell below `count`.
std::optional<int32_t> ReadCellNumber(std::string_view text, size_t count) {
    const auto number = ReadLeadingNumber<int32_t>(text);
    if (!number || *number < 0 || static_cast<size_t>(*number) >= count)
        return std::nullopt;
    return number;
}

std::optional<int32_t> ReadControlCell(std::string_view text, size_t count) {
    return text.empty() ? -1 : ReadCellNumber(text, count);
}

bool IsEntityAttribute(const OmBsdlAttribute& attribute, std::string_view name,
                       std::string_view entity) {
    return EqualsIgnoringCase(attribute.Name, name) &&
           EqualsIgnoringCase(attribute.Entity, entity) &&
           EqualsIgnoringCase(attribute.Class, "entity");
}

} // namespace

const char* GetCellFunctionName(OmBsdlCellFunction function) {
    return kFunctionNames[static_cast<size_t>(function)];
}

std::optional<OmBsdlCellFunction> FindCellFunction(std::string_view name) {
    const auto* found = std::ranges::find_if(kFunctionNames, [name](const char* candidate) {
        return EqualsIgnoringCase(name, candidate);
    });
    if (found == std::end(kFunctionNames))
        return std::nullopt;
    return static_cast<OmBsdlCellFunction>(found - kFunctionNames);
}

const char* GetPortDirectionName(OmBsdlPortDirection direction) {
    if (direction == OmBsdlPortDirection::Undefined)
        return nullptr;
    return kDirectionNames[static_cast<size_t>(direction)];
}

void OmBsdlData::AddAttribute(const std::string& name, const std::string& target,
                              const std::string& targetClass, const std::string& value) {
    attributes.push_back({name, target, targetClass, value});
    if (!cells.empty() || !IsEntityAttribute(attributes.back(), "BOUNDARY_LENGTH", entity))
        return;
    const auto length = ReadLeadingNumber<uint32_t>(value);
    if (length && *length >= 1 && *length <= kMaxRegisterLength)
        cells.assign(*length, {});
}

int OmBsdlData::GetInstructionLength() const {
    if (entity.empty())
        return -1;
    const auto found = std::ranges::find_if(attributes, [this](const OmBsdlAttribute& attribute) {
        return IsEntityAttribute(attribute, "INSTRUCTION_LENGTH", entity);
    });
    if (found == attributes.end())
        return -1;
    const auto length = ReadLeadingNumber<uint32_t>(found->Value);
    const bool usable = length && *length >= 2 && *length <= kMaxRegisterLength;
    return usable ? static_cast<int>(*length) : -1;
}

void OmBsdlData::AddPort(const std::string& name, std::string_view direction, int i1, int i2) {
    const auto* found = std::ranges::find_if(kDirectionNames, [direction](const char* candidate) {
        return EqualsIgnoringCase(direction, candidate);
    });
    // One past the last name is Undefined.
    ports.push_back({name, static_cast<OmBsdlPortDirection>(found - kDirectionNames), i1, i2});
}

void OmBsdlData::AddPinMapEntry(const std::string& mapping, const std::string& port, int index,
                                const std::string& pin) {
    pinMappings[mapping].push_back({port, index, pin});
}

std::vector<std::string> OmBsdlData::GetPinMappingNames() const {
    std::vector<std::string> names;
    names.reserve(pinMappings.size());
    for (const auto& [name, entries] : pinMappings)
        names.push_back(name);
    return names;
}

const OmBsdlData::PinMapping* OmBsdlData::FindPinMapping(const std::string& name) const {
    const auto found = pinMappings.find(name);
    return found == pinMappings.end() ? nullptr : &found->second;
}

void OmBsdlData::SetDefaultPinMapping(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    const size_t last = text.find_last_not_of(" \t");
    defaultPinMapping =
        first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

const char* OmBsdlData::GetDefaultPinMapping() const {
    return defaultPinMapping.empty() ? nullptr : defaultPinMapping.c_str();
}

void OmBsdlData::AddInstructionCode(const std::string& name, const std::string& code) {
    const std::string upperName = UpperCased(name);
    std::vector<std::string>& codes = instructions[upperName];
    if (knownCodes_.emplace(upperName, code).second)
        codes.push_back(code);
}

std::vector<std::string> OmBsdlData::GetInstructionCodes(const std::string& name) const {
    const auto found = instructions.find(UpperCased(name));
    return found == instructions.end() ? std::vector<std::string>() : found->second;
}

bool OmBsdlData::AddCell(const std::string& number, const std::string& cell,
                         const std::string& port, const std::string& function,
                         const std::string& safe, const std::string& controlCell,
                         const std::string& disableValue, const std::string& disableResult) {
    const auto index = ReadCellNumber(number, cells.size());
    const auto role = FindCellFunction(function);
    const auto safeBit = ReadSafe(safe);
    const auto control = ReadControlCell(controlCell, cells.size());
    const auto disableBit = ReadDisableValue(disableValue);
    if (!index || !role || !safeBit || !control || !disableBit)
        return false;
    cells[static_cast<size_t>(*index)].push_back(
        {UpperCased(cell), port, *role, *safeBit, *control, *disableBit, disableResult});
    return true;
}
