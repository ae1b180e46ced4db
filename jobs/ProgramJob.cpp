#include "jobs/ProgramJob.h"

#include "jobs/FlashReach.h"
#include "jobs/VerifyJob.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

OmProgramJob::OmProgramJob(OmFlashProgrammer& programmer)
    : OmFlashJob(programmer, kPrepareChange, ForTranslation("Program operation completed.")) {}

bool OmProgramJob::Open() {
    if (!data.IsEmpty())
        return OmFlashJob::Open();
    ShowMessage(Translated("No data to program."), kInformationBox);
    return false;
}

std::optional<OmEraseOptions> OmProgramJob::GetUsualErase() const {
    if (IsEraseImpossible(programmer_))
        return {};
    return OmEraseOptions{
        GetSectors().IsEmpty() ? OmEraseMode::EntireFlash : OmEraseMode::SectorsForData, {}};
}

void OmProgramJob::TakeUsualErase() {
    erase = GetUsualErase();
    if (!erase)
        ShowMessage(DescribeEraseImpossible(), kWarningBox);
}

bool OmProgramJob::Check() {
    placed_.Place(data);
    return CheckDataFit(programmer_, placed_.Get()) &&
           (!erase || plan_.Make(programmer_, *erase, &placed_.Get()));
}

bool OmProgramJob::Run(OmProgressCallback& progress) {
    if (erase && !plan_.Run(programmer_, progress))
        return false;
    progress.Begin(placed_.Get().GetByteCount());
    return programmer_.ProgramFlash(progress, placed_.Get()) &&
           (!verify || VerifyStep(programmer_, progress, placed_.Get()));
}

std::wstring OmProgramJob::DescribeSuccess() const {
    return verify ? Translated("Program operation completed and succesfully verified.")
                  : OmFlashJob::DescribeSuccess();
}
