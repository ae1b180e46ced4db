#include "dialogs/EraseDlg.h"

#include "data/DataImage.h"
#include "dialogs/SelectSectorsDlg.h"
#include "flash/TouchedSectors.h"
#include "widgets/DialogLayout.h"

#include <wx/button.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

namespace {

// Shows three or four ranges of addresses without scrolling.
constexpr unsigned kSectorsTextWidth = 60;

std::wstring DescribeSectorsForData(const OmFlashSectorLayout& sectorMap, uint32_t chipCount,
                                    const OmDataImage& image, uint32_t dataOffset) {
    if (image.IsEmpty() || sectorMap.IsEmpty())
        return {};
    const OmSectorRange touched = FindTouchedSectors(sectorMap, chipCount, image, dataOffset);
    if (touched.empty())
        return _("Nothing to erase -- data starting address is beyond flash address space")
            .ToStdWstring();
    return sectorMap.Describe(touched, chipCount);
}

} // namespace

OmEraseDlg::OmEraseDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Erase")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, _("Select sectors to erase"));
    entireRadio_ = AddRadio(box, rows, _("Erase entire &flash"), wxRB_GROUP);
    dataRadio_ =
        AddRadio(box, rows, _("Erase only sectors &necessary to program data view contents"), 0);
    dataText_ = MakeReadOnlyLine(box, kSectorsTextWidth);
    AddIndented(rows, dataText_);
    selectedRadio_ = AddRadio(box, rows, _("Erase &selected sectors only"), 0);
    BuildSelectRow(box, rows);
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Erase")));
}

wxRadioButton* OmEraseDlg::AddRadio(wxWindow* parent, wxSizer* column, const wxString& label,
                                    long style) {
    auto* radio =
        new wxRadioButton(parent, wxID_ANY, label, wxDefaultPosition, wxDefaultSize, style);
    radio->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateEnabled(); });
    column->Add(radio, RowFlags());
    return radio;
}

void OmEraseDlg::BuildSelectRow(wxWindow* parent, wxSizer* column) {
    selectButton_ = new wxButton(parent, wxID_ANY, _("Selec&t..."));
    selectButton_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { SelectSectors(); });
    selectedText_ = MakeReadOnlyLine(parent, kSectorsTextWidth);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(selectButton_, wxSizerFlags().CentreVertical());
    row->Add(selectedText_, wxSizerFlags(1).CentreVertical().Border(wxLEFT));
    AddIndented(column, row);
}

void OmEraseDlg::Initialise(OmEraseMode newMode, const OmFlashSectorLayout& newSectorMap,
                            uint32_t newChipCount, const OmDataImage& dataImage,
                            uint32_t dataOffset, const OmSectorRange& selection) {
    mode = newMode;
    sectorMap = &newSectorMap;
    chipCount = newChipCount;
    selectedSectors = selection;
    sectorsForData = DescribeSectorsForData(newSectorMap, newChipCount, dataImage, dataOffset);
}

bool OmEraseDlg::TransferDataToWindow() {
    if (sectorsForData.empty())
        DisableDataSectors(_("(currently disabled because no data to program)"));
    else
        ShowLine(*dataText_, sectorsForData);
    if (sectorMap->IsEmpty()) {
        DisableDataSectors(_("(currently disabled because sectors configuration is unknown)"));
        selectedRadio_->Disable();
    }
    ChooseMode();
    ShowSelection();
    UpdateEnabled();
    return wxDialog::TransferDataToWindow();
}

void OmEraseDlg::DisableDataSectors(const wxString& reason) {
    dataRadio_->Disable();
    dataText_->Disable();
    ShowLine(*dataText_, reason);
}

void OmEraseDlg::ChooseMode() {
    wxRadioButton* const radios[] = {entireRadio_, dataRadio_, selectedRadio_};
    wxRadioButton* chosen = radios[static_cast<size_t>(mode)];
    chosen->SetValue(true);
    chosen->SetFocus();
}

void OmEraseDlg::ShowSelection() {
    ShowLine(*selectedText_, sectorMap->Describe(selectedSectors, chipCount));
}

void OmEraseDlg::UpdateEnabled() {
    selectButton_->Enable(selectedRadio_->GetValue());
    selectedText_->Enable(selectedRadio_->GetValue());
}

void OmEraseDlg::SelectSectors() {
    OmSelectSectorsDlg dialog(this);
    dialog.sectorMap = sectorMap;
    dialog.chipCount = chipCount;
    dialog.selection = selectedSectors;
    if (dialog.ShowModal() != wxID_OK)
        return;
    selectedSectors = dialog.selection;
    ShowSelection();
}

bool OmEraseDlg::TransferDataFromWindow() {
    if (selectedRadio_->GetValue()) {
        if (selectedSectors.empty())
            return RefuseInput(*selectButton_, _("No sectors selected."));
        mode = OmEraseMode::SelectedSectors;
    } else {
        mode = dataRadio_->GetValue() ? OmEraseMode::SectorsForData : OmEraseMode::EntireFlash;
    }
    return true;
}
