#include "dialogs/SelectSectorsDlg.h"

#include "dialogs/SectorTexts.h"
#include "widgets/NumberParsing.h"

#include <algorithm>
#include <utility>
#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kListColumns = 40;
constexpr unsigned kListRows = 16;

wxArrayString ToArray(const std::vector<std::wstring>& rows) {
    wxArrayString array;
    for (const std::wstring& row : rows)
        array.push_back(row);
    return array;
}

} // namespace

OmSelectSectorsDlg::OmSelectSectorsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Select Sectors"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    note_ = new wxStaticText(this, wxID_ANY, _("NOTE: All addresses here are 8-bit offsets."));
    column->Add(note_, RowFlags());
    column->Add(new wxStaticLine(this), RowFlags());
    column->Add(new wxStaticText(this, wxID_ANY,
                                 _("Select sectors containing addresses from the range (Hex):")),
                RowFlags());
    column->Add(BuildRangeRow(), RowFlags());
    list_ = new wxCheckListBox(this, wxID_ANY);
    UseFixedPitch(*list_);
    list_->SetMinSize(MeasureText(*list_, kListColumns, kListRows));
    list_->Bind(wxEVT_CHECKLISTBOX, [this](wxCommandEvent&) { ShowCount(); });
    column->Add(list_, RowFlags(1));
    column->Add(BuildCountRow(), RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

wxSizer* OmSelectSectorsDlg::BuildRangeRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto addBox = [&](const wxString& label) {
        row->Add(new wxStaticText(this, wxID_ANY, label),
                 wxSizerFlags().CentreVertical().Border(wxRIGHT));
        auto* box = new wxTextCtrl(this, wxID_ANY);
        row->Add(box, wxSizerFlags(1).CentreVertical().DoubleBorder(wxRIGHT));
        return box;
    };
    fromBox_ = addBox(_("&From:"));
    toBox_ = addBox(_("&To:"));
    auto* select = new wxButton(this, wxID_ANY, _("&Select"));
    select->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { SelectRange(); });
    row->Add(select, wxSizerFlags().CentreVertical());
    return row;
}

wxSizer* OmSelectSectorsDlg::BuildCountRow() {
    unlistedNote_ = new wxStaticText(this, wxID_ANY, "");
    unlistedNote_->Hide();
    countText_ = new wxStaticText(this, wxID_ANY, _("0 sectors selected"));
    auto* deselect = new wxButton(this, wxID_ANY, _("&Deselect All"));
    deselect->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { DeselectAll(); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(countText_, wxSizerFlags(1).CentreVertical());
    row->Add(deselect, wxSizerFlags().CentreVertical());
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(unlistedNote_, wxSizerFlags().Border(wxBOTTOM));
    column->Add(row, wxSizerFlags().Expand());
    return column;
}

bool OmSelectSectorsDlg::TransferDataToWindow() {
    FillList();
    for (const uint32_t index : selection)
        Tick(index, 1);
    ShowCount();
    ShowMode();
    fromBox_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

void OmSelectSectorsDlg::FillList() {
    list_->Set(ToArray(FormatSectorRows(*sectorMap, chipCount)));
    const std::wstring unlisted = FormatUnlistedNote(*sectorMap);
    unlistedNote_->SetLabel(unlisted);
    unlistedNote_->Show(!unlisted.empty());
}

void OmSelectSectorsDlg::ShowMode() {
    if (mode == OmSelectSectorsMode::Lock)
        FindWindow(wxID_OK)->SetLabel(_("&Lock"));
    if (mode == OmSelectSectorsMode::Unlock) {
        FindWindow(wxID_OK)->SetLabel(_("&Unlock"));
        note_->SetLabel(
            _("NOTE1: Many flash memory devices do not support individual sector unlocking,\n"
              "instead all sectors are unlocked simultaneously upon issuing a single sector\n"
              "unlock command to any device address. To unlock these devices' sectors it's\n"
              "enough to select just any one sector from the list below.\n\n"
              "NOTE2: All addresses here are 8-bit offsets."));
    }
    GetSizer()->SetSizeHints(this);
    CentreOnParent();
}

void OmSelectSectorsDlg::ShowCount() {
    wxArrayInt ticked;
    countText_->SetLabel(FormatSelectedCount(list_->GetCheckedItems(ticked)));
}

// Only listed sectors can be ticked, whatever the caller or the layout says.
void OmSelectSectorsDlg::Tick(uint32_t first, uint32_t count) {
    const uint64_t end = std::min<uint64_t>(uint64_t{first} + count, list_->GetCount());
    for (uint64_t row = first; row < end; ++row)
        list_->Check(static_cast<unsigned>(row));
}

bool OmSelectSectorsDlg::ReadAddress(wxTextCtrl* box, uint32_t& address, const wxString& warning) {
    const std::wstring text = TrimText(box->GetValue().ToStdWstring());
    if (text.empty())
        return true;
    const std::optional<uint32_t> value = ParseScanningHex(text);
    if (!value)
        return RefuseInput(*box, warning);
    address = *value;
    return true;
}

void OmSelectSectorsDlg::SelectRange() {
    uint32_t from = 0;
    uint32_t to = kMaxAddress;
    if (!ReadAddress(fromBox_, from,
                     _("Invalid 'from' address.\nAddress must be an unsigned hexadecimal "
                       "integer.")) ||
        !ReadAddress(toBox_, to,
                     _("Invalid 'to' address.\nAddress must be an unsigned hexadecimal integer.")))
        return;
    if (from > to)
        std::swap(from, to);
    uint32_t first = 0;
    uint32_t count = 0;
    sectorMap->GetSectorRange(chipCount, from, to, first, count);
    Tick(first, count);
    ShowCount();
}

void OmSelectSectorsDlg::DeselectAll() {
    for (unsigned row = 0; row < list_->GetCount(); ++row)
        list_->Check(row, false);
    ShowCount();
}

bool OmSelectSectorsDlg::TransferDataFromWindow() {
    wxArrayInt ticked;
    if (list_->GetCheckedItems(ticked) == 0 && mode != OmSelectSectorsMode::Plain)
        return RefuseInput(*list_, _("No sectors selected."));
    selection = OmSectorRange(ticked.begin(), ticked.end());
    return true;
}
