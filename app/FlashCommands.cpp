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
#include "flash/FlashProgrammer.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"

#include <wx/intl.h>

OmActionProgress::OmActionProgress(wxWindow* parent) : OmProgressDlg(parent, _("Please Wait")) {
    Show(true);
}

void OmActionProgress::Report(const wxString& success) {
    Show(false);
    ShowMessage(success.ToStdWstring(), kInformationBox);
}

uint32_t GetMoveDistance(const OmDataImage& image, uint32_t newStart) {
    return newStart - image.GetChunks().front().address;
}

OmActionImage::OmActionImage(const OmDataImage& shown, bool move, uint32_t newStart)
    : shown_(shown) {
    if (!move)
        return;
    const OmBusyCursor busy;
    moved_ = shown.ShiftedBy(GetMoveDistance(shown, newStart));
}

namespace {

std::vector<OmAddressRange> GetRangesToCheck(const OmBlankCheckDlg& dialog,
                                             const OmDataImage& image) {
    if (dialog.pieceOfMemory)
        return {{dialog.from, dialog.size}};
    const uint32_t distance = dialog.ignoreAddress ? GetMoveDistance(image, dialog.newStart) : 0;
    std::vector<OmAddressRange> ranges;
    for (const OmDataChunk& chunk : image.GetChunks())
        ranges.push_back({chunk.address + distance, static_cast<uint32_t>(chunk.bytes.size())});
    return ranges;
}

} // namespace

void OmMainFrame::OnInfo(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    OmFlashReport report;
    if (!programmer.Prepare(kPrepareFlashCommands) || !programmer.GetFlashInfo(report))
        return;
    OmFlashInfoDlg(this, MakeFlashReportPage(report)).ShowModal();
}

// The question about unsaved data comes before anything reaches the cable.
void OmMainFrame::OnRead(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!PromptSaveData() || !programmer.Prepare(kPrepareNone))
        return;
    OmReadDlg dialog(this);
    dialog.entireSize = programmer.GetFlashSizeBytes();
    if (dialog.ShowModal() != wxID_OK)
        return;
    OmDataImage& image = BeginFlashData();
    OmActionProgress progress(this);
    programmer.ReadFlash(progress, dialog.start, dialog.size, image);
    progress.Show(false);
    ShowFlashData(); // what came in before an abort or a failure stays
}

void OmMainFrame::OnBlankCheck(wxCommandEvent&) {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareNone))
        return;
    OmBlankCheckDlg dialog(this);
    dialog.entireSize = programmer.GetFlashSizeBytes();
    dialog.noData = dataImage_.IsEmpty();
    if (dialog.ShowModal() != wxID_OK)
        return;
    const std::vector<OmAddressRange> ranges = GetRangesToCheck(dialog, dataImage_);
    OmActionProgress progress(this);
    OmUnitedProgressCallback united(&progress);
    if (programmer.BlankCheckFlash(united, ranges))
        progress.Report(_("Selected flash region is blank."));
}

void OmMainFrame::OnVerify(wxCommandEvent&) {
    if (dataImage_.IsEmpty()) {
        ShowMessage(_("No data to verify.").ToStdWstring(), kInformationBox);
        return;
    }
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    if (!programmer.Prepare(kPrepareNone))
        return;
    OmVerifyDlg dialog(this);
    if (dialog.ShowModal() != wxID_OK)
        return;
    const OmActionImage image(dataImage_, dialog.ignoreAddress, dialog.newStart);
    OmActionProgress progress(this);
    OmUnitedProgressCallback united(&progress);
    if (programmer.VerifyFlash(united, image.Get()))
        progress.Report(_("Data verification completed successfully."));
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
