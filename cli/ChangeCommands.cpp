// The commands that change the flash.
#include "cli/Commands.h"
#include "cli/FlashAction.h"
#include "jobs/EraseJob.h"
#include "jobs/LockJob.h"
#include "jobs/ProgramJob.h"

namespace {

bool NamesSectors(const OmCliOptions& options) {
    return !options.sectors.empty() || options.from || options.size;
}

bool SelectForErase(const OmCliOptions& options, OmEraseOptions& erase) {
    erase.mode = OmEraseMode::SelectedSectors;
    return SelectSectors(options, erase.selected);
}

// What --erase asks for.
bool SetErase(const OmCliOptions& options, OmProgramJob& job) {
    switch (options.erase) {
    case OmEraseChoice::Automatic:
        job.TakeUsualErase();
        return true;
    case OmEraseChoice::None:
        return true;
    case OmEraseChoice::Sectors:
        return SelectForErase(options, job.erase.emplace());
    case OmEraseChoice::Chip:
        job.erase.emplace().mode = OmEraseMode::EntireFlash;
        return true;
    case OmEraseChoice::Needed:
        break;
    }
    job.erase.emplace().mode = OmEraseMode::SectorsForData;
    return true;
}

bool RunLockJob(OmLockAction action, const OmCliOptions& options, OmConsoleProgress& progress) {
    OmLockJob job(OmFlashProgrammer::GetInstance(), action);
    return job.Open() && (!job.HasSectors() || SelectSectors(options, job.selected)) &&
           RunJob(job, progress);
}

} // namespace

bool RunErase(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    OmEraseJob job(OmFlashProgrammer::GetInstance());
    if (!LoadActionData(options, image) || !job.Open())
        return false;
    if (!image.IsEmpty()) {
        job.erase.mode = OmEraseMode::SectorsForData;
        job.data = PlaceActionData(options, image);
    } else if (NamesSectors(options) && !SelectForErase(options, job.erase)) {
        return false;
    }
    return RunJob(job, progress);
}

bool RunProgram(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    OmProgramJob job(OmFlashProgrammer::GetInstance());
    job.data = PlaceActionData(options, image);
    job.verify = options.verify;
    return LoadActionData(options, image) && job.Open() && SetErase(options, job) &&
           RunJob(job, progress);
}

bool RunLock(const OmCliOptions& options, OmConsoleProgress& progress) {
    return RunLockJob(OmLockAction::Lock, options, progress);
}

bool RunUnlock(const OmCliOptions& options, OmConsoleProgress& progress) {
    return RunLockJob(OmLockAction::Unlock, options, progress);
}
