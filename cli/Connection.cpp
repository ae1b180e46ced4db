#include "cli/Connection.h"

#include "jtag/CableTable.h"
#include "platform/Text.h"

#include <algorithm>
#include <charconv>

namespace {

using Settings = OmConnectionSettings;

using Role = OmSettingRole;

// The value that the cable keeps for that role, null if it has none.
template <typename Value>
Value* Find(const OmCableRow& row, Role role, Settings& settings) {
    const OmSetting* setting = row.Find(role);
    return setting ? setting->Get<Value>(settings) : nullptr;
}

bool ParseNumber(std::string_view text, const OmSetting& setting, Settings& settings) {
    int32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || !setting.Allows(number))
        return false;
    *setting.Get<int32_t>(settings) = number;
    return true;
}

// One option each: what is wrong with its value, if anything is; nullopt if the cable has no such
// option.
using Refusal = std::optional<std::string>;

template <typename Value>
Refusal SetValue(const OmCableRow& row, Role role, const Value& value, Settings& settings) {
    Value* place = Find<Value>(row, role, settings);
    if (!place)
        return std::nullopt;
    *place = value;
    return "";
}

Refusal SetFrequency(const OmCableRow& row, int32_t hertz, Settings& settings) {
    const OmSetting* frequency = row.Find(Role::Frequency);
    if (!frequency || frequency->Allows(hertz))
        return SetValue(row, Role::Frequency, hertz, settings);
    return OmFormat("the cable %s takes %d to %d Hz", row.consoleName, frequency->lowest,
                    frequency->highest);
}

// A number may stand for the serial number.
Refusal SetSerial(const OmCableRow& row, const std::string& serial, Settings& settings) {
    const OmSetting* number = row.Find(Role::Number);
    if (!number)
        return SetValue(row, Role::Serial, serial, settings);
    return ParseNumber(serial, *number, settings)
               ? ""
               : OmFormat("a %s has a number from %d to %d, not '%s'", row.consoleName,
                          number->lowest, number->highest, serial.c_str());
}

Refusal SetDescription(const OmCableRow& row, const std::string& text, Settings& settings) {
    return SetValue(row, Role::Description, text, settings);
}

Refusal SetServer(const OmCableRow& row, const std::string& server, Settings& settings) {
    const OmSetting* port = row.Find(Role::TcpPort);
    const size_t colon = server.rfind(':');
    const std::string host = server.substr(0, colon);
    if (!port || !SetValue(row, Role::Host, host, settings))
        return std::nullopt;
    if (host.empty())
        return "'" + server + "' names no host";
    if (colon == std::string::npos ||
        ParseNumber(std::string_view(server).substr(colon + 1), *port, settings))
        return "";
    return "'" + server + "' does not end with the number of a port";
}

Refusal SetPort(const OmCableRow& row, int32_t port, Settings& settings) {
    return SetValue(row, Role::ParallelPort, port, settings);
}

Refusal SetAdaptiveClocking(const OmCableRow& row, bool adaptive, Settings& settings) {
    return SetValue(row, Role::AdaptiveClocking, adaptive, settings);
}

// Puts in one option, if it was given; false with a text if it cannot be.
template <typename Value, typename Set>
bool ApplyOption(const char* option, const std::optional<Value>& value, Set set,
                 const OmCableRow& row, Settings& settings, std::string& error) {
    if (!value)
        return true;
    const Refusal refusal = set(row, *value, settings);
    if (!refusal)
        error = std::string(option) + " does not suit the cable " + row.consoleName;
    else if (!refusal->empty())
        error = std::string(option) + ": " + *refusal;
    return error.empty();
}

} // namespace

std::optional<OmCableType> FindCable(const std::string& name) {
    const auto rows = GetCableRows();
    const auto row = std::ranges::find(rows, name, &OmCableRow::consoleName);
    return row == rows.end() ? std::nullopt : std::optional(row->type);
}

std::string GetCableName(OmCableType type) {
    const OmCableRow* row = FindCableRow(type);
    return row ? row->consoleName : "";
}

bool HasParallelPort(OmCableType type) {
    const OmCableRow* row = FindCableRow(type);
    return row && row->Find(Role::ParallelPort);
}

std::string ListCableNames() {
    std::string names;
    for (const OmCableRow* row : SortCableRows(&OmCableRow::consolePlace))
        names += (names.empty() ? "" : ", ") + std::string(row->consoleName);
    return names;
}

std::string DescribeFrequency(const OmConnectionChoice& choice, uint32_t applied) {
    if (!choice.frequency || static_cast<uint32_t>(*choice.frequency) == applied)
        return {};
    return OmFormat("TCK runs at %u Hz; %d Hz were asked for.", applied, *choice.frequency);
}

bool ApplyConnection(const OmConnectionChoice& choice, OmConnectionSettings& settings,
                     std::string& error) {
    if (choice.cable)
        settings.cableType = *choice.cable;
    const OmCableRow* row = FindCableRow(settings.cableType);
    const auto apply = [&](const char* option, const auto& value, auto set) {
        return ApplyOption(option, value, set, *row, settings, error);
    };
    return row && apply("--frequency", choice.frequency, SetFrequency) &&
           apply("--serial", choice.serial, SetSerial) &&
           apply("--description", choice.description, SetDescription) &&
           apply("--server", choice.server, SetServer) &&
           apply("--port", choice.lptPort, SetPort) &&
           apply("--adaptive", choice.adaptiveClocking, SetAdaptiveClocking);
}
