#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "setup/DesignSetup.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace {

constexpr unsigned kNeedsFullPins = 1; // bit of the flags
constexpr int kLowDataBits = 8;        // of each chip: they carry commands, identifiers, status

constexpr const char* kErrorTitle = ForTranslation("Setup Integrity Check Error");
constexpr const char* kWarningTitle = ForTranslation("Setup Integrity Check Warning");

bool IsMissing(const std::vector<SignalPin>& pins, int index) {
    return static_cast<size_t>(index) >= pins.size() ||
           !pins[static_cast<size_t>(index)].IsConnected();
}

bool IsBusSelected(const OmFlashPins& pins) {
    return pins.ChipCount >= 1 && pins.WordSize >= 1;
}

// Width of the data bus over all chips; 0 while it is not selected.
int GetBusBits(const OmFlashPins& pins) {
    return IsBusSelected(pins) ? pins.ChipCount * pins.WordSize * 8 : 0;
}

bool IsLowDataBitMissing(const OmFlashPins& pins) {
    for (int bit = 0; bit < GetBusBits(pins); ++bit) {
        if (bit % (pins.WordSize * 8) < kLowDataBits && IsMissing(pins.dataPins, bit))
            return true;
    }
    return false;
}

bool IsAnyDataBitMissing(const OmFlashPins& pins) {
    for (int bit = 0; bit < GetBusBits(pins); ++bit) {
        if (IsMissing(pins.dataPins, bit))
            return true;
    }
    return false;
}

bool IsAnyAddressPinMissing(const OmFlashPins& pins) {
    return std::ranges::any_of(pins.addressPins,
                               [](const SignalPin& pin) { return !pin.IsConnected(); });
}

// Text of the first error that any action meets, empty for none.
std::wstring FindStructureError(const OmFlashPins& pins) {
    if (!IsBusSelected(pins))
        return Translated("Please select DATA bus organization.");
    if (pins.AddrCmdShift < 0)
        return Translated("Please select the maximum data width that a single chip is capable of.");
    if (pins.addressPins.empty())
        return Translated("Connections of flash address bus are not specified.");
    if (pins.dataPins.empty())
        return Translated("Connections of flash data bus are not specified.");
    return {};
}

// The same for an action that sends flash commands.
std::wstring FindCommandPinError(const OmFlashPins& pins) {
    if (!pins.oe.IsConnected() || !pins.we.IsConnected())
        return Translated(
            "OE (Output Enable) and WE (Write Enable) flash pins must be connected to certain "
            "pins of JTAG chain devices in order to perform info, erase, program or "
            "lock/unlock actions.");
    if (IsMissing(pins.addressPins, pins.AddrCmdShift))
        return TranslatedFormat(
            "A%d flash pin must be connected to a certain pin of JTAG chain device in "
            "order to perform info, erase, program or lock/unlock actions.",
            pins.AddrCmdShift);
    return {};
}

std::wstring CollectWarnings(const OmFlashPins& pins) {
    std::wstring text;
    if (IsAnyAddressPinMissing(pins))
        text += Translated(
            "One or more flash address pins have been skipped on the Signal pins list.\n\n");
    if (pins.dataPins.size() > static_cast<size_t>(GetBusBits(pins)))
        text += Translated(
            "One or more flash data pins specified on the Signals list exceeds the selected "
            "flash data bus width. Extra data pins will be ignored.\n\n");
    if (IsAnyDataBitMissing(pins))
        text += Translated(
            "One or more flash data pins have been skipped on the Signal pins list.\n\n");
    if (!pins.ce.IsConnected() || !pins.oe.IsConnected() || !pins.we.IsConnected())
        text += Translated(
            "It is usual, although not always necessary, for all three CE (Chip Enable), OE "
            "(Output Enable) and WE (Write Enable) flash control pins to be connected to "
            "certain pins of JTAG chain devices.\n\n");
    return text;
}

// Tells the error and answers false.
bool Refuse(const std::wstring& error) {
    GetUserInterface().ShowMessage(error, Translated(kErrorTitle), kWarningBox);
    return false;
}

// An empty text is no error.
bool AcceptOrRefuse(const std::wstring& error) {
    return error.empty() || Refuse(error);
}

