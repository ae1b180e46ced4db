// The commands that change the flash: Erase, Program, Lock Sectors and Unlock Sectors.
#include "app/FlashCommands.h"
#include "app/MainFrame.h"
#include "dialogs/ProgramDlg.h"
#include "dialogs/SelectSectorsDlg.h"
#include "jobs/EraseJob.h"
#include "jobs/LockJob.h"
#include "jobs/ProgramJob.h"

namespace {

void SetUpProgramDialog(OmProgramDlg& dialog, const OmProgramJob& job) {
    const std::optional<OmEraseOptions> erase = job.GetUsualErase();
    dialog.eraseDisabled = !erase;
    dialog.erase = erase.has_value();
    dialog.eraseMode = erase.value_or(OmEraseOptions()).mode;
    dialog.verify = true;
    dialog.sectorMap = &job.GetSectors();
    dialog.chipCount = job.GetChipCount();
    dialog.dataImage = job.data.image;
}

// Empty if the user cancels; the dialog itself insists on a selection.
OmSectorRange SelectSectors(wxWindow* parent, const OmLockJob& job, OmSelectSectorsMode mode) {
    OmSelectSectorsDlg dialog(parent);
    dialog.sectorMap = &job.GetSectors();
    dialog.chipCount = job.GetChipCount();
    dialog.mode = mode;
    return dialog.ShowModal() == wxID_OK ? dialog.selection : OmSectorRange();
}

void RunLockJob(wxWindow* parent, OmLockAction action, OmSelectSectorsMode mode) {
    OmLockJob job(OmFlashProgrammer::GetInstance(), action);
    if (!job.Open())
        return;
    if (job.HasSectors()) {
        job.selected = SelectSectors(parent, job, mode);
        if (job.selected.empty())
            return;
    }
    RunJob(parent, job);
}

} // namespace

void OmMainFrame::OnErase(wxCommandEvent&) {
    OmEraseJob job(OmFlashProgrammer::GetInstance());
    if (!job.Open())
        return;
    OmEraseDlg dialog(this);
    dialog.Initialise(OmEraseMode::EntireFlash, job.GetSectors(), job.GetChipCount(), dataImage_, 0,
                      OmSectorRange());
    if (dialog.ShowModal() != wxID_OK)
        return;
    job.erase = {dialog.mode, dialog.selectedSectors};
    job.data = {&dataImage_};
    RunJob(this, job);
}

void OmMainFrame::OnProgram(wxCommandEvent&) {
    OmProgramJob job(OmFlashProgrammer::GetInstance());
    job.data = {&dataImage_};
    if (!job.Open())
        return;
    OmProgramDlg dialog(this);
    SetUpProgramDialog(dialog, job);
    if (dialog.ShowModal() != wxID_OK)
        return;
    if (dialog.erase)
        job.erase = {dialog.eraseMode, dialog.selectedSectors};
    job.verify = dialog.verify;
    job.data = {&dataImage_, dialog.ignoreAddress, dialog.newStart};
    RunJob(this, job);
}

void OmMainFrame::OnLockSectors(wxCommandEvent&) {
    RunLockJob(this, OmLockAction::Lock, OmSelectSectorsMode::Lock);
}

void OmMainFrame::OnUnlockSectors(wxCommandEvent&) {
    RunLockJob(this, OmLockAction::Unlock, OmSelectSectorsMode::Unlock);
}
