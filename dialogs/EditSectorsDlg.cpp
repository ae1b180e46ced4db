#include "dialogs/EditSectorsDlg.h"

#include "dialogs/SectorTexts.h"
#include "widgets/NumberParsing.h"

#include <algorithm>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kTableColumns = 36;
constexpr unsigned kTableRows = 16;

} // namespace

OmEditSectorsDlg::OmEditSectorsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Sectors"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(this, wxID_ANY,
                                 _("Please define here the sector configuration of a flash chip "
                                   "(one or more of these chips form a flash array).\nAdd sectors "
                                   "by groups of contiguous sectors of the same size.")),
                RowFlags());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    BuildGroups(row);
    table_ = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                            wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
    UseFixedPitch(*table_);
    IndentText(*table_);
    table_->SetMinSize(MeasureText(*table_, kTableColumns, kTableRows));
    row->Add(table_, RowFlags(1));
    column->Add(row, wxSizerFlags(1).Expand());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

void OmEditSectorsDlg::BuildGroups(wxSizer* content) {
    const auto [box, column] = AddGroup(this, content, _("Groups of sectors"));
    wxFlexGridSizer* rows = MakeTextRows();
    countRow_ = AddTextRow(box, rows, _("&Number of sectors in a group:"), "");
    sizeRow_ = AddTextRow(box, rows, _("&Sector size in bytes:"), "");
    column->Add(rows, RowFlags());
    list_ = new wxListBox(box, wxID_ANY);
    list_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { ShowSelectedRow(); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(list_, wxSizerFlags(1).Expand());
    row->Add(BuildButtons(box), wxSizerFlags().Expand().Border(wxLEFT));
    column->Add(row, RowFlags(1));
}

wxSizer* OmEditSectorsDlg::BuildButtons(wxWindow* parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    AddButton(parent, column, _("&Add"), &OmEditSectorsDlg::Add);
    modify_ = AddButton(parent, column, _("&Modify"), &OmEditSectorsDlg::Modify);
    remove_ = AddButton(parent, column, _("&Remove"), &OmEditSectorsDlg::Remove);
    column->AddSpacer(3 * wxSizerFlags::GetDefaultBorder());
    up_ = AddButton(parent, column, _("&Up"), &OmEditSectorsDlg::MoveUp);
    down_ = AddButton(parent, column, _("&Down"), &OmEditSectorsDlg::MoveDown);
    return column;
}

wxButton* OmEditSectorsDlg::AddButton(wxWindow* parent, wxSizer* column, const wxString& label,
                                      Action action) {
    auto* button = new wxButton(parent, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
    column->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM));
    return button;
}

bool OmEditSectorsDlg::TransferDataToWindow() {
    Redraw(wxNOT_FOUND);
    countRow_.box->SetFocus();
    return wxDialog::TransferDataToWindow();
}

int OmEditSectorsDlg::GetSelectedRow() const {
    return list_->GetSelection();
}

bool OmEditSectorsDlg::IsLastRow(int row) const {
    return row + 1 == static_cast<int>(layout.groups.size());
}

bool OmEditSectorsDlg::ReadFields(OmSectorGroup& group) {
    const std::optional<uint32_t> count = ParseDecimal(countRow_.GetText(), 1);
    if (!count)
        return RefuseInput(*countRow_.box, _("Number of sectors in a group must be >= 1."));
    const std::optional<uint32_t> size = ParseDecimal(sizeRow_.GetText(), 1);
    if (!size)
        return RefuseInput(*sizeRow_.box, _("Sector size must be >= 1."));
    group = {*count, *size};
    return true;
}

void OmEditSectorsDlg::Add() {
    OmSectorGroup group;
    if (!ReadFields(group))
        return;
    const int row = GetSelectedRow();
    const int end = static_cast<int>(layout.groups.size());
    const int position = row != wxNOT_FOUND && !IsLastRow(row) ? row + 1 : end;
    layout.Insert(group.Count, group.Size, position);
    Redraw(std::min(position, static_cast<int>(layout.groups.size()) - 1));
}

void OmEditSectorsDlg::Modify() {
    const int row = GetSelectedRow();
    OmSectorGroup group;
    if (row == wxNOT_FOUND || !ReadFields(group) || layout.groups[row] == group)
        return;
    layout.groups[row] = group;
    const bool merged = layout.Normalise();
    Redraw(merged ? wxNOT_FOUND : row);
}

void OmEditSectorsDlg::Remove() {
    const int row = GetSelectedRow();
    if (row == wxNOT_FOUND)
        return;
    layout.Erase(row);
    Redraw(wxNOT_FOUND);
}

void OmEditSectorsDlg::MoveUp() {
    const int row = GetSelectedRow();
    if (row > 0)
        SwapGroups(row - 1, row - 1);
}

void OmEditSectorsDlg::MoveDown() {
    const int row = GetSelectedRow();
    if (row != wxNOT_FOUND && !IsLastRow(row))
        SwapGroups(row, row + 1);
}

void OmEditSectorsDlg::SwapGroups(int upper, int place) {
    const size_t before = layout.groups.size();
    layout.SwapWithNext(upper);
    Redraw(layout.groups.size() == before ? place : wxNOT_FOUND);
}

void OmEditSectorsDlg::Redraw(int selectedRow) {
    wxArrayString rows;
    for (const OmSectorGroup& group : layout.groups)
        rows.push_back(FormatSectorGroup(group));
    list_->Set(rows);
    list_->SetSelection(selectedRow);
    table_->ChangeValue(FormatSectorTable(layout));
    ShowSelectedRow();
}

void OmEditSectorsDlg::ShowSelectedRow() {
    const int row = GetSelectedRow();
    wxString count;
    wxString size;
    if (row != wxNOT_FOUND) {
        count.Printf("%u", layout.groups[row].Count);
        size.Printf("%u", layout.groups[row].Size);
    }
    countRow_.box->ChangeValue(count);
    sizeRow_.box->ChangeValue(size);
    EnableButtons(row);
}

void OmEditSectorsDlg::EnableButtons(int row) {
    const wxWindow* focused = FindFocus();
    const bool selected = row != wxNOT_FOUND;
    modify_->Enable(selected);
    remove_->Enable(selected);
    up_->Enable(selected && row > 0);
    down_->Enable(selected && !IsLastRow(row));
    for (const wxButton* button : {modify_, remove_, up_, down_})
        if (button == focused && !button->IsThisEnabled())
            countRow_.box->SetFocus();
}
