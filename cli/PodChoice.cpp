#include "cli/PodChoice.h"

#include "cli/Commands.h"
#include "cli/Connection.h"
#include "jtag/DigilentAdept.h"
#include "jtag/Ftd2xx.h"
#include "jtag/UsbBlaster.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

struct Pod {
    std::string description;
    std::string serial;
};

using Pods = std::optional<std::vector<Pod>>; // nothing without the vendor's library

template <typename Cable, typename Record>
Pods ListD2xxPods() {
    Cable cable;
    if (!cable.Load())
        return std::nullopt;
    std::vector<Record> records;
    cable.ListDevices(records);
    std::vector<Pod> pods;
    pods.reserve(records.size());
    for (const Record& record : records)
        pods.push_back({record.description, record.serial});
    return pods;
}

// The name under which a pod is configured stands for its serial number.
Pods ListDigilentPods() {
    OmDigilentAdept cable;
    if (!cable.Load())
        return std::nullopt;
    std::vector<Pod> pods;
    for (int index = 0; index < cable.GetDeviceCount(); ++index) {
        std::string name;
        if (cable.GetDeviceName(index, name))
            pods.push_back({"", name});
    }
    return pods;
}

// A kind of pod that can be told from others of its kind.
struct Kind {
    OmCableType type;
    Pods (*list)();
    std::string OmConnectionSettings::*description; // null if it has none
    std::string OmConnectionSettings::*serial;
};

using Settings = OmConnectionSettings;

constexpr Kind kKinds[] = {
    {OmCableType::Ftd2xx, ListD2xxPods<OmFtd2xx, OmFtd2xxRecord>, &Settings::ftd2xxDescription,
     &Settings::ftd2xxSerial},
    {OmCableType::AlteraUsbBlaster, ListD2xxPods<OmUsbBlaster, OmUsbBlasterRecord>,
     &Settings::usbBlasterDescription, &Settings::usbBlasterSerial},
    {OmCableType::DigilentAdept, ListDigilentPods, nullptr, &Settings::digilentId},
};

bool IsMeant(const Pod& pod, const OmConnectionChoice& choice) {
    return pod.serial == choice.serial.value_or(pod.serial) &&
           pod.description == choice.description.value_or(pod.description);
}

std::string Describe(const Pod& pod) {
    return pod.description.empty() ? pod.serial : pod.description + " (" + pod.serial + ")";
}

std::string DescribeAll(const std::vector<Pod>& pods) {
    std::string text;
    for (const Pod& pod : pods)
        text += (text.empty() ? "" : ", ") + Describe(pod);
    return text.empty() ? "none" : text;
}

bool FailToFind(const OmConnectionChoice& choice, OmCableType type, const std::vector<Pod>& pods) {
    const Pod wanted{choice.description.value_or(""), choice.serial.value_or("")};
    return Fail(
        FromLocal("There is no " + GetCableName(type) + " '" +
                  (choice.serial && choice.description ? Describe(wanted)
                                                       : wanted.description + wanted.serial) +
                  "'. Connected: " + DescribeAll(pods) + "."));
}

// Without an option the pod of the settings is meant. Only a Digilent pod must have been chosen
// once: the first will do.
bool NeedsChoice(const Kind& kind, const OmConnectionChoice& choice, const Settings& settings) {
    return choice.serial || choice.description ||
           (!kind.description && (settings.*kind.serial).empty());
}

} // namespace

bool ChoosePod(const OmConnectionChoice& choice, OmConnectionSettings& settings) {
    const auto* kind = std::ranges::find(kKinds, settings.cableType, &Kind::type);
    if (kind == std::end(kKinds) || !NeedsChoice(*kind, choice, settings))
        return true;
    const Pods pods = kind->list();
    if (!pods)
        return true; // why the library is not there shows when the cable opens
    const auto pod =
        std::ranges::find_if(*pods, [&](const Pod& each) { return IsMeant(each, choice); });
    if (pod == pods->end())
        return FailToFind(choice, kind->type, *pods);
    if (kind->description)
        settings.*kind->description = pod->description;
    settings.*kind->serial = pod->serial;
    return true;
}
