#include "setup/PinConflicts.h"

#include "platform/Text.h"
#include "platform/Translation.h"
#include "setup/DevicePins.h"
#include "setup/SignalRows.h"

#include <algorithm>
#include <unordered_map>

namespace {

// Gathers the rows of each pin, in the order in which the pins come up.
class PinUsers {
  public:
    void AddSignal(const OmDevicePin& pin, int row) {
        if (pin.IsConnected())
            Get(pin).signalRows.push_back(row);
    }

    void AddStatic(const OmDevicePin& pin, int row) {
        if (pin.IsConnected())
            Get(pin).staticRows.push_back(row);
    }

    std::vector<OmPinConflict> TakeShared() {
        std::erase_if(users_, [](const OmPinConflict& user) {
            return user.signalRows.size() + user.staticRows.size() < 2;
        });
        return std::move(users_);
    }

  private:
    OmPinConflict& Get(const OmDevicePin& pin) {
        const std::string key =
            std::to_string(pin.Device) + ' ' + MakePinKey(pin.PortName, pin.PortIndex);
        const auto [place, isNew] = indexes_.try_emplace(key, users_.size());
        if (isNew)
            users_.emplace_back().pin = pin;
        return users_[place->second];
    }

    std::vector<OmPinConflict> users_;
    std::unordered_map<std::string, size_t> indexes_;
};

void Mark(std::vector<bool>& marks, const std::vector<int>& rows) {
    for (const int row : rows)
        marks[static_cast<size_t>(row)] = true;
}

std::vector<std::wstring> NameRows(const OmPinConflict& conflict) {
    std::vector<std::wstring> names;
    for (const int row : conflict.signalRows)
        names.push_back(GetSignalName(row));
    for (const int row : conflict.staticRows)
        names.push_back(TranslatedFormat("static pin %d", row + 1));
    return names;
}

std::wstring DescribeConflict(const OmPinConflict& conflict, const OmChainPins& pins) {
    const std::vector<std::wstring> names = NameRows(conflict);
    std::wstring list = names.front();
    for (size_t i = 1; i + 1 < names.size(); ++i)
        list += L", " + names[i];
    return TranslatedFormat("%ls and %ls are connected to the same pin, %ls.", list.c_str(),
                            names.back().c_str(), FormatFullPin(conflict.pin, pins).c_str());
}

} // namespace

OmPinConflicts FindPinConflicts(const OmFlashPins& pins) {
    PinUsers users;
    for (int row = 0; row < kSignalRowCount; ++row)
        users.AddSignal(GetSignalPin(pins, row), row);
    for (size_t row = 0; row < pins.staticPins.size(); ++row)
        users.AddStatic(pins.staticPins[row], static_cast<int>(row));
    OmPinConflicts found;
    found.conflicts = users.TakeShared();
    found.signals.resize(kSignalRowCount);
    found.statics.resize(pins.staticPins.size());
    for (const OmPinConflict& conflict : found.conflicts) {
        Mark(found.signals, conflict.signalRows);
        Mark(found.statics, conflict.staticRows);
    }
    return found;
}

std::wstring GetConflictError(const OmPinConflicts& conflicts) {
    const auto has = [&conflicts](auto condition) {
        return std::ranges::any_of(conflicts.conflicts, condition);
    };
    if (has([](const OmPinConflict& conflict) { return conflict.signalRows.size() > 1; }))
        return Translated(
            "Error: the same pin of a JTAG chain device is connected to more then one "
            "flash pin.");
    if (has([](const OmPinConflict& conflict) { return !conflict.signalRows.empty(); }))
        return Translated("Error: the same pin of a JTAG chain device appears in the both Signal "
                          "and Static pins lists.");
    return {};
}

std::wstring DescribeConflicts(const OmPinConflicts& conflicts, const OmChainPins& pins) {
    std::wstring text;
    for (const OmPinConflict& conflict : conflicts.conflicts) {
        if (!text.empty())
            text += L'\n';
        text += DescribeConflict(conflict, pins);
    }
    return text;
}

std::wstring FormatFullPin(const OmDevicePin& pin, const OmChainPins& pins) {
    return FormatDeviceName(pins.GetDevices(), pin.Device) + L' ' + pins.FormatPin(pin);
}
