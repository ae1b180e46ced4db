#include "cli/Connection.h"

#include "platform/Text.h"

#include <algorithm>
#include <charconv>

namespace {

using Settings = OmConnectionSettings;

// One row a cable. Null members: the cable has no such parameter.
struct CableRow {
    const char* name;
    OmCableType type;
    int32_t Settings::*frequency;
    int32_t highestFrequency; // Hz
    std::string Settings::*serial;
    std::string Settings::*description;
    bool hasPort;
};

constexpr int32_t kLowestFrequency = 1000; // Hz, for all that have one
constexpr int32_t kHighestJLinkNumber = 3;
constexpr int32_t kHighestTcpPort = 65535;

constexpr CableRow kCables[] = {
    {"ft2232", OmCableType::Ftd2xx, &Settings::ftd2xxFrequency, 30000000, &Settings::ftd2xxSerial,
     &Settings::ftd2xxDescription, false},
    {"usb-blaster", OmCableType::AlteraUsbBlaster, nullptr, 0, &Settings::usbBlasterSerial,
     &Settings::usbBlasterDescription, false},
    {"jlink", OmCableType::JLinkUsb, &Settings::jlinkUsbFrequency, 12000000, nullptr, nullptr,
     false},
    {"jlink-ip", OmCableType::JLinkIp, &Settings::jlinkIpFrequency, 12000000, nullptr, nullptr,
     false},
    {"digilent", OmCableType::DigilentAdept, nullptr, 0, &Settings::digilentId, nullptr, false},
    {"xilinx3", OmCableType::XilinxParallelCable3, &Settings::lptFrequency, 200000, nullptr,
     nullptr, true},
    {"byteblaster", OmCableType::AlteraByteBlasterMV, &Settings::lptFrequency, 200000, nullptr,
     nullptr, true},
    {"ispdownload", OmCableType::LatticeParallelIspDownload, &Settings::lptFrequency, 200000,
     nullptr, nullptr, true},
    {"wiggler", OmCableType::Wiggler, &Settings::lptFrequency, 200000, nullptr, nullptr, true},
    {"easyice", OmCableType::EmbestEasyIce, &Settings::lptFrequency, 200000, nullptr, nullptr,
     true},
};

const CableRow& FindRow(OmCableType type) {
    return *std::ranges::find(kCables, type, &CableRow::type);
}

template <typename Value>
bool SetMember(Value Settings::*member, const Value& value, Settings& settings) {
    if (member)
        settings.*member = value;
    return member != nullptr;
}

bool ParseNumber(std::string_view text, int32_t highest, int32_t& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end && number >= 0 && number <= highest;
}

// One option each: what is wrong with its value, if anything is; nullopt if the cable has no such
// option.
using Refusal = std::optional<std::string>;

Refusal SetFrequency(const CableRow& row, int32_t hertz, Settings& settings) {
    if (!SetMember(row.frequency, hertz, settings))
        return std::nullopt;
    if (hertz >= kLowestFrequency && hertz <= row.highestFrequency)
        return "";
    return OmFormat("the cable %s takes %d to %d Hz", row.name, kLowestFrequency,
                    row.highestFrequency);
}

// The number of a J-Link on USB stands for its serial number.
Refusal SetSerial(const CableRow& row, const std::string& serial, Settings& settings) {
    if (row.type == OmCableType::JLinkUsb)
        return ParseNumber(serial, kHighestJLinkNumber, settings.jlinkUsbNumber)
                   ? ""
                   : OmFormat("a jlink has a number from 0 to %d, not '%s'", kHighestJLinkNumber,
                              serial.c_str());
    return SetMember(row.serial, serial, settings) ? Refusal("") : std::nullopt;
}

Refusal SetDescription(const CableRow& row, const std::string& text, Settings& settings) {
    return SetMember(row.description, text, settings) ? Refusal("") : std::nullopt;
}

Refusal SetServer(const CableRow& row, const std::string& server, Settings& settings) {
    if (row.type != OmCableType::JLinkIp)
        return std::nullopt;
    const size_t colon = server.rfind(':');
    settings.jlinkIpHost = server.substr(0, colon);
    if (settings.jlinkIpHost.empty())
        return "'" + server + "' names no host";
    if (colon == std::string::npos || ParseNumber(std::string_view(server).substr(colon + 1),
                                                  kHighestTcpPort, settings.jlinkIpPort))
        return "";
    return "'" + server + "' does not end with the number of a port";
}

Refusal SetPort(const CableRow& row, int32_t port, Settings& settings) {
    settings.lptPort = port;
    return row.hasPort ? Refusal("") : std::nullopt;
}

Refusal SetAdaptiveClocking(const CableRow& row, bool adaptive, Settings& settings) {
    settings.ftd2xxAdaptiveClocking = adaptive;
    return row.type == OmCableType::Ftd2xx ? Refusal("") : std::nullopt;
}

// Puts in one option, if it was given; false with a text if it cannot be.
template <typename Value, typename Set>
bool ApplyOption(const char* option, const std::optional<Value>& value, Set set,
                 const CableRow& row, Settings& settings, std::string& error) {
    if (!value)
        return true;
    const Refusal refusal = set(row, *value, settings);
    if (!refusal)
        error = std::string(option) + " does not suit the cable " + row.name;
    else if (!refusal->empty())
        error = std::string(option) + ": " + *refusal;
    return error.empty();
}

} // namespace

std::optional<OmCableType> FindCable(const std::string& name) {
    const auto row = std::ranges::find(kCables, name, &CableRow::name);
    return row == std::end(kCables) ? std::nullopt : std::optional(row->type);
}

std::string GetCableName(OmCableType type) {
    return FindRow(type).name;
}

bool HasParallelPort(OmCableType type) {
    return FindRow(type).hasPort;
}

std::string ListCableNames() {
    std::string names;
    for (const CableRow& row : kCables)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

bool ApplyConnection(const OmConnectionChoice& choice, OmConnectionSettings& settings,
                     std::string& error) {
    if (choice.cable)
        settings.cableType = *choice.cable;
    const CableRow& row = FindRow(settings.cableType);
    const auto apply = [&](const char* option, const auto& value, auto set) {
        return ApplyOption(option, value, set, row, settings, error);
    };
    return apply("--frequency", choice.frequency, SetFrequency) &&
           apply("--serial", choice.serial, SetSerial) &&
           apply("--description", choice.description, SetDescription) &&
           apply("--server", choice.server, SetServer) &&
           apply("--port", choice.lptPort, SetPort) &&
           apply("--adaptive", choice.adaptiveClocking, SetAdaptiveClocking);
}
