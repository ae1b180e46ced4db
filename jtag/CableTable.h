// The table of cables, one row a type: what it is called, which settings lead to it, how its
// devices are listed and how it is opened. Settings, factory, settings panel and console go by the
// rows, so that none of them names a cable. The page of a type's settings stands in
// jtag/ui/CablePages.cpp.
#pragma once

#include "jtag/Cable.h"
#include "jtag/ConnectionSettings.h"
#include "platform/UsbBus.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

// What a setting means to those who know nothing of the cable: the console's options.
enum class OmSettingRole {
    Own, // of this cable alone
    Frequency,
    Description,
    Serial,
    Number, // that stands for a serial number
    ParallelPort,
    Host,
    TcpPort,
    AdaptiveClocking,
};

using OmSettingMember =
    std::variant<OmCableType OmConnectionSettings::*, int32_t OmConnectionSettings::*,
                 bool OmConnectionSettings::*, uint16_t OmConnectionSettings::*,
                 std::string OmConnectionSettings::*, std::wstring OmConnectionSettings::*>;

// One value of the settings and its place in the store.
struct OmSetting {
    const char* key;
    OmSettingMember member;
    OmSettingRole role = OmSettingRole::Own;
    int32_t lowest = std::numeric_limits<int32_t>::min(); // of a 32-bit number
    int32_t highest = std::numeric_limits<int32_t>::max();
    const char* oldKey = nullptr; // of older versions: read where `key` is missing, never written

    constexpr bool Allows(int32_t value) const { return value >= lowest && value <= highest; }

    // The value itself, null if it is of another type.
    template <typename Value>
    Value* Get(OmConnectionSettings& settings) const {
        const auto* found = std::get_if<Value OmConnectionSettings::*>(&member);
        return found ? &(settings.*(*found)) : nullptr;
    }

    template <typename Value>
    const Value* Get(const OmConnectionSettings& settings) const {
        const auto* found = std::get_if<Value OmConnectionSettings::*>(&member);
        return found ? &(settings.*(*found)) : nullptr;
    }
};

// A device that can be plugged in, as its library names it.
struct OmListedDevice {
    std::string description; // empty if devices have none
    std::string serial;      // or the name that stands for it
};

using OmListedDevices = std::optional<std::vector<OmListedDevice>>; // nothing without the library

struct OmCableRow {
    OmCableType type;
    const char* label;       // in the window, for translation
    const wchar_t* logName;  // in the connection log
    const char* consoleName; // as it is typed
    unsigned windowPlace;    // in the list of the window; what is most in use comes first
    unsigned consolePlace;   // in the console's list
    std::span<const OmSetting> settings; // all that decides about the connection
    std::unique_ptr<OmCable> (*open)(OmConnectionSettings&); // null on failure
    OmListedDevices (*list)();                               // null if devices have no names
    // For telling why a connection fails: the library's names, any of which will do, and the USB
    // identifiers of its devices, with 0 for any product of that vendor.
    std::span<const char* const> libraries = {};
    std::span<const OmUsbId> usbIds = {};
    bool driverHinders = false; // a kernel driver that holds a device keeps the library from it

    // The setting of that role, null if the cable has none.
    const OmSetting* Find(OmSettingRole role) const;
};

// All rows, in the order in which settings are written. Types that share their settings stand side
// by side.
std::span<const OmCableRow> GetCableRows();

// Null for a type out of range.
const OmCableRow* FindCableRow(OmCableType type);

// The setting of that role of a cable that is known to have it.
const OmSetting& GetSetting(OmCableType type, OmSettingRole role);

// All rows by a place of theirs.
std::vector<const OmCableRow*> SortCableRows(unsigned OmCableRow::*place);
