#include "jobs/VerifyJob.h"

#include "jobs/FlashReach.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

OmVerifyJob::OmVerifyJob(OmFlashProgrammer& programmer)
    : OmFlashJob(programmer, kPrepareNone,
                 ForTranslation("Data verification completed successfully.")) {}

bool OmVerifyJob::Open() {
    if (!data.IsEmpty())
        return OmFlashJob::Open();
    ShowMessage(Translated("No data to verify."), kInformationBox);
    return false;
}

bool OmVerifyJob::Check() {
    placed_.Place(data);
    return CheckDataFit(programmer_, placed_.Get());
}

bool OmVerifyJob::Run(OmProgressCallback& progress) {
    return VerifyStep(programmer_, progress, placed_.Get());
}

bool VerifyStep(OmFlashProgrammer& programmer, OmProgressCallback& progress,
                const OmDataImage& image) {
    progress.Begin(image.GetByteCount());
    OmUnitedProgressCallback united(&progress);
    return programmer.VerifyFlash(united, image);
}
