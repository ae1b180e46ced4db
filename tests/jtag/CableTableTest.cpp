#include "jtag/CableTable.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

// Whether the rows stand at 0, 1, 2 and so on.
void ExpectEveryPlaceOnce(unsigned OmCableRow::*place) {
    unsigned expected = 0;
    for (const OmCableRow* row : SortCableRows(place))
        EXPECT_EQ(row->*place, expected++) << row->label;
}

std::vector<std::string> KeysOf(const OmCableRow& row) {
    std::vector<std::string> keys;
    for (const OmSetting& setting : row.settings)
        keys.push_back(setting.key);
    return keys;
}

} // namespace

TEST(CableTable, EveryTypeHasARowThatIsWhole) {
    for (int type = 0; type < kCableTypeCount; ++type) {
        const OmCableRow* row = FindCableRow(static_cast<OmCableType>(type));
        ASSERT_NE(row, nullptr) << type;
        EXPECT_NE(std::string(row->label), "") << type;
        EXPECT_NE(std::wstring(row->logName), L"") << type;
        EXPECT_NE(std::string(row->consoleName), "") << type;
        EXPECT_FALSE(row->settings.empty()) << type;
        EXPECT_NE(row->open, nullptr) << type;
    }
    EXPECT_EQ(FindCableRow(static_cast<OmCableType>(kCableTypeCount)), nullptr);
    EXPECT_EQ(FindCableRow(static_cast<OmCableType>(-1)), nullptr);
}

TEST(CableTable, NamesAndPlacesAreGivenOnce) {
    std::set<std::string> labels;
    std::set<std::string> consoleNames;
    for (const OmCableRow& row : GetCableRows()) {
        EXPECT_TRUE(labels.insert(row.label).second) << row.label;
        EXPECT_TRUE(consoleNames.insert(row.consoleName).second) << row.consoleName;
    }
    ExpectEveryPlaceOnce(&OmCableRow::windowPlace);
    ExpectEveryPlaceOnce(&OmCableRow::consolePlace);
}

TEST(CableTable, KeysAreSharedOnlyByWholeSetsOfSettings) {
    std::set<std::string> seen;
    std::vector<std::string> previous;
    for (const OmCableRow& row : GetCableRows()) {
        const std::vector<std::string> keys = KeysOf(row);
        for (const std::string& key : keys) {
            EXPECT_TRUE(keys == previous || !seen.contains(key)) << key;
            seen.insert(key);
        }
        previous = keys;
    }
}

TEST(CableTable, DefaultsAreWithinTheRangesOfEverySetting) {
    const OmConnectionSettings defaults;
    for (const OmCableRow& row : GetCableRows())
        for (const OmSetting& setting : row.settings) {
            EXPECT_LE(setting.lowest, setting.highest) << setting.key;
            const int32_t* number = setting.Get<int32_t>(defaults);
            EXPECT_TRUE(!number || setting.Allows(*number)) << setting.key;
        }
}

// The console finds a device by what the list gives, and a window shows it so.
TEST(CableTable, EveryCableThatListsDevicesKeepsTheirName) {
    for (const OmCableRow& row : GetCableRows()) {
        EXPECT_EQ(row.list != nullptr, row.Find(OmSettingRole::Serial) != nullptr) << row.label;
        EXPECT_TRUE(row.list || !row.Find(OmSettingRole::Description)) << row.label;
    }
}

// Whoever asks for a setting by its role takes it for a value of that type.
template <typename Value>
void ExpectType(const OmCableRow& row, std::initializer_list<OmSettingRole> roles) {
    const OmConnectionSettings settings;
    for (const OmSettingRole role : roles) {
        const OmSetting* setting = row.Find(role);
        EXPECT_TRUE(!setting || setting->Get<Value>(settings)) << row.label;
    }
}

TEST(CableTable, RolesHaveTheirTypes) {
    using Role = OmSettingRole;
    for (const OmCableRow& row : GetCableRows()) {
        ExpectType<std::string>(row, {Role::Description, Role::Serial, Role::Host});
        ExpectType<int32_t>(row,
                            {Role::Frequency, Role::Number, Role::ParallelPort, Role::TcpPort});
        ExpectType<bool>(row, {Role::AdaptiveClocking});
        EXPECT_EQ(row.Find(Role::Host) != nullptr, row.Find(Role::TcpPort) != nullptr) << row.label;
    }
}
