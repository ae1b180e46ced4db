#include "jobs/EraseJob.h"

#include "jobs/FlashReach.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

OmEraseJob::OmEraseJob(OmFlashProgrammer& programmer)
    : OmFlashJob(programmer, kPrepareChange,
                 ForTranslation("Erase operation completed successfully.")) {}

bool OmEraseJob::Open() {
    if (!OmFlashJob::Open())
        return false;
    if (!IsEraseImpossible(programmer_))
        return true;
    ShowMessage(DescribeEraseImpossible(), kWarningBox);
    return false;
}

bool OmEraseJob::Check() {
    if (erase.mode != OmEraseMode::SectorsForData)
        return plan_.Make(programmer_, erase, nullptr);
    OmPlacedData placed;
    placed.Place(data);
    return CheckDataFit(programmer_, placed.Get()) && plan_.Make(programmer_, erase, &placed.Get());
}

bool OmEraseJob::Run(OmProgressCallback& progress) {
    return plan_.Run(programmer_, progress);
}
