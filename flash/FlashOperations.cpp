// Read and program, and how every operation opens the bus.
#include "flash/FlashOperations.h"

#include "flash/BoundaryScanBus.h"
#include "flash/BulkProgramming.h"
#include "flash/CommandSets.h"
#include "flash/Identification.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>

// Prepare has proved that the setup builds, so the errors are not looked at again. The mode command
// ends whatever an interrupted operation has left in the flash.
void OmFlashOperations::OpenBus(OmBoundaryScanBus& bus, OmCommandSet mode) {
    std::wstring ignoredErrors;
    bus.BuildFromSetup(setup_, setup_.devices, ignoredErrors);
    bus.analyzer = &analyzer_;
    bus.EnterExtest();
    if (const OmCommandSetRow* row = FindCommandSet(mode))
        row->reset(bus);
    else
        ResetFlashModes(bus);
}

void OmFlashOperations::OpenBus(OmBoundaryScanBus& bus) {
    OpenBus(bus, facts_.commandSet);
}

bool OmFlashOperations::Read(OmProgressCallback& callback, const OmAddressRange& range,
                             OmDataImage& image) {
    callback.OnProgress(0, Translated("Reading from flash...").c_str());
    OmBoundaryScanBus bus;
    OpenBus(bus);
    const uint32_t wordBytes = bus.BusWordBytes();
    const uint32_t first = range.start / wordBytes;
    const uint64_t end = (uint64_t{range.start} + range.size + wordBytes - 1) / wordBytes;
    const auto words = static_cast<uint32_t>(range.size == 0 ? 0 : end - first);
    if (bus.ReadWords(&callback, first, words, image, nullptr) != OmFlashResult::Stopped)
        return true;
    callback.OnFinish();
    ShowMessage(Translated("Flash reading was aborted by user."), kWarningBox);
    return false;
}

namespace {

// A flash is free to get less in one command than its buffer takes. Real buffers are smaller; one
// of gigabytes, which a damaged CFI table may claim, would be laid out in full.
constexpr uint32_t kMaxWordsPerBlock = 4096;

// Without a status read there is nothing to tune the wait by: the next item's own scans are it.
constexpr int kBlindWait = 0;

struct ProgramFailure {
    OmFlashResult result;
    const char* text;
};

constexpr ProgramFailure kProgramFailures[] = {
    {OmFlashResult::Stopped, ForTranslation("Program operation was aborted by user.")},
    // The only error that programming reports.
    {OmFlashResult::FlashError,
     ForTranslation(
         "An Intel Block Locked error occured while attempting to program the flash.\n"
         "To unlock erase blocks (sectors) go to menu Actions > Intel Specific > Unlock Sectors.")},
};

bool ReportProgram(OmProgressCallback& callback, OmFlashResult result) {
    if (result == OmFlashResult::Told)
        return false;
    for (const ProgramFailure& failure : kProgramFailures) {
        if (failure.result != result)
            continue;
        callback.OnFinish();
        ShowMessage(Translated(failure.text), kWarningBox);
        return false;
    }
    return true;
}

} // namespace

bool OmFlashOperations::Program(OmProgressCallback& callback, const OmDataImage& image) {
    callback.OnProgress(0, Translated("Programming the flash...").c_str());
    const OmProgramForm* form = FindProgramForm(facts_.commandSet);
    if (!form)
        return true;
    OmBoundaryScanBus bus;
    OpenBus(bus);
    bus.programTimes = facts_.programTimes;
    const auto wordSize = static_cast<uint32_t>(setup_.WordSize);
    const std::unique_ptr<OmBulkCommands> commands =
        form->make({setup_.UseUnlockBypass && FindCommandSet(facts_.commandSet)->hasBypass,
                    std::clamp(facts_.bufferBytes / wordSize, 1U, kMaxWordsPerBlock)});
    uint32_t count = 0; // words drawn from the image
    return ReportProgram(
        callback,
        setup_.DontCheckStatus
            ? ProgramBlind(bus, *commands, callback, image, kBlindWait, count)
            : ProgramWithStatus(bus, *commands, callback, image, facts_.waitScans, count));
}
