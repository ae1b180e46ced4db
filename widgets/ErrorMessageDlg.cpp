#include "widgets/ErrorMessageDlg.h"

#include "widgets/DialogLayout.h"
#include "widgets/Icons.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/valgen.h>

namespace {

constexpr int kGap = 10;
const wxSize kDetailsSize(520, 220);

} // namespace

OmErrorMessageDlg::OmErrorMessageDlg(wxWindow* parent, const wxString& title)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    const int gap = FromDIP(kGap);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(BuildMessageRow(), wxSizerFlags().Expand().Border(wxALL, gap));
    column->Add(new wxStaticText(this, wxID_ANY, _("Details:")),
                wxSizerFlags().Border(wxLEFT | wxRIGHT, gap));
    column->Add(BuildDetailsBox(), wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, gap));
    auto* close = new wxButton(this, wxID_CANCEL, _("&Close"));
    close->SetDefault();
    column->Add(close, wxSizerFlags().Right().Border(wxALL, gap));
    SetSizer(column);
}

wxSizer* OmErrorMessageDlg::BuildMessageRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* picture = new wxStaticBitmap(this, wxID_ANY, GetPicture("error"));
    auto* text = new wxStaticText(this, wxID_ANY, _("<message>"));
    text->SetValidator(wxGenericValidator(&message));
    row->Add(picture, wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(kGap)));
    row->Add(text, wxSizerFlags(1).CentreVertical());
    return row;
}

wxTextCtrl* OmErrorMessageDlg::BuildDetailsBox() {
    auto* box = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, FromDIP(kDetailsSize),
                               wxTE_MULTILINE | wxTE_READONLY | wxTE_PROCESS_ENTER);
    IndentText(*box);
    box->SetValidator(wxGenericValidator(&details));
    box->SetBackgroundColour(GetBackgroundColour());
    box->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) {
        wxCommandEvent press(wxEVT_BUTTON, wxID_CANCEL);
        FindWindow(wxID_CANCEL)->GetEventHandler()->ProcessEvent(press);
    });
    return box;
}

bool OmErrorMessageDlg::TransferDataToWindow() {
    if (!wxDialog::TransferDataToWindow())
        return false;
    GetSizer()->SetSizeHints(this); // the message has its real length only now
    CentreOnParent();
    FindWindow(wxID_CANCEL)->SetFocus();
    return true;
}
