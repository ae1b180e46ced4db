// The commands that change the flash.
#include "cli/Commands.h"
#include "cli/ConsoleProgress.h"
#include "cli/FlashAction.h"
#include "flash/CommandSets.h"
#include "platform/UserInterface.h"

namespace {

constexpr unsigned kPrepareChange =
    kPrepareFlashCommands | kPrepareIdentify | kPrepareIdentifyOrFail | kPrepareSectors;
// An unknown command set does not stop these: the user is asked.
constexpr unsigned kPrepareLock = kPrepareFlashCommands | kPrepareIdentify | kPrepareSectors;

bool NamesSectors(const OmCliOptions& options) {
    return !options.sectors.empty() || options.from || options.size;
}

bool EraseOffsets(const OmSectorRange& offsets, OmConsoleProgress& progress) {
    progress.BeginSteps(offsets.size());
    return OmFlashProgrammer::GetInstance().EraseSectors(progress, offsets);
}

bool EraseSelected(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmSectorRange offsets;
    return SelectSectors(options, offsets) && EraseOffsets(offsets, progress);
}

// A sector of the data that is not in the map would be programmed without having been erased.
bool EraseForData(const OmDataImage& image, OmConsoleProgress& progress) {
    const OmSectorRange offsets = GetSectorsForData(image);
    if (offsets.empty())
        return Fail(L"Nothing to erase -- data starting address is beyond flash address space");
    return EraseOffsets(offsets, progress);
}

// An Intel flash has no command for the whole chip, and its sectors go one by one.
bool EraseEntire(OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    progress.BeginSteps(CanEraseChip(programmer.commandSet) ? 0
                                                            : programmer.sectors.GetSectorCount());
    return programmer.EraseChip(progress);
}

// The sectors that the data needs, or the chip if its sectors are unknown. A flash that cannot be
// erased at all is programmed as it is, unless an erase was asked for.
bool EraseBeforeProgram(const OmCliOptions& options, const OmDataImage& image,
                        OmConsoleProgress& progress) {
    if (options.erase == OmEraseChoice::None)
        return true;
    if (IsEraseImpossible())
        return FailEraseImpossible() || options.erase == OmEraseChoice::Automatic;
    const bool sectorsKnown = !OmFlashProgrammer::GetInstance().sectors.IsEmpty();
    switch (options.erase) {
    case OmEraseChoice::Sectors:
        return EraseSelected(options, progress);
    case OmEraseChoice::Chip:
        return EraseEntire(progress);
    case OmEraseChoice::Needed:
        return sectorsKnown ? EraseForData(image, progress)
                            : Fail(L"The sectors of the flash are unknown.");
    case OmEraseChoice::Automatic:
    case OmEraseChoice::None:
        break;
    }
    return sectorsKnown ? EraseForData(image, progress) : EraseEntire(progress);
}

bool VerifyProgrammed(const OmDataImage& image, OmConsoleProgress& progress) {
    progress.Begin(image.GetByteCount());
    OmUnitedProgressCallback united(&progress);
    return OmFlashProgrammer::GetInstance().VerifyFlash(united, image);
}

bool EraseAsAsked(const OmCliOptions& options, const OmDataImage& image,
                  OmConsoleProgress& progress) {
    if (IsEraseImpossible())
        return FailEraseImpossible();
    if (!image.IsEmpty())
        return CheckDataFits(image) && EraseForData(image, progress);
    return NamesSectors(options) ? EraseSelected(options, progress) : EraseEntire(progress);
}

using SetLocks = bool (OmFlashProgrammer::*)(OmProgressCallback&, const OmSectorRange&);

bool SetSectorLocks(const OmSectorRange& offsets, SetLocks set, const wchar_t* success,
                    OmConsoleProgress& progress) {
    progress.BeginSteps(offsets.size());
    if (!(OmFlashProgrammer::GetInstance().*set)(progress, offsets))
        return false;
    progress.OnFinish();
    ReportSuccess(success);
    return true;
}

} // namespace

bool RunErase(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    if ((!options.dataFile.empty() && !LoadActionData(options, image)) ||
        !OmFlashProgrammer::GetInstance().Prepare(kPrepareChange))
        return false;
    if (!EraseAsAsked(options, image, progress))
        return false;
    progress.OnFinish();
    ReportSuccess(L"Erase operation completed successfully.");
    return true;
}

bool RunProgram(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmDataImage image;
    if (!LoadActionData(options, image) || !programmer.Prepare(kPrepareChange) ||
        !CheckDataFits(image))
        return false;
    if (!EraseBeforeProgram(options, image, progress))
        return false;
    progress.Begin(image.GetByteCount());
    if (!programmer.ProgramFlash(progress, image) ||
        (options.verify && !VerifyProgrammed(image, progress)))
        return false;
    progress.OnFinish();
    ReportSuccess(options.verify ? L"Program operation completed and succesfully verified."
                                 : L"Program operation completed.");
    return true;
}

bool RunLock(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmSectorRange offsets;
    return programmer.Prepare(kPrepareLock) && programmer.ConfirmIntelCommandSet() &&
           SelectSectors(options, offsets) &&
           SetSectorLocks(offsets, &OmFlashProgrammer::LockSectors,
                          L"Lock sectors operation completed successfully.", progress);
}

// Many chips unlock all sectors at once, so any known address may do where sectors are unknown.
bool RunUnlock(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareLock) || !programmer.ConfirmIntelCommandSet())
        return false;
    OmSectorRange offsets;
    if (!programmer.sectors.IsEmpty()) {
        if (!SelectSectors(options, offsets))
            return false;
    } else if (ShowMessage(L"Unlock sector at zero address?", kQuestionBox) == OmAnswer::Yes) {
        offsets = {0};
    } else {
        return false;
    }
    return SetSectorLocks(offsets, &OmFlashProgrammer::UnlockSectors,
                          L"Unlock sectors operation completed successfully.", progress);
}
