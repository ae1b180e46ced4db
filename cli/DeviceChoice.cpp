#include "cli/DeviceChoice.h"

#include "cli/Commands.h"
#include "cli/Connection.h"
#include "jtag/CableTable.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

using Devices = std::vector<OmListedDevice>;
using Role = OmSettingRole;

bool IsMeant(const OmListedDevice& device, const OmConnectionChoice& choice) {
    return device.serial == choice.serial.value_or(device.serial) &&
           device.description == choice.description.value_or(device.description);
}

std::string Describe(const OmListedDevice& device) {
    return device.description.empty() ? device.serial
                                      : device.description + " (" + device.serial + ")";
}

std::string DescribeAll(const Devices& devices) {
    std::string text;
    for (const OmListedDevice& device : devices)
        text += (text.empty() ? "" : ", ") + Describe(device);
    return text.empty() ? "none" : text;
}

bool FailToFind(const OmConnectionChoice& choice, const OmCableRow& row, const Devices& devices) {
    const OmListedDevice wanted{choice.description.value_or(""), choice.serial.value_or("")};
    return Fail(
        FromLocal("There is no " + std::string(row.consoleName) + " '" +
                  (choice.serial && choice.description ? Describe(wanted)
                                                       : wanted.description + wanted.serial) +
                  "'. Connected: " + DescribeAll(devices) + "."));
}

// Without an option the device of the settings is meant. Only one that goes by a single name must
// have been chosen once: the first will do.
bool NeedsChoice(const OmCableRow& row, const OmConnectionChoice& choice,
                 const OmConnectionSettings& settings) {
    return choice.serial || choice.description ||
           (!row.Find(Role::Description) &&
            row.Find(Role::Serial)->Get<std::string>(settings)->empty());
}

void Take(const OmListedDevice& device, const OmCableRow& row, OmConnectionSettings& settings) {
    if (const OmSetting* description = row.Find(Role::Description))
        *description->Get<std::string>(settings) = device.description;
    *row.Find(Role::Serial)->Get<std::string>(settings) = device.serial;
}

} // namespace

bool ChooseDevice(const OmConnectionChoice& choice, OmConnectionSettings& settings) {
    const OmCableRow* row = FindCableRow(settings.cableType);
    if (!row || !row->list || !NeedsChoice(*row, choice, settings))
        return true;
    const OmListedDevices devices = row->list();
    if (!devices)
        return true; // why the library is not there shows when the cable opens
    const auto device = std::ranges::find_if(
        *devices, [&](const OmListedDevice& each) { return IsMeant(each, choice); });
    if (device == devices->end())
        return FailToFind(choice, *row, *devices);
    Take(*device, *row, settings);
    return true;
}
