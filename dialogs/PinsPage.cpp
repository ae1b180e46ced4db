#include "dialogs/PinsPage.h"

#include "dialogs/PinCombo.h"
#include "widgets/DialogLayout.h"

#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kListRows = 12;
constexpr wchar_t kNoError[] = L"   ";

bool IsInside(const wxWindow* window, const wxWindow* parent) {
    while (window && window != parent)
        window = window->GetParent();
    return window != nullptr;
}

bool IsEnter(int key) {
    return key == WXK_RETURN || key == WXK_NUMPAD_ENTER;
}

void ShowOneLine(wxTextCtrl& line, const std::wstring& text) {
    const wxString first = wxString(text).BeforeFirst('\n');
    line.ChangeValue(first == text ? first : first + L" \u2026");
    line.SetToolTip(text);
}

wxString ReadClipboard() {
    wxTextDataObject text;
    const wxClipboardLocker lock;
    return !lock || !wxTheClipboard->GetData(text) ? wxString() : text.GetText();
}

} // namespace

OmPinsPage::OmPinsPage(wxWindow* parent, OmSetupSession& session)
    : wxPanel(parent), session_(session), chooser_(this, session) {
    Bind(wxEVT_CHAR_HOOK, &OmPinsPage::OnKey, this);
}

wxButton* OmPinsPage::AddButton(wxSizer* row, const wxString& label, Action action) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
    row->Add(button, wxSizerFlags().Border(wxRIGHT));
    return button;
}

void OmPinsPage::AddList(wxSizer* column, std::span<const OmPinColumn> columns) {
    list_ = new OmPinListCtrl(this, columns);
    list_->SetMinSize(wxSize(-1, MeasureText(*list_, 1, kListRows).y));
    for (const auto& type :
         {wxEVT_LIST_ITEM_SELECTED, wxEVT_LIST_ITEM_DESELECTED, wxEVT_LIST_ITEM_FOCUSED})
        list_->Bind(type, [this](wxListEvent&) {
            if (!IsBeingDeleted()) // the list loses its selection when it goes
                ShowSelection();
        });
    list_->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent&) { EditSelected(); });
    column->Add(list_, RowFlags(1));
}

void OmPinsPage::AddConflictLines(wxSizer* column) {
    error_ = MakeMessageLine(this);
    error_->ChangeValue(kNoError);
    details_ = MakeMessageLine(this);
    column->Add(error_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
    column->Add(details_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
}

void OmPinsPage::AddEditButtons(wxSizer* row) {
    AddButton(row, _("Cop&y"), &OmPinsPage::Copy);
    AddButton(row, _("&Paste"), &OmPinsPage::Paste);
    undo_ = AddButton(row, _("&Undo"), &OmPinsPage::Undo);
}

void OmPinsPage::ShowPins() {
    list_->ShowRows(MakeRows());
    ShowConflicts();
    ShowSelection();
    undo_->Enable(session_.CanUndo());
}

void OmPinsPage::ShowChain(bool selectFirst) {
    chooser_.ListDevices();
    list_->ShowRows(MakeRows());
    if (selectFirst)
        list_->SelectOnly(0);
    ShowPins();
}

void OmPinsPage::ShowConflicts() {
    const std::wstring error = GetConflictError(session_.conflicts);
    ShowLine(*error_, error.empty() ? kNoError : error);
    ShowOneLine(*details_, DescribeConflicts(session_.conflicts, session_.pins));
}

void OmPinsPage::EditSelected() {
    if (chooser_.GetCombo().IsEnabled())
        chooser_.GetCombo().SetFocus();
}

void OmPinsPage::OnKey(wxKeyEvent& event) {
    const wxWindow* focus = FindFocus();
    const bool isOpen = chooser_.GetCombo().IsPopupShown();
    const bool inBox = IsInside(focus, &chooser_.GetCombo());
    if (IsInside(focus, list_) && OnListKey(event))
        return;
    if (IsEnter(event.GetKeyCode()) && inBox && !isOpen)
        Enter();
    else
        event.Skip();
}

bool OmPinsPage::OnListKey(const wxKeyEvent& event) {
    if (event.GetModifiers() == wxMOD_CONTROL)
        return OnListControlKey(event.GetKeyCode());
    if (event.HasAnyModifiers())
        return false;
    if (event.GetKeyCode() == WXK_DELETE)
        Remove();
    else if (IsEnter(event.GetKeyCode()))
        EditSelected();
    else
        return false;
    return true;
}

bool OmPinsPage::OnListControlKey(int key) {
    switch (key) {
    case 'A':
        list_->SelectAll();
        return true;
    case 'C':
        Copy();
        return true;
    case 'V':
        Paste();
        return true;
    default:
        return false;
    }
}

// All rows if none is selected: whoever wants a part selects it.
void OmPinsPage::Copy() {
    std::vector<int> rows = list_->GetSelectedRows();
    for (int row = 0; list_->GetSelectedItemCount() == 0 && row < list_->GetItemCount(); ++row)
        rows.push_back(row);
    const wxClipboardLocker lock;
    if (!!lock)
        wxTheClipboard->SetData(new wxTextDataObject(FormatRows(rows)));
}

void OmPinsPage::Paste() {
    PasteText(ReadClipboard().ToStdWstring());
}

void OmPinsPage::Undo() {
    session_.Undo();
}
