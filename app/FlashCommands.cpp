// The commands that look at the flash and change nothing in it, and Go to Offset.
#include "app/FlashCommands.h"

#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "dialogs/BlankCheckDlg.h"
#include "dialogs/FlashInfoDlg.h"
#include "dialogs/FlashReportPage.h"
#include "dialogs/GoToOffsetDlg.h"
#include "dialogs/ReadDlg.h"
#include "dialogs/VerifyDlg.h"
#include "jobs/BlankCheckJob.h"
#include "jobs/InfoJob.h"
#include "jobs/ReadJob.h"
#include "jobs/VerifyJob.h"
#include "platform/UserInterface.h"

#include <wx/intl.h>

OmActionProgress::OmActionProgress(wxWindow* parent) : OmProgressDlg(parent, _("Please Wait")) {
    Show(true);
}

// The dialog goes before the last box, which must not come up behind a disabled window.
void RunJob(wxWindow* parent, OmFlashJob& job) {
    if (!job.Check())
        return;
    OmActionProgress progress(parent);
    if (!job.Run(progress))
        return;
    progress.Show(false);
    ShowMessage(job.DescribeSuccess(), kInformationBox);
}

void OmMainFrame::OnInfo(wxCommandEvent&) {
    OmFlashReport report;
    if (RunInfoJob(OmFlashProgrammer::GetInstance(), report))
        OmFlashInfoDlg(this, MakeFlashReportPage(report)).ShowModal();
}

// The question about unsaved data comes before anything reaches the cable.
void OmMainFrame::OnRead(wxCommandEvent&) {
    OmReadJob job(OmFlashProgrammer::GetInstance());
    if (!PromptSaveData() || !job.Open())
        return;
    OmReadDlg dialog(this);
    dialog.entireSize = job.GetFlashSizeBytes();
    if (dialog.ShowModal() != wxID_OK)
        return;
    job.part = {dialog.start, dialog.size};
    if (!job.Check())
        return;
    job.image = &BeginFlashData();
    OmActionProgress progress(this);
    job.Run(progress);
    progress.Show(false);
    ShowFlashData(); // what came in before an abort or a failure stays
}

void OmMainFrame::OnBlankCheck(wxCommandEvent&) {
    OmBlankCheckJob job(OmFlashProgrammer::GetInstance());
    if (!job.Open())
        return;
    OmBlankCheckDlg dialog(this);
    dialog.entireSize = job.GetFlashSizeBytes();
    dialog.noData = dataImage_.IsEmpty();
    if (dialog.ShowModal() != wxID_OK)
        return;
    if (dialog.pieceOfMemory)
        job.part = {dialog.from, dialog.size};
    else
        job.data = {&dataImage_, dialog.ignoreAddress, dialog.newStart};
    RunJob(this, job);
}

void OmMainFrame::OnVerify(wxCommandEvent&) {
    OmVerifyJob job(OmFlashProgrammer::GetInstance());
    job.data = {&dataImage_};
    if (!job.Open())
        return;
    OmVerifyDlg dialog(this);
    if (dialog.ShowModal() != wxID_OK)
        return;
    job.data = {&dataImage_, dialog.ignoreAddress, dialog.newStart};
    RunJob(this, job);
}

void OmMainFrame::OnGoToOffset(wxCommandEvent&) {
    OmGoToOffsetDlg dialog(this);
    if (dialog.ShowModal() != wxID_OK)
        return;
    uint32_t line = 0;
    const bool hasData = hexView_->FindLine(dialog.offset, line);
    hexView_->ScrollToLine(line);
    if (!hasData)
        ShowMessage(
            wxString::Format(_("There is no data at offset %Xh."), dialog.offset).ToStdWstring(),
            kInformationBox);
}
