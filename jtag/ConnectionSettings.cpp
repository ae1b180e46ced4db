#include "jtag/ConnectionSettings.h"

#include "jtag/LptPorts.h"
#include "platform/Text.h"

#include <algorithm>
#include <limits>
#include <span>
#include <variant>
#include <wx/confbase.h>

namespace {

using Settings = OmConnectionSettings;
using Member =
    std::variant<OmCableType Settings::*, int32_t Settings::*, bool Settings::*,
                 uint16_t Settings::*, std::string Settings::*, std::wstring Settings::*>;

// One value of the record and its place in the store.
struct Field {
    const char* key;
    Member member;
    int32_t lowest = std::numeric_limits<int32_t>::min();
    int32_t highest = std::numeric_limits<int32_t>::max();
};

constexpr Field kCableType{"/ConnCableType", &Settings::cableType, 0, kCableTypeCount - 1};
constexpr Field kLptPort{"/ConnLptPort", &Settings::lptPort, 0, 2};
constexpr Field kLptFrequency{"/ConnLptFreq", &Settings::lptFrequency, 1000, 200000};
constexpr Field kDigilentId{"/ConnDigilentID", &Settings::digilentId};
constexpr Field kFtd2xxDescription{"/ConnFtd2xxDesc", &Settings::ftd2xxDescription};
// The name of older versions for the description; read, never written.
constexpr Field kFtd2xxOldDescription{"/ConnFtd2xxID", &Settings::ftd2xxDescription};
constexpr Field kFtd2xxSerial{"/ConnFtd2xxSerial", &Settings::ftd2xxSerial};
constexpr Field kFtd2xxFrequency{"/ConnFtd2xxFreq", &Settings::ftd2xxFrequency, 1000, 30000000};
constexpr Field kFtd2xxAdaptive{"/ConnFtd2xxAdaptiveClocking", &Settings::ftd2xxAdaptiveClocking};
constexpr Field kFtd2xxGpioDir{"/ConnFtd2xxGpioDir", &Settings::ftd2xxGpioDir};
constexpr Field kFtd2xxGpioValue{"/ConnFtd2xxGpioValue", &Settings::ftd2xxGpioValue};
constexpr Field kFtd2xxScheme{"/ConnFtd2xxGpioSchemeDesc", &Settings::ftd2xxGpioSchemeDesc};
constexpr Field kJLinkUsbNumber{"/ConnJLinkUsbNum", &Settings::jlinkUsbNumber, 0, 3};
constexpr Field kJLinkUsbFrequency{"/ConnJLinkUsbFreq", &Settings::jlinkUsbFrequency, 1000,
                                   12000000};
constexpr Field kJLinkIpHost{"/ConnJLinkIPHost", &Settings::jlinkIpHost};
constexpr Field kJLinkIpPort{"/ConnJLinkIPPort", &Settings::jlinkIpPort, 0, 65535};
constexpr Field kJLinkIpFrequency{"/ConnJLinkIPFreq", &Settings::jlinkIpFrequency, 1000, 12000000};
constexpr Field kUsbBlasterDescription{"/ConnUsbBlasterDesc", &Settings::usbBlasterDescription};
constexpr Field kUsbBlasterSerial{"/ConnUsbBlasterSerial", &Settings::usbBlasterSerial};

// Each read falls back on what the record holds, so that the old name of a value must come before
// the present one.
constexpr const Field* kReadOrder[] = {
    &kCableType,
    &kLptPort,
    &kLptFrequency,
    &kFtd2xxFrequency,
    &kFtd2xxAdaptive,
    &kFtd2xxGpioDir,
    &kFtd2xxGpioValue,
    &kJLinkUsbNumber,
    &kJLinkUsbFrequency,
    &kJLinkIpPort,
    &kJLinkIpFrequency,
    &kDigilentId,
    &kFtd2xxOldDescription,
    &kFtd2xxDescription,
    &kFtd2xxSerial,
    &kFtd2xxScheme,
    &kJLinkIpHost,
    &kUsbBlasterDescription,
    &kUsbBlasterSerial,
};

constexpr const Field* kWriteOrder[] = {
    &kCableType,
    &kLptPort,
    &kLptFrequency,
    &kFtd2xxDescription,
    &kFtd2xxSerial,
    &kFtd2xxFrequency,
    &kFtd2xxAdaptive,
    &kFtd2xxGpioDir,
    &kFtd2xxGpioValue,
    &kFtd2xxScheme,
    &kDigilentId,
    &kJLinkUsbNumber,
    &kJLinkUsbFrequency,
    &kJLinkIpHost,
    &kJLinkIpPort,
    &kJLinkIpFrequency,
    &kUsbBlasterDescription,
    &kUsbBlasterSerial,
};

// What decides about the connection, for each kind of cable.
constexpr const Field* kParallelFields[] = {&kLptPort, &kLptFrequency};
constexpr const Field* kDigilentFields[] = {&kDigilentId};
constexpr const Field* kFtd2xxFields[] = {&kFtd2xxDescription, &kFtd2xxSerial,  &kFtd2xxAdaptive,
                                          &kFtd2xxFrequency,   &kFtd2xxGpioDir, &kFtd2xxGpioValue,
                                          &kFtd2xxScheme};
constexpr const Field* kJLinkUsbFields[] = {&kJLinkUsbNumber, &kJLinkUsbFrequency};
constexpr const Field* kJLinkIpFields[] = {&kJLinkIpHost, &kJLinkIpPort, &kJLinkIpFrequency};
constexpr const Field* kUsbBlasterFields[] = {&kUsbBlasterDescription, &kUsbBlasterSerial};

std::span<const Field* const> RelevantFields(OmCableType type) {
    switch (type) {
    case OmCableType::XilinxParallelCable3:
    case OmCableType::AlteraByteBlasterMV:
    case OmCableType::LatticeParallelIspDownload:
    case OmCableType::Wiggler:
    case OmCableType::EmbestEasyIce:
        return kParallelFields;
    case OmCableType::DigilentAdept:
        return kDigilentFields;
    case OmCableType::Ftd2xx:
        return kFtd2xxFields;
    case OmCableType::JLinkUsb:
        return kJLinkUsbFields;
    case OmCableType::JLinkIp:
        return kJLinkIpFields;
    case OmCableType::AlteraUsbBlaster:
        return kUsbBlasterFields;
    }
    return {};
}

// A number that the member cannot hold becomes one that no range allows.
int32_t Saturate(long number) {
    return static_cast<int32_t>(std::clamp<long>(number, std::numeric_limits<int32_t>::min(),
                                                 std::numeric_limits<int32_t>::max()));
}

long ReadNumber(const wxConfigBase& config, const char* key, long fallback) {
    return config.ReadLong(key, fallback);
}

void Read(const wxConfigBase& config, const char* key, OmCableType& value) {
    value =
        static_cast<OmCableType>(Saturate(ReadNumber(config, key, static_cast<int32_t>(value))));
}

void Read(const wxConfigBase& config, const char* key, int32_t& value) {
    value = Saturate(ReadNumber(config, key, value));
}

void Read(const wxConfigBase& config, const char* key, bool& value) {
    value = ReadNumber(config, key, value ? 1 : 0) != 0;
}

void Read(const wxConfigBase& config, const char* key, uint16_t& value) {
    value = static_cast<uint16_t>(ReadNumber(config, key, value));
}

void Read(const wxConfigBase& config, const char* key, std::wstring& value) {
    value = config.Read(key, wxString(value)).ToStdWstring();
}

void Read(const wxConfigBase& config, const char* key, std::string& value) {
    value = ToLocal(config.Read(key, wxString(FromLocal(value))).ToStdWstring());
}

bool Write(wxConfigBase& config, const char* key, const std::wstring& value) {
    return config.Write(key, wxString(value));
}

bool Write(wxConfigBase& config, const char* key, const std::string& value) {
    return config.Write(key, wxString(FromLocal(value)));
}

template <typename Number>
bool Write(wxConfigBase& config, const char* key, Number value) {
    return config.Write(key, static_cast<long>(value));
}

bool IsInRange(const Field& field, const Settings& settings) {
    const auto inRange = [&field](int32_t value) {
        return value >= field.lowest && value <= field.highest;
    };
    if (const auto* number = std::get_if<int32_t Settings::*>(&field.member))
        return inRange(settings.*(*number));
    if (const auto* type = std::get_if<OmCableType Settings::*>(&field.member))
        return inRange(static_cast<int32_t>(settings.*(*type)));
    return true;
}

bool IsParallel(OmCableType type) {
    return RelevantFields(type).data() == kParallelFields;
}

// A device's name may hold characters that the store would take for an environment variable.
class WithoutExpansion {
  public:
    explicit WithoutExpansion(wxConfigBase& config)
        : config_(config), before_(config.IsExpandingEnvVars()) {
        config_.SetExpandEnvVars(false);
    }

