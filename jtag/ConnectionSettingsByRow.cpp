// The record of the settings by the rows of the table, which is made of its members.
#include "jtag/ConnectionSettings.h"

#include "jtag/CableTable.h"
#include "jtag/LptPorts.h"
#include "platform/Text.h"

#include <algorithm>
#include <limits>
#include <variant>
#include <vector>
#include <wx/confbase.h>

namespace {

using Settings = OmConnectionSettings;
using SettingList = std::vector<const OmSetting*>;

constexpr OmSetting kCableType{.key = "/ConnCableType",
                               .member = &Settings::cableType,
                               .lowest = 0,
                               .highest = kCableTypeCount - 1};

void AddSettings(const OmCableRow& row, SettingList& list) {
    for (const OmSetting& setting : row.settings)
        if (std::ranges::find(list, &setting) == list.end())
            list.push_back(&setting);
}

bool IsNumber(const OmSetting* setting) {
    return !std::holds_alternative<std::string Settings::*>(setting->member) &&
           !std::holds_alternative<std::wstring Settings::*>(setting->member);
}

// By the values of the types, numbers ahead of texts; only the place of an old name ahead of the
// present one matters.
SettingList MakeReadOrder() {
    SettingList list{&kCableType};
    for (int32_t type = 0; type < kCableTypeCount; ++type)
        AddSettings(*FindCableRow(static_cast<OmCableType>(type)), list);
    std::ranges::stable_partition(list, IsNumber);
    return list;
}

const SettingList& GetReadOrder() {
    static const SettingList list = MakeReadOrder();
    return list;
}

// As the rows stand: a settings file that is a text keeps the order of its lines from version to
// version, so that two of them can be compared.
SettingList MakeWriteOrder() {
    SettingList list{&kCableType};
    for (const OmCableRow& row : GetCableRows())
        AddSettings(row, list);
    return list;
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

bool IsInRange(const OmSetting& setting, const Settings& settings) {
    if (const auto* number = setting.Get<int32_t>(settings))
        return setting.Allows(*number);
    if (const auto* type = setting.Get<OmCableType>(settings))
        return setting.Allows(static_cast<int32_t>(*type));
    return true;
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

// Each read falls back on what the record holds: the present name wins over the old one.
void ReadSetting(const wxConfigBase& config, const OmSetting& setting, Settings& settings) {
    std::visit(
        [&](auto member) {
            if (setting.oldKey)
                Read(config, setting.oldKey, settings.*member);
            Read(config, setting.key, settings.*member);
        },
        setting.member);
}

void ReadSettings(Settings& settings) {
    wxConfigBase* config = wxConfigBase::Get();
    if (!config)
        return;
    const WithoutExpansion literally(*config);
    for (const OmSetting* setting : GetReadOrder())
        ReadSetting(*config, *setting, settings);
}

bool AreEqual(const OmSetting& setting, const Settings& one, const Settings& other) {
    return std::visit([&](auto member) { return one.*member == other.*member; }, setting.member);
}

} // namespace

void OmConnectionSettings::ResetToDefaults() {
    *this = OmConnectionSettings();
}

bool OmConnectionSettings::IsValid() const {
    return std::ranges::all_of(
        GetReadOrder(), [this](const OmSetting* setting) { return IsInRange(*setting, *this); });
}

bool OmConnectionSettings::SameConnection(const OmConnectionSettings& other) const {
    const OmCableRow* row = FindCableRow(cableType);
    if (cableType != other.cableType || !row)
        return cableType == other.cableType;
    return std::ranges::all_of(
        row->settings, [&](const OmSetting& setting) { return AreEqual(setting, *this, other); });
}

void OmConnectionSettings::FixLptPort() {
    const OmCableRow* row = FindCableRow(cableType);
    if (!row || !row->Find(OmSettingRole::ParallelPort))
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
    ReadSettings(settings);
    if (!settings.IsValid())
        settings.ResetToDefaults();
    settings.FixLptPort();
}

void SaveConnectionSettings(const OmConnectionSettings& settings) {
    wxConfigBase* config = wxConfigBase::Get();
    if (!config)
        return;
    // The store reports a failed write itself, when it is flushed.
    for (const OmSetting* setting : MakeWriteOrder())
        std::visit([&](auto member) { Write(*config, setting->key, settings.*member); },
                   setting->member);
}
