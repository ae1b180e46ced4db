#include "dialogs/BsdlSearchDlg.h"

#include "dialogs/BsdlChecks.h"
#include "dialogs/TextViewerDlg.h"
#include "widgets/DialogLayout.h"

#include <algorithm>
#include <wx/button.h>
#include <wx/listctrl.h>
#include <wx/panel.h>
#include <wx/stattext.h>

namespace {

constexpr int kMaxErrors = 50; // kept; later ones are only counted
constexpr unsigned kListRows = 14;

struct Column {
    const char* title;
    unsigned characters;
};

constexpr Column kColumns[] = {
    {wxTRANSLATE("BSDL File"), 40},
    {wxTRANSLATE("Entity"), 22},
    {wxTRANSLATE("Package(s)"), 14},
    {wxTRANSLATE("IDCODE"), 34},
};

// "path;entity;packages;pattern"; only the path may hold a separator of its own.
std::vector<wxString> SplitFind(wxString text) {
    std::vector<wxString> fields(std::size(kColumns));
    for (size_t field = fields.size(); --field > 0;) {
        fields[field] = text.AfterLast(';');
        text = text.BeforeLast(';');
    }
    fields[0] = text;
    return fields;
}

} // namespace

OmBsdlSearchDlg::OmBsdlSearchDlg(wxWindow* parent, const OmBitVector& idcode,
                                 const std::vector<std::string>& folders)
    : wxDialog(parent, wxID_ANY, _("Searching for BSDL Files"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      finder_(this) {
    finder_.SetIdcode(idcode);
    finder_.SetDirectories(folders);
    BuildControls();
    BindEvents();
    UpdateEnabled();
    list_->SetFocus();
}

void OmBsdlSearchDlg::BuildControls() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    status_ = new wxStaticText(this, wxID_ANY,
                               _("Searching for *.bsd, *.bsdl and *.bsm files matching the device "
                                 "IDCODE..."));
    column->Add(status_, RowFlags());
    currentFile_ = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                    wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_START);
    column->Add(currentFile_, RowFlags());
    wxPanel* frame = MakeFrame(this);
    list_ = BuildList(frame);
    FillFrame(frame, list_);
    column->Add(frame, RowFlags(1));
    column->Add(BuildButtons(), RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
    ok_ = static_cast<wxButton*>(FindWindow(wxID_OK));
}

wxListCtrl* OmBsdlSearchDlg::BuildList(wxWindow* parent) {
    auto* list = new wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                wxLC_REPORT | wxLC_SINGLE_SEL | wxBORDER_NONE);
    unsigned characters = 0;
    for (const Column& column : kColumns) {
        list->AppendColumn(wxGetTranslation(column.title), wxLIST_FORMAT_LEFT,
                           MeasureText(*list, column.characters, 1).x);
        characters += column.characters;
    }
    list->SetInitialSize(MeasureText(*list, characters + 2, kListRows));
    return list;
}

wxSizer* OmBsdlSearchDlg::BuildButtons() {
    stop_ = new wxButton(this, wxID_STOP, _("&Stop"));
    errors_ = new wxButton(this, wxID_ANY, _("0 &errors"));
    view_ = new wxButton(this, wxID_ANY, _("&View File..."));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(stop_, wxSizerFlags().Border(wxRIGHT));
    row->Add(errors_, wxSizerFlags().Border(wxRIGHT));
    row->Add(view_);
    return row;
}

void OmBsdlSearchDlg::BindEvents() {
    Bind(wxEVT_IDLE, &OmBsdlSearchDlg::OnFirstIdle, this);
    Bind(OM_EVT_BSDL_FILE, &OmBsdlSearchDlg::OnFile, this);
    Bind(OM_EVT_BSDL_FOUND, &OmBsdlSearchDlg::OnFound, this);
    Bind(OM_EVT_BSDL_LOG, &OmBsdlSearchDlg::OnLog, this);
    Bind(OM_EVT_BSDL_DONE, &OmBsdlSearchDlg::OnDone, this);
    stop_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Stop(); });
    errors_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ShowErrors(); });
    view_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ViewSelectedFile(); });
    list_->Bind(wxEVT_SIZE, &OmBsdlSearchDlg::OnListSize, this);
    list_->Bind(wxEVT_LIST_ITEM_SELECTED, [this](wxListEvent&) { UpdateEnabled(); });
    list_->Bind(wxEVT_LIST_ITEM_DESELECTED, [this](wxListEvent&) { UpdateEnabled(); });
    list_->Bind(wxEVT_LIST_ITEM_ACTIVATED, [this](wxListEvent&) { PressOk(); });
}

