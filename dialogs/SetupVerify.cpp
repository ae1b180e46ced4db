#include "dialogs/SetupVerify.h"

#include "flash/FlashProgrammer.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>

namespace {

bool HasAnyBsdl(const OmDesignSetup& setup) {
    return std::ranges::any_of(setup.devices,
                               [](const OmChainDevice& device) { return device.bsdl != nullptr; });
}

} // namespace

// The check fills in lengths that it finds, and so works on a copy.
void VerifyChain(const OmDesignSetup& setup) {
    if (!HasAnyBsdl(setup)) {
        ShowMessage(Translated("None of the devices in the JTAG chain has an assigned BSDL "
                               "file.\n\nA BSDL file must be assigned to at least one device or "
                               "devices whose pins are connected to flash pins."),
                    kWarningBox);
        return;
    }
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.OpenCable() || !programmer.ConfirmAdaptiveClocking())
        return;
    OmDesignSetup entered = setup;
    std::wstring errors;
    std::wstring warnings;
    programmer.CheckChainConformity(entered, errors, warnings, nullptr);
    if (!errors.empty())
        ShowMessage(errors, kWarningBox);
    else if (!warnings.empty())
        ShowMessage(warnings, kWarningBox);
    else
        ShowMessage(Translated("The detected JTAG chain conforms to the current setup."),
                    kInformationBox);
}
