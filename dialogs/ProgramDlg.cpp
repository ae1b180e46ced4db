#include "dialogs/ProgramDlg.h"

#include "data/DataImage.h"
#include "platform/UserInterface.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kEraseTextWidth = 60;

} // namespace

OmProgramDlg::OmProgramDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Program")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, _("Programming options"));
    BuildEraseControls(box, rows);
    verifyCheck_ = new wxCheckBox(box, wxID_ANY, _("&Verify after programming"));
    rows->Add(verifyCheck_, RowFlags());
    newStartControls_.emplace(
        box, rows,
        OmNewStartControls::Texts{_("&Ignore the data view contents address and instead program "
                                    "data into the flash starting at address:"),
                                  _("(enter address as a hex 8-bit offset)"),
                                  EmptyNewStartWarning(), InvalidAddressWarning()});
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Program")));
}

void OmProgramDlg::BuildEraseControls(wxWindow* parent, wxSizer* column) {
    eraseCheck_ = new wxCheckBox(parent, wxID_ANY, _("&Erase before programming"));
    eraseCheck_->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnEraseChecked(); });
    eraseOptions_ = new wxButton(parent, wxID_ANY, _("Erase &Options..."));
    eraseOptions_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { EditEraseOptions(); });
    eraseText_ = MakeReadOnlyLine(parent, kEraseTextWidth);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(eraseOptions_, wxSizerFlags().CentreVertical());
    row->Add(eraseText_, wxSizerFlags(1).CentreVertical().Border(wxLEFT));
    column->Add(eraseCheck_, RowFlags());
    AddIndented(column, row);
}

bool OmProgramDlg::TransferDataToWindow() {
    eraseCheck_->SetValue(erase);
    UpdateErase();
    verifyCheck_->SetValue(verify);
    newStartControls_->Show(ignoreAddress, newStart);
    eraseCheck_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

void OmProgramDlg::UpdateErase() {
    eraseOptions_->Enable(eraseCheck_->GetValue());
    eraseText_->Enable(eraseCheck_->GetValue());
    ShowLine(*eraseText_, DescribeEraseMode());
}

void OmProgramDlg::OnEraseChecked() {
    if (eraseDisabled && eraseCheck_->GetValue()) {
        eraseCheck_->SetValue(false);
        ShowMessage(DescribeEraseImpossible(), kWarningBox);
        return;
    }
    UpdateErase();
}

wxString OmProgramDlg::DescribeEraseMode() const {
    if (!eraseCheck_->GetValue())
        return {};
    switch (eraseMode) {
    case OmEraseMode::EntireFlash:
        return _("Erase entire flash");
    case OmEraseMode::SectorsForData:
        return _("Erase only sectors necessary to program data view contents");
    case OmEraseMode::SelectedSectors:
        break;
    }
    return wxString::Format(_("Erase %s"), sectorMap->Describe(selectedSectors, chipCount));
}

// How far the data will be moved as things stand.
uint32_t OmProgramDlg::GetDataOffset() const {
    uint32_t start = 0;
    if (dataImage->IsEmpty() || !newStartControls_->IsChecked() || !newStartControls_->Peek(start))
        return 0;
    return start - dataImage->GetChunks().front().address;
}

void OmProgramDlg::EditEraseOptions() {
    OmEraseDlg dialog(this);
    dialog.SetTitle(_("Erase Options"));
    dialog.FindWindow(wxID_OK)->SetLabel(_("&OK"));
    if (eraseMode != OmEraseMode::SelectedSectors)
        selectedSectors.clear();
    dialog.Initialise(eraseMode, *sectorMap, chipCount, *dataImage, GetDataOffset(),
                      selectedSectors);
    if (dialog.ShowModal() != wxID_OK)
        return;
    eraseMode = dialog.mode;
    if (eraseMode == OmEraseMode::SelectedSectors)
        selectedSectors = dialog.selectedSectors;
    UpdateErase();
}

bool OmProgramDlg::TransferDataFromWindow() {
    erase = !eraseDisabled && eraseCheck_->GetValue();
    verify = verifyCheck_->GetValue();
    return newStartControls_->Read(ignoreAddress, newStart);
}
