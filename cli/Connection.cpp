#include "cli/Connection.h"

#include <algorithm>
#include <charconv>

namespace {

using Settings = OmConnectionSettings;

// One row a cable. Null members: the cable has no such parameter.
struct CableRow {
    const char* name;
    OmCableType type;
    int32_t Settings::*frequency;
    std::string Settings::*serial;
    std::string Settings::*description;
    bool hasPort;
};

constexpr CableRow kCables[] = {
    {"ft2232", OmCableType::Ftd2xx, &Settings::ftd2xxFrequency, &Settings::ftd2xxSerial,
     &Settings::ftd2xxDescription, false},
    {"usb-blaster", OmCableType::AlteraUsbBlaster, nullptr, &Settings::usbBlasterSerial,
     &Settings::usbBlasterDescription, false},
    {"jlink", OmCableType::JLinkUsb, &Settings::jlinkUsbFrequency, nullptr, nullptr, false},
    {"jlink-ip", OmCableType::JLinkIp, &Settings::jlinkIpFrequency, nullptr, nullptr, false},
    {"digilent", OmCableType::DigilentAdept, nullptr, &Settings::digilentId, nullptr, false},
    {"xilinx3", OmCableType::XilinxParallelCable3, &Settings::lptFrequency, nullptr, nullptr, true},
    {"byteblaster", OmCableType::AlteraByteBlasterMV, &Settings::lptFrequency, nullptr, nullptr,
     true},
    {"ispdownload", OmCableType::LatticeParallelIspDownload, &Settings::lptFrequency, nullptr,
     nullptr, true},
    {"wiggler", OmCableType::Wiggler, &Settings::lptFrequency, nullptr, nullptr, true},
    {"easyice", OmCableType::EmbestEasyIce, &Settings::lptFrequency, nullptr, nullptr, true},
};

const CableRow& FindRow(OmCableType type) {
    return *std::ranges::find(kCables, type, &CableRow::type);
}

// The number of a J-Link on USB stands for its serial number.
bool SetSerial(const CableRow& row, const std::string& serial, Settings& settings) {
    if (row.serial) {
        settings.*row.serial = serial;
        return true;
    }
    if (row.type != OmCableType::JLinkUsb)
        return false;
    const char* end = serial.data() + serial.size();
    const auto [stop, error] = std::from_chars(serial.data(), end, settings.jlinkUsbNumber);
    return error == std::errc{} && stop == end;
}

bool SetServer(const CableRow& row, const std::string& server, Settings& settings) {
    if (row.type != OmCableType::JLinkIp)
        return false;
    const size_t colon = server.rfind(':');
    settings.jlinkIpHost = server.substr(0, colon);
    if (colon == std::string::npos)
        return true;
    const char* end = server.data() + server.size();
    const auto [stop, error] =
        std::from_chars(server.data() + colon + 1, end, settings.jlinkIpPort);
    return error == std::errc{} && stop == end;
}

template <typename Value>
bool SetMember(Value Settings::*member, const Value& value, Settings& settings) {
    if (member)
        settings.*member = value;
    return member != nullptr;
}

bool SetAdaptiveClocking(const CableRow& row, bool adaptive, Settings& settings) {
    settings.ftd2xxAdaptiveClocking = adaptive;
    return row.type == OmCableType::Ftd2xx;
}

bool SetPort(const CableRow& row, int32_t port, Settings& settings) {
    settings.lptPort = port;
    return row.hasPort;
}

// The first option that does not suit the cable; empty if all do.
std::string FindUnsuitable(const CableRow& row, const OmConnectionChoice& choice,
                           Settings& settings) {
    if (choice.frequency && !SetMember(row.frequency, *choice.frequency, settings))
        return "--frequency";
    if (choice.serial && !SetSerial(row, *choice.serial, settings))
        return "--serial";
    if (choice.description && !SetMember(row.description, *choice.description, settings))
        return "--description";
    if (choice.server && !SetServer(row, *choice.server, settings))
        return "--server";
    if (choice.lptPort && !SetPort(row, *choice.lptPort, settings))
        return "--port";
    if (choice.adaptiveClocking && !SetAdaptiveClocking(row, *choice.adaptiveClocking, settings))
        return "--adaptive";
    return {};
}

} // namespace

std::optional<OmCableType> FindCable(const std::string& name) {
    const auto row = std::ranges::find(kCables, name, &CableRow::name);
    return row == std::end(kCables) ? std::nullopt : std::optional(row->type);
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
    const std::string option = FindUnsuitable(row, choice, settings);
    if (!option.empty())
        error = option + " does not suit the cable " + row.name;
    else if (!settings.IsValid())
        error = std::string("a value is out of range for the cable ") + row.name;
    return error.empty();
}
