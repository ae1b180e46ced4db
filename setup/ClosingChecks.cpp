#include "setup/ClosingChecks.h"

#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "setup/PinConflicts.h"

namespace {

using Problem = std::optional<OmClosingProblem>;

struct BusUse {
    int count = 0; // connected pins
    int width = 0; // number of the highest of them, plus 1
};

BusUse CountConnected(const std::vector<SignalPin>& pins) {
    BusUse use;
    for (size_t i = 0; i < pins.size(); ++i) {
        if (!pins[i].IsConnected())
            continue;
        ++use.count;
        use.width = static_cast<int>(i) + 1;
    }
    return use;
}

Problem FindSharedPin(const OmDesignSetup& setup) {
    if (!FindPinConflicts(setup).Any())
        return std::nullopt;
    return OmClosingProblem{
        Translated("ERROR: the same pin of a JTAG chain device is connected to drive/sense more "
                   "then one signal (the pin is listed multiple times in the Signal or Static pins "
                   "lists).")};
}

// Without data pins there is nothing yet that the flash array could fit.
Problem FindDataBusProblem(const OmDesignSetup& setup) {
    const BusUse data = CountConnected(setup.dataPins);
    if (data.count == 0)
        return std::nullopt;
    if (setup.ChipCount < 1 || setup.WordSize < 1)
        return OmClosingProblem{Translated("Please select DATA bus organization."),
                                OmClosingField::BusOrganisation};
    if (setup.AddrCmdShift < 0)
        return OmClosingProblem{
            Translated("Please select the maximum data width that a single chip is capable of."),
            OmClosingField::MaxWidth};
    if (setup.ChipCount * setup.WordSize * 8 == data.width && data.count == data.width)
        return std::nullopt;
    return OmClosingProblem{
        Translated("WARNING: the list of connected flash data pins on the Signal pins tab does not "
                   "correspond with a data bus width selected on the Flash array tab.")};
}

Problem FindSkippedAddress(const OmDesignSetup& setup) {
    const BusUse address = CountConnected(setup.addressPins);
    if (address.count == address.width)
        return std::nullopt;
    return OmClosingProblem{Translated("WARNING: one or more flash address pins have been skipped "
                                       "on the Signal pins list.")};
}

} // namespace

std::optional<OmClosingProblem> FindClosingProblem(const OmDesignSetup& setup) {
    if (setup.devices.empty())
        return std::nullopt;
    for (const auto find : {FindSharedPin, FindDataBusProblem, FindSkippedAddress})
        if (Problem problem = find(setup))
            return problem;
    return std::nullopt;
}

bool ConfirmClosing(const OmClosingProblem& problem) {
    const std::wstring text =
        problem.text + L"\n\n" + Translated("Ignore this message and close the dialog?");
    return GetUserInterface().ShowMessage(text, Translated("Integrity Check Message"),
                                          kWarningQuestionBox) == OmAnswer::Yes;
}