    ~WithoutExpansion() { config_.SetExpandEnvVars(before_); }

    WithoutExpansion(const WithoutExpansion&) = delete;
    WithoutExpansion& operator=(const WithoutExpansion&) = delete;

  private:
    wxConfigBase& config_;
    bool before_;
};

void ReadFields(Settings& settings) {
    wxConfigBase* config = wxConfigBase::Get();
    if (!config)
        return;
    const WithoutExpansion literally(*config);
    for (const Field* field : kReadOrder)
        std::visit([&](auto member) { Read(*config, field->key, settings.*member); },
                   field->member);
}

} // namespace

void OmConnectionSettings::ResetToDefaults() {
    *this = OmConnectionSettings();
}

bool OmConnectionSettings::IsValid() const {
    return std::all_of(std::begin(kReadOrder), std::end(kReadOrder),
                       [this](const Field* field) { return IsInRange(*field, *this); });
}

bool OmConnectionSettings::SameConnection(const OmConnectionSettings& other) const {
    if (cableType != other.cableType)
        return false;
    const auto fields = RelevantFields(cableType);
    return std::all_of(fields.begin(), fields.end(), [&](const Field* field) {
        return std::visit([&](auto member) { return this->*member == other.*member; },
                          field->member);
    });
}

void OmConnectionSettings::FixLptPort() {
    if (!IsParallel(cableType))
        return;
    uint16_t addresses[3] = {};
    if (!GetLptAddresses(&addresses[0], &addresses[1], &addresses[2]))
        std::fill(std::begin(addresses), std::end(addresses), uint16_t{0});
    if (lptPort < 0 || lptPort > 2 || addresses[lptPort] != 0)
        return;
    const auto* lowest = std::find_if(std::begin(addresses), std::end(addresses),
                                      [](uint16_t address) { return address != 0; });
    lptPort = lowest == std::end(addresses) ? 0 : static_cast<int32_t>(lowest - addresses);
}

void LoadConnectionSettings(OmConnectionSettings& settings) {
    settings.ResetToDefaults();
    ReadFields(settings);
    if (!settings.IsValid())
        settings.ResetToDefaults();
    settings.FixLptPort();
}

void SaveConnectionSettings(const OmConnectionSettings& settings) {
    wxConfigBase* config = wxConfigBase::Get();
    if (!config)
        return;
    // The store reports a failed write itself, when it is flushed.
    for (const Field* field : kWriteOrder)
        std::visit([&](auto member) { Write(*config, field->key, settings.*member); },
                   field->member);
}