bool ConfirmWarnings(const std::wstring& warnings) {
    if (warnings.empty())
        return true;
    return GetUserInterface().ShowMessage(
               warnings + Translated("Ignore this warning and proceed anyway?"),
               Translated(kWarningTitle), kWarningQuestionBox) == OmAnswer::Yes;
}

// The signals on one device pin.
struct PinUse {
    OmDevicePin pin; // as the first signal has it
    std::wstring names;
    int count = 0;
};

// What makes two pins the same.
using PinKey = std::tuple<int32_t, std::string, int32_t>;

PinKey MakeKey(const OmDevicePin& pin) {
    std::string port = pin.PortName;
    for (char& letter : port)
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    return {pin.Device, port, pin.PortIndex};
}

std::wstring FormatPort(const OmDevicePin& pin) {
    const std::wstring name = FromLocal(pin.PortName);
    return pin.PortIndex >= 0 ? name + OmFormat(L"(%d)", pin.PortIndex) : name;
}

// Collects the connected pins in the order in which they come, which is the order in which a
// collision names them.
class PinUses {
  public:
    void Add(const std::wstring& name, const OmDevicePin& pin) {
        if (!pin.IsConnected())
            return;
        const auto [found, isNew] = index_.emplace(MakeKey(pin), uses_.size());
        if (isNew)
            uses_.push_back({pin, name, 1});
        else
            AddName(uses_[found->second], name);
    }

    // A line for each device pin with several signals; empty if there is none.
    std::wstring FormatCollisions() const {
        std::wstring report;
        for (const PinUse& use : uses_) {
            if (use.count < 2)
                continue;
            report += report.empty() ? L"    " : L";\n    ";
            report += TranslatedFormat("%ls is simultaneously connected to %ls",
                                       FormatPort(use.pin).c_str(), use.names.c_str());
        }
        return report;
    }

  private:
    static void AddName(PinUse& use, const std::wstring& name) {
        use.names += L", " + name;
        ++use.count;
    }

    std::vector<PinUse> uses_;
    std::map<PinKey, size_t> index_;
};

PinUses CollectPinUses(const OmFlashPins& pins) {
    PinUses uses;
    uses.Add(L"CE", pins.ce);
    uses.Add(L"OE", pins.oe);
    uses.Add(L"WE", pins.we);
    for (size_t index = 0; index < pins.addressPins.size(); ++index)
        uses.Add(L"A" + std::to_wstring(index), pins.addressPins[index]);
    const size_t usedBits = std::min(pins.dataPins.size(), static_cast<size_t>(GetBusBits(pins)));
    for (size_t index = 0; index < usedBits; ++index)
        uses.Add(L"D" + std::to_wstring(index), pins.dataPins[index]);
    for (size_t index = 0; index < pins.staticPins.size(); ++index)
        uses.Add(L"<static" + std::to_wstring(index + 1) + L">", pins.staticPins[index]);
    return uses;
}

} // namespace

bool OmDesignSetup::CheckSetupIntegrity(unsigned flags, bool quiet) const {
    const bool needsFullPins = flags & kNeedsFullPins;
    if (devices.empty()) {
        ShowMessage(Translated("No JTAG chain defined."), kWarningBox);
        return false;
    }
    if (!AcceptOrRefuse(FindStructureError(*this)) ||
        (needsFullPins && !AcceptOrRefuse(FindCommandPinError(*this))) || !CheckPinCollisions())
        return false;
    if (needsFullPins && IsLowDataBitMissing(*this))
        return Refuse(
            Translated("At least low 8 data bits of each flash chip must be connected to pins of "
                       "JTAG chain devices in order to perform info, erase, program or lock/unlock "
                       "actions."));
    return quiet || ConfirmWarnings(CollectWarnings(*this));
}

bool OmDesignSetup::CheckPinCollisions() const {
    const std::wstring report = CollectPinUses(*this).FormatCollisions();
    if (report.empty())
        return true;
    return Refuse(
        TranslatedFormat("The same pin of a JTAG chain device is connected to drive/sense "
                         "more then one signal:\n%ls.",
                         report.c_str()));
}
