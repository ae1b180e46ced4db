#include "cli/FlashAction.h"

#include "cli/Commands.h"
#include "cli/ConsoleProgress.h"
#include "data/DataFiles.h"
#include "jobs/FlashJob.h"
#include "jobs/SectorChoice.h"
#include "platform/Text.h"

bool LoadActionData(const OmCliOptions& options, OmDataImage& image) {
    if (options.dataFile.empty())
        return true;
    std::string error;
    if (!ReadDataFile(options.dataFile, image, error))
        return Fail(L"Failed to load data file '" + FromLocal(options.dataFile) + L"'.\n" +
                    FromLocal(error));
    return !image.IsEmpty() ||
           Fail(L"The data file '" + FromLocal(options.dataFile) + L"' holds no bytes.");
}

OmDataChoice PlaceActionData(const OmCliOptions& options, const OmDataImage& image) {
    return {&image, options.offset.has_value(), options.offset.value_or(0)};
}

OmFlashPart GetFlashPart(const OmCliOptions& options) {
    return {options.from.value_or(0), options.size};
}

bool SelectSectors(const OmCliOptions& options, OmSectorRange& indexes) {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    return options.sectors.empty() ? ChooseSectors(programmer, GetFlashPart(options), indexes)
                                   : ChooseSectors(programmer, options.sectors, indexes);
}

bool RunJob(OmFlashJob& job, OmConsoleProgress& progress) {
    if (!job.Check() || !job.Run(progress))
        return false;
    progress.OnFinish();
    ReportSuccess(job.DescribeSuccess());
    return true;
}