void OmBsdlSearchDlg::OnFirstIdle(wxIdleEvent& event) {
    event.Skip();
    Unbind(wxEVT_IDLE, &OmBsdlSearchDlg::OnFirstIdle, this);
    finder_.StartSearch();
}

// The paths get whatever room there is.
void OmBsdlSearchDlg::OnListSize(wxSizeEvent& event) {
    event.Skip();
    int rest = list_->GetClientSize().x;
    for (size_t column = 1; column < std::size(kColumns); ++column)
        rest -= list_->GetColumnWidth(static_cast<int>(column));
    const int least = MeasureText(*list_, kColumns[0].characters, 1).x;
    list_->SetColumnWidth(0, std::max(rest, least));
}

void OmBsdlSearchDlg::EndModal(int returnCode) {
    finder_.CancelSearch();
    wxDialog::EndModal(returnCode);
}

void OmBsdlSearchDlg::OnFile(wxCommandEvent& event) {
    currentFile_->SetLabelText(event.GetString());
}

void OmBsdlSearchDlg::OnFound(wxCommandEvent& event) {
    const std::vector<wxString> fields = SplitFind(event.GetString());
    const long row = list_->InsertItem(foundCount_++, fields[0]);
    for (size_t column = 1; column < fields.size(); ++column)
        list_->SetItem(row, static_cast<int>(column), fields[column]);
}

void OmBsdlSearchDlg::OnLog(wxCommandEvent& event) {
    ++errorCount_;
    errors_->SetLabel(wxString::Format(_("%d &errors"), errorCount_));
    if (errorCount_ <= kMaxErrors)
        errorText_ += event.GetString() + "\n";
    if (errorCount_ == kMaxErrors)
        errorText_ += _("\nToo many errors -- output truncated.");
}

void OmBsdlSearchDlg::OnDone(wxCommandEvent& event) {
    list_->SetFocus();
    stop_->Disable();
    status_->SetLabel(event.GetString() == "canceled" ? _("Search has been stopped by a user.")
                                                      : _("Search done."));
    currentFile_->SetLabel(wxString::Format(_("%d file(s) found."), foundCount_));
}

void OmBsdlSearchDlg::Stop() {
    finder_.CancelSearch();
    list_->SetFocus();
    stop_->Disable();
}

void OmBsdlSearchDlg::ShowErrors() {
    OmTextViewerDlg dialog(this);
    dialog.SetTitle(_("Errors"));
    dialog.SetText(errorText_);
    dialog.ShowModal();
}

void OmBsdlSearchDlg::ViewSelectedFile() {
    ViewFile(GetSelectedPath());
}

void OmBsdlSearchDlg::UpdateEnabled() {
    const bool selected = list_->GetSelectedItemCount() > 0;
    ok_->Enable(selected);
    view_->Enable(selected);
}

void OmBsdlSearchDlg::PressOk() {
    if (list_->GetSelectedItemCount() != 1)
        return;
    wxCommandEvent press(wxEVT_BUTTON, wxID_OK);
    press.SetEventObject(ok_);
    ok_->GetEventHandler()->ProcessEvent(press);
}

wxString OmBsdlSearchDlg::GetSelectedPath() const {
    const long row = list_->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED);
    return row < 0 ? wxString() : list_->GetItemText(row);
}

bool OmBsdlSearchDlg::TransferDataFromWindow() {
    resultPath = GetSelectedPath();
    return true;
}
