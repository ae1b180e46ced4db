#include "jtag/CablePage.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/stattext.h>

namespace {

constexpr int kColumns = 3;
constexpr unsigned kChoiceCharacters = 36; // of a device with its serial number, or of a hint

} // namespace

void OmCablePage::BeginRow(const wxString& label) {
    if (!rows_) {
        const int gap = wxSizerFlags::GetDefaultBorder();
        rows_ = new wxFlexGridSizer(kColumns, wxSize(gap, gap));
        rows_->AddGrowableCol(1);
        SetSizer(rows_);
    }
    if (label.empty())
        rows_->AddSpacer(0);
    else
        rows_->Add(new wxStaticText(this, wxID_ANY, label), wxSizerFlags().CentreVertical());
}

void OmCablePage::EndRow(wxWindow* control, wxWindow* behind) {
    rows_->Add(control, wxSizerFlags().Expand());
    if (!behind)
        rows_->AddSpacer(0);
    else if (dynamic_cast<wxButton*>(behind))
        rows_->Add(behind, wxSizerFlags().Expand());
    else
        rows_->Add(behind, wxSizerFlags().CentreVertical());
}

wxButton* OmCablePage::MakeButton(const wxString& label, std::function<void()> action) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [run = std::move(action)](wxCommandEvent&) { run(); });
    return button;
}

wxChoice* OmCablePage::MakeChoice(const wxArrayString& entries) {
    auto* choice = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, entries);
    choice->SetMinSize(wxSize(MeasureText(*choice, kChoiceCharacters, 1).x, -1));
    return choice;
}

bool OmCablePage::Refuse(bool isShown, wxWindow& control, const wxString& text) {
    if (!isShown)
        return true;
    return text.empty() ? false : RefuseInput(control, text);
}

void FillChoice(wxChoice& choice, const wxArrayString& entries, const wxString& hint) {
    choice.Enable(!entries.empty());
    if (!entries.empty())
        return choice.Set(entries);
    choice.Set(wxArrayString(1, &hint));
    choice.SetSelection(0);
}

int GetSelected(const wxChoice& choice) {
    return choice.IsThisEnabled() ? choice.GetSelection() : wxNOT_FOUND;
}
