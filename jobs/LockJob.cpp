#include "jobs/LockJob.h"

#include "jobs/ErasePlan.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

namespace {

// An unknown command set does not stop these: the user is asked.
constexpr unsigned kPrepareLock = kPrepareFlashCommands | kPrepareIdentify | kPrepareSectors;

const char* SuccessOf(OmLockAction action) {
    return action == OmLockAction::Lock
               ? ForTranslation("Lock sectors operation completed successfully.")
               : ForTranslation("Unlock sectors operation completed successfully.");
}

} // namespace

OmLockJob::OmLockJob(OmFlashProgrammer& programmer, OmLockAction action)
    : OmFlashJob(programmer, kPrepareLock, SuccessOf(action)), action_(action) {}

// Without sectors there is nothing to choose from for a lock, and the user has just been told that
// they are unknown.
bool OmLockJob::Open() {
    return OmFlashJob::Open() && (HasSectors() || action_ == OmLockAction::Unlock) &&
           programmer_.ConfirmIntelCommandSet();
}

// Many chips unlock all sectors at once, so any known address may do where sectors are unknown.
bool OmLockJob::Check() {
    chipOffsets_ = HasSectors() ? ToChipOffsets(programmer_, selected) : OmSectorRange{0};
    return HasSectors() ||
           ShowMessage(Translated("Unlock sector at zero address?"), kQuestionBox) == OmAnswer::Yes;
}

bool OmLockJob::Run(OmProgressCallback& progress) {
    progress.BeginSteps(chipOffsets_.size());
    return action_ == OmLockAction::Lock ? programmer_.LockSectors(progress, chipOffsets_)
                                         : programmer_.UnlockSectors(progress, chipOffsets_);
}
