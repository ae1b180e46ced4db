#include "cli/Commands.h"

#include "platform/Text.h"
#include "platform/UserInterface.h"

#include <system_error>

namespace {

constexpr OmCommand kCommands[] = {
    {"chain", "Examine the JTAG chain: devices, IDCODEs, manufacturers, IR bits", kUsesConnection,
     RunChain},
    {"check", "Check a setup, and whether the connected chain conforms to it",
     kUsesConnection | kUsesSetup, RunCheck},
    {"info", "Identify the flash and show what it says about itself", kUsesConnection | kUsesSetup,
     RunInfo},
    {"read", "Read the flash into a file", kUsesConnection | kUsesSetup | kUsesOutput | kUsesRange,
     RunRead},
    {"erase", "Erase the flash, sectors of it, or what a data file needs",
     kUsesConnection | kUsesSetup | kUsesOptionalData | kUsesOffset | kUsesRange | kUsesSectors,
     RunErase},
    {"blank-check", "Check that the flash, or the place of a data file, is blank",
     kUsesConnection | kUsesSetup | kUsesOptionalData | kUsesOffset | kUsesRange, RunBlankCheck},
    {"program", "Erase what is needed, program a data file and verify it",
     kUsesConnection | kUsesSetup | kUsesData | kUsesOffset | kUsesErase | kUsesVerify, RunProgram},
    {"verify", "Compare the flash with a data file",
     kUsesConnection | kUsesSetup | kUsesData | kUsesOffset, RunVerify},
    {"lock", "Lock sectors of an Intel flash",
     kUsesConnection | kUsesSetup | kUsesRange | kUsesSectors | kUsesAllSectors, RunLock},
    {"unlock", "Unlock sectors of an Intel flash",
     kUsesConnection | kUsesSetup | kUsesRange | kUsesSectors | kUsesAllSectors, RunUnlock},
    {"reset", "Reset the TAPs, which gives the pins back to the board", kUsesConnection, RunReset},
    {"bsdl", "Show what a BSDL file says, or where it is wrong", kUsesBsdl, RunBsdl},
};

} // namespace

std::span<const OmCommand> GetCommands() {
    return kCommands;
}

bool Fail(const std::wstring& text) {
    ShowMessage(text, kErrorBox);
    return false;
}

std::wstring DescribeSystemError(int error) {
    return FromLocal(std::generic_category().message(error)) + L".";
}

void ReportSuccess(const std::wstring& text) {
    ShowMessage(text, kInformationBox);
}
