// Whether the board has the chain that the setup describes, and what the user says to it.
#include "flash/FlashProgrammer.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

void OmFlashProgrammer::CheckChainConformity(OmDesignSetup& checked, std::wstring& errors,
                                             std::wstring& warnings,
                                             OmAcceptedMismatches* accepted) {
    errors.clear();
    warnings.clear();
    OmDetectedChain chain;
    OmBitVector captured;
    if (!ExamineChain(chain.idcodes, chain.atmelBug))
        errors = Translated("No JTAG chain detected.");
    else if (!CheckDeviceCount(checked, chain, errors))
        return;
    else if (!CaptureChainIr(captured))
        errors = Translated("Failed to capture JTAG chain IR bits.");
    else if (CheckIrLengths(checked, captured, errors))
        warnings = CheckIdcodes(checked, chain, accepted);
}

bool OmFlashProgrammer::ConfirmChainConformity() {
    OmAcceptedMismatches accepted = acceptedMismatches;
    std::wstring errors;
    std::wstring warnings;
    CheckChainConformity(setup, errors, warnings, &accepted);
    if (!errors.empty()) {
        GetUserInterface().ShowMessage(errors, Translated("Error"), kWarningBox);
        return false;
    }
    if (warnings.empty())
        return true;
    warnings += Translated("Ignore this warning and proceed anyway?");
    if (GetUserInterface().ShowMessage(warnings, Translated("Warning"), kWarningQuestionBox) !=
        OmAnswer::Yes)
        return false;
    acceptedMismatches = accepted;
    return true;
}
