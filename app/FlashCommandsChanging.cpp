// The commands that change the flash: Erase, Program, Lock Sectors and Unlock Sectors.
#include "app/FlashCommands.h"
#include "app/MainFrame.h"
#include "dialogs/EraseDlg.h"
#include "dialogs/ProgramDlg.h"
#include "dialogs/SelectSectorsDlg.h"
#include "flash/CommandSets.h"
#include "flash/FlashProgrammer.h"
#include "flash/TouchedSectors.h"
#include "platform/UserInterface.h"

#include <wx/intl.h>

namespace {

constexpr unsigned kPrepareChange =
    kPrepareFlashCommands | kPrepareIdentify | kPrepareIdentifyOrFail | kPrepareSectors;
// An unknown command set does not stop these: the user is asked.
constexpr unsigned kPrepareLock = kPrepareFlashCommands | kPrepareIdentify | kPrepareSectors;

uint32_t GetChipCount() {
    return static_cast<uint32_t>(OmFlashProgrammer::GetInstance().setup.ChipCount);
}

// Sectors are unknown, and there is no command that erases the whole chip.
bool IsEraseImpossible() {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    return programmer.sectors.IsEmpty() && !CanEraseChip(programmer.commandSet);
}

OmSectorRange ToChipOffsets(const OmSectorRange& indexes) {
    OmSectorRange offsets;
    OmFlashProgrammer::GetInstance().sectors.ToOffsets(indexes, offsets);
    return offsets;
}

bool EraseFlash(OmProgressCallback& progress, OmEraseMode mode, const OmSectorRange& selected,
                const OmDataImage& image) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    switch (mode) {
    case OmEraseMode::EntireFlash:
        return programmer.EraseChip(progress);
    case OmEraseMode::SectorsForData:
        return programmer.EraseSectors(
            progress,
            ToChipOffsets(FindTouchedSectors(programmer.sectors, GetChipCount(), image, 0)));
    case OmEraseMode::SelectedSectors:
        break;
    }
    return programmer.EraseSectors(progress, ToChipOffsets(selected));
}

void SetUpProgramDialog(OmProgramDlg& dialog, const OmDataImage& image) {
    const OmFlashSectorLayout& sectors = OmFlashProgrammer::GetInstance().sectors;
    dialog.eraseDisabled = IsEraseImpossible();
    dialog.erase = !dialog.eraseDisabled;
    dialog.eraseMode = sectors.IsEmpty() ? OmEraseMode::EntireFlash : OmEraseMode::SectorsForData;
    dialog.verify = true;
    dialog.sectorMap = &sectors;
    dialog.chipCount = GetChipCount();
    dialog.dataImage = &image;
}

// Empty if the user cancels; the dialog itself insists on a selection.
OmSectorRange SelectSectors(wxWindow* parent, OmSelectSectorsMode mode) {
    OmSelectSectorsDlg dialog(parent);
    dialog.sectorMap = &OmFlashProgrammer::GetInstance().sectors;
    dialog.chipCount = GetChipCount();
    dialog.mode = mode;
    return dialog.ShowModal() == wxID_OK ? dialog.selection : OmSectorRange();
}

// Chip offsets; empty if the user cancels.
OmSectorRange ChooseSectorsToUnlock(wxWindow* parent) {
    if (!OmFlashProgrammer::GetInstance().sectors.IsEmpty())
        return ToChipOffsets(SelectSectors(parent, OmSelectSectorsMode::Unlock));
    // Many chips unlock all sectors at once, so any known address may do.
    const wxString question = _("Unlock sector at zero address?");
    const bool unlock = ShowMessage(question.ToStdWstring(), kQuestionBox) == OmAnswer::Yes;
    return unlock ? OmSectorRange{0} : OmSectorRange();
}

// Erases if asked to, programs, verifies if asked to, and reports a success.
void RunProgram(OmActionProgress& progress, const OmProgramDlg& dialog, const OmDataImage& image) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (dialog.erase && !EraseFlash(progress, dialog.eraseMode, dialog.selectedSectors, image))
        return;
    if (!programmer.ProgramFlash(progress, image))
        return;
    if (!dialog.verify)
        return progress.Report(_("Program operation completed."));
    OmUnitedProgressCallback united(&progress);
    if (programmer.VerifyFlash(united, image))
        progress.Report(_("Program operation completed and succesfully verified."));
}

} // namespace

void OmMainFrame::OnErase(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareChange))
        return;
    if (IsEraseImpossible()) {
        ShowMessage(EraseDisabledWarning().ToStdWstring(), kWarningBox);
        return;
    }
    OmEraseDlg dialog(this);
    dialog.Initialise(OmEraseMode::EntireFlash, programmer.sectors, GetChipCount(), dataImage_, 0,
                      OmSectorRange());
    if (dialog.ShowModal() != wxID_OK)
        return;
    OmActionProgress progress(this);
    if (EraseFlash(progress, dialog.mode, dialog.selectedSectors, dataImage_))
        progress.Report(_("Erase operation completed successfully."));
}

void OmMainFrame::OnProgram(wxCommandEvent&) {
    if (dataImage_.IsEmpty()) {
        ShowMessage(_("No data to program.").ToStdWstring(), kInformationBox);
        return;
    }
    if (!OmFlashProgrammer::GetInstance().Prepare(kPrepareChange))
        return;
    OmProgramDlg dialog(this);
    SetUpProgramDialog(dialog, dataImage_);
    if (dialog.ShowModal() != wxID_OK)
        return;
    const OmActionImage image(dataImage_, dialog.ignoreAddress, dialog.newStart);
    OmActionProgress progress(this);
    RunProgram(progress, dialog, image.Get());
}

// Without a sector map there is nothing to choose from, and the user has already been told so.
void OmMainFrame::OnLockSectors(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareLock) || programmer.sectors.IsEmpty() ||
        !programmer.ConfirmIntelCommandSet())
        return;
    const OmSectorRange selection = SelectSectors(this, OmSelectSectorsMode::Lock);
    if (selection.empty())
        return;
    OmActionProgress progress(this);
    if (programmer.LockSectors(progress, ToChipOffsets(selection)))
        progress.Report(_("Lock sectors operation completed successfully."));
}

void OmMainFrame::OnUnlockSectors(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareLock) || !programmer.ConfirmIntelCommandSet())
        return;
    const OmSectorRange chipOffsets = ChooseSectorsToUnlock(this);
    if (chipOffsets.empty())
        return;
    OmActionProgress progress(this);
    if (programmer.UnlockSectors(progress, chipOffsets))
        progress.Report(_("Unlock sectors operation completed successfully."));
}
