#include "dialogs/PinListCtrl.h"

#include <wx/settings.h>

namespace {

struct TableColours {
    wxColour evenRow;
    wxColour oddRow;
    wxColour conflict;
    wxColour text;
    wxColour unconnectedText;
    wxColour faultyText;
    wxColour conflictText;
};

// Backgrounds are the table's own, so the texts on them have to be as well.
const TableColours& GetTableColours() {
    static const TableColours light = {
        wxColour(255, 255, 255), wxColour(245, 245, 255), wxColour(255, 64, 0), wxColour(0, 0, 0),
        wxColour(123, 120, 159), wxColour(176, 0, 32),    wxColour(0, 0, 0)};
    static const TableColours dark = {wxColour(43, 43, 43),    wxColour(51, 51, 60),
                                      wxColour(255, 64, 0),    wxColour(238, 238, 236),
                                      wxColour(151, 148, 184), wxColour(255, 138, 128),
                                      wxColour(0, 0, 0)};
    return wxSystemSettings::GetAppearance().IsDark() ? dark : light;
}

} // namespace

OmPinListCtrl::OmPinListCtrl(wxWindow* parent, std::span<const OmPinColumn> columns)
    : wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxLC_REPORT | wxLC_VIRTUAL | wxBORDER_THEME) {
    for (const OmPinColumn& column : columns)
        AppendColumn(column.label, wxLIST_FORMAT_LEFT, FromDIP(column.width));
}

void OmPinListCtrl::ShowRows(std::vector<OmPinRow> rows) {
    const bool sameCount = rows.size() == rows_.size();
    rows_ = std::move(rows);
    if (!sameCount)
        SetItemCount(static_cast<long>(rows_.size()));
    Refresh();
}

std::vector<int> OmPinListCtrl::GetSelectedRows() const {
    std::vector<int> selected;
    for (long row = -1;
         (row = GetNextItem(row, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED)) != wxNOT_FOUND;)
        selected.push_back(static_cast<int>(row));
    return selected;
}

int OmPinListCtrl::GetSelectedRow() const {
    return GetSelectedItemCount() == 1 ? GetSelectedRows().front() : -1;
}

void OmPinListCtrl::SelectOnly(int row) {
    constexpr long kChosen = wxLIST_STATE_SELECTED | wxLIST_STATE_FOCUSED;
    const bool exists = row >= 0 && row < GetItemCount();
    if (exists)
        SetItemState(row, kChosen, kChosen);
    for (const int selected : GetSelectedRows())
        if (selected != row)
            SetItemState(selected, 0, wxLIST_STATE_SELECTED);
    if (exists)
        EnsureVisible(row);
}

void OmPinListCtrl::SelectAll() {
    for (int row = 0; row < GetItemCount(); ++row)
        SetItemState(row, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
}

wxColour OmPinListCtrl::GetRowBackground(int row) const {
    const TableColours& colours = GetTableColours();
    if (rows_[static_cast<size_t>(row)].isInConflict)
        return colours.conflict;
    return row % 2 == 0 ? colours.evenRow : colours.oddRow;
}

wxColour OmPinListCtrl::GetRowTextColour(int row) const {
    const TableColours& colours = GetTableColours();
    const OmPinRow& shown = rows_[static_cast<size_t>(row)];
    if (shown.isInConflict)
        return colours.conflictText;
    if (!shown.isConnected)
        return colours.unconnectedText;
    return shown.isFaulty ? colours.faultyText : colours.text;
}

wxString OmPinListCtrl::OnGetItemText(long row, long column) const {
    return rows_[static_cast<size_t>(row)].texts[static_cast<size_t>(column)];
}

wxItemAttr* OmPinListCtrl::OnGetItemAttr(long row) const {
    attributes_.SetBackgroundColour(GetRowBackground(static_cast<int>(row)));
    attributes_.SetTextColour(GetRowTextColour(static_cast<int>(row)));
    return &attributes_;
}
