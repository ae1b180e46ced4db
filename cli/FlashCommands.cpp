// The commands that read the flash.
#include "cli/Commands.h"
#include "cli/ConsoleProgress.h"
#include "cli/DataOutput.h"
#include "cli/FlashAction.h"
#include "jobs/BlankCheckJob.h"
#include "jobs/ReadJob.h"
#include "jobs/VerifyJob.h"

bool RunRead(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    OmReadJob job(OmFlashProgrammer::GetInstance());
    job.part = GetFlashPart(options);
    job.image = &image;
    if (!CheckOutput(options.outputFile) || !job.Open() || !job.Check() || !job.Run(progress))
        return false;
    progress.OnFinish();
    const OmAddressRange& range = job.GetRange();
    const OmDataImage wanted = CropImage(image, range.start, range.size);
    if (wanted.GetByteCount() != range.size)
        return Fail(L"The flash was not read as a whole.");
    return SaveData(options.outputFile, *options.format, wanted);
}

bool RunBlankCheck(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    OmBlankCheckJob job(OmFlashProgrammer::GetInstance());
    job.data = PlaceActionData(options, image);
    job.part = GetFlashPart(options);
    return LoadActionData(options, image) && job.Open() && RunJob(job, progress);
}

bool RunVerify(const OmCliOptions& options, OmConsoleProgress& progress) {
    OmDataImage image;
    OmVerifyJob job(OmFlashProgrammer::GetInstance());
    job.data = PlaceActionData(options, image);
    return LoadActionData(options, image) && job.Open() && RunJob(job, progress);
}
