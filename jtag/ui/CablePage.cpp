#include "jtag/ui/CablePage.h"

#include <algorithm>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/gbsizer.h>
#include <wx/stattext.h>

namespace {

// Columns of a page.
enum { kLabelColumn, kControlColumn, kTrailingColumn };

constexpr unsigned kChoiceCharacters = 36; // of a device with its serial number, or of a hint

} // namespace

void OmCablePage::BeginRow(const wxString& label) {
    if (!rows_) {
        const int gap = wxSizerFlags::GetDefaultBorder();
        rows_ = new wxGridBagSizer(gap, gap);
        SetSizer(rows_);
    }
    labels_.push_back(new wxStaticText(this, wxID_ANY, label));
    rows_->Add(labels_.back(), wxGBPosition(rows_->GetRows(), kLabelColumn), wxGBSpan(),
               wxALIGN_CENTRE_VERTICAL);
}

// A control with nothing beside it reaches to the right edge.
void OmCablePage::EndRow(wxWindow* control, wxWindow* trailing) {
    const int row = rows_->GetRows() - 1;
    rows_->Add(control, wxGBPosition(row, kControlColumn), wxGBSpan(1, trailing ? 1 : 2), wxEXPAND);
    if (!rows_->IsColGrowable(kControlColumn))
        rows_->AddGrowableCol(kControlColumn);
    if (!trailing)
        return;
    const int flags = dynamic_cast<wxButton*>(trailing) ? int{wxEXPAND} : wxALIGN_CENTRE_VERTICAL;
    rows_->Add(trailing, wxGBPosition(row, kTrailingColumn), wxGBSpan(), flags);
}

int OmCablePage::GetLabelWidth() const {
    int width = 0;
    for (const wxStaticText* label : labels_)
        width = std::max(width, label->GetBestSize().x);
    return width;
}

void OmCablePage::SetLabelWidth(int width) {
    for (wxStaticText* label : labels_)
        label->SetMinSize(wxSize(width, -1));
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
