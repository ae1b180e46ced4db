#include "dialogs/TextViewerDlg.h"

#include "widgets/DialogLayout.h"

#include <wx/button.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kTextColumns = 96;
constexpr unsigned kTextLines = 30;

} // namespace

OmTextViewerDlg::OmTextViewerDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    box_ = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                          wxTE_MULTILINE | wxTE_READONLY | wxTE_PROCESS_ENTER | wxTE_DONTWRAP);
    box_->SetInitialSize(MeasureText(*box_, kTextColumns, kTextLines));
    IndentText(*box_);
    box_->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { PressCancel(*this); });
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(box_, RowFlags(1));
    LayOutDialog(this, column, MakeCloseRow(this));
    FindWindow(wxID_CANCEL)->SetFocus();
}

void OmTextViewerDlg::SetText(const wxString& text) {
    box_->ChangeValue(text);
    box_->SetInsertionPoint(0);
}

void OmTextViewerDlg::UseFixedFont() {
    UseFixedPitch(*box_);
}
