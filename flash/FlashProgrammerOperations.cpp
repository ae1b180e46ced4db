// Read and program, and how every operation opens the bus.
#include "flash/AmdCommands.h"
#include "flash/BoundaryScanBus.h"
#include "flash/FlashProgrammer.h"
#include "flash/Identification.h"
#include "flash/IntelCommands.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>

// Prepare has proved that the setup builds, so the errors are not looked at again. The mode command
// ends whatever an interrupted operation has left in the flash.
void OmFlashProgrammer::OpenBus(OmBoundaryScanBus& bus, OmCommandSet mode) {
    std::wstring ignoredErrors;
    bus.BuildFromSetup(setup, setup.devices, ignoredErrors);
    bus.analyzer = analyzer.get();
    bus.EnterExtest();
    if (IsIntel(mode))
        IntelReadArray(bus);
    else if (IsAmd(mode))
        AmdReset(bus);
    else
        ResetFlashModes(bus);
}

void OmFlashProgrammer::OpenBus(OmBoundaryScanBus& bus) {
    OpenBus(bus, commandSet);
}

bool OmFlashProgrammer::ReadFlash(OmProgressCallback& callback, uint32_t start, uint32_t size,
                                  OmDataImage& image) {
    return Guarded(&callback, [&] {
        callback.OnProgress(0, Translated("Reading from flash...").c_str());
        OmBoundaryScanBus bus;
        OpenBus(bus);
        const uint32_t wordBytes = bus.BusWordBytes();
        const uint32_t first = start / wordBytes;
        const uint64_t end = (uint64_t{start} + size + wordBytes - 1) / wordBytes;
        const auto words = static_cast<uint32_t>(size == 0 ? 0 : end - first);
        if (bus.ReadWords(&callback, first, words, image, nullptr) != OmFlashResult::Stopped)
            return true;
        callback.OnFinish();
        ShowMessage(Translated("Flash reading was aborted by user."), kWarningBox);
        return false;
    });
}

namespace {

// A flash is free to get less in one command than its buffer takes. Real buffers are smaller; one
// of gigabytes, which a damaged CFI table may claim, would be laid out in full.
constexpr uint32_t kMaxWordsPerBlock = 4096;

// What one command set needs for a program action.
struct ProgramJob {
    OmBoundaryScanBus& bus;
    OmProgressCallback& callback;
    const OmDataImage& image;
    bool bypass;
    unsigned wordsPerBlock;
    int& wait;
    uint32_t count = 0; // words drawn from the image
};

// Without a status read there is nothing to tune the wait by: the next item's own scans are it.
constexpr int kBlindWait = 0;

struct ProgramMethod {
    OmCommandSet commandSet;
    OmFlashResult (*withStatus)(ProgramJob& job);
    OmFlashResult (*blind)(ProgramJob& job);
};

constexpr ProgramMethod kProgramMethods[] = {
    {OmCommandSet::IntelStandard,
     [](ProgramJob& j) { return IntelProgramWords(j.bus, j.callback, j.image, j.wait, j.count); },
     [](ProgramJob& j) {
         return IntelProgramWordsBlind(j.bus, j.callback, j.image, kBlindWait, j.count);
     }},
    {OmCommandSet::IntelExtended,
     [](ProgramJob& j) {
         return IntelProgramBuffers(j.bus, j.callback, j.image, j.wordsPerBlock, j.wait, j.count);
     },
     [](ProgramJob& j) {
         return IntelProgramBuffersBlind(j.bus, j.callback, j.image, j.wordsPerBlock, kBlindWait,
                                         j.count);
     }},
    {OmCommandSet::AmdWord,
     [](ProgramJob& j) {
         return AmdProgramWords(j.bus, j.callback, j.image, j.bypass, j.wait, j.count);
     },
     [](ProgramJob& j) {
         return AmdProgramWordsBlind(j.bus, j.callback, j.image, j.bypass, kBlindWait, j.count);
     }},
    {OmCommandSet::AmdBuffered,
     [](ProgramJob& j) {
         return AmdProgramBuffers(j.bus, j.callback, j.image, j.wordsPerBlock, j.wait, j.count);
     },
     [](ProgramJob& j) {
         return AmdProgramBuffersBlind(j.bus, j.callback, j.image, j.wordsPerBlock, kBlindWait,
                                       j.count);
     }},
};

// Null for an unknown command set.
const ProgramMethod* FindProgramMethod(OmCommandSet commandSet) {
    for (const ProgramMethod& method : kProgramMethods)
        if (method.commandSet == commandSet)
            return &method;
    return nullptr;
}

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

bool OmFlashProgrammer::ProgramFlash(OmProgressCallback& callback, const OmDataImage& image) {
    return Guarded(&callback, [&] {
        callback.OnProgress(0, Translated("Programming the flash...").c_str());
        const ProgramMethod* method = FindProgramMethod(commandSet);
        if (!method)
            return true;
        OmBoundaryScanBus bus;
        OpenBus(bus);
        const auto wordSize = static_cast<uint32_t>(setup.WordSize);
        ProgramJob job{bus,
                       callback,
                       image,
                       setup.UseUnlockBypass,
                       std::clamp(bufferBytes / wordSize, 1U, kMaxWordsPerBlock),
                       waitScans};
        return ReportProgram(callback,
                             setup.DontCheckStatus ? method->blind(job) : method->withStatus(job));
    });
}
