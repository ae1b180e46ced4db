#include "jtag/ui/CableSettingsPanel.h"

#include "jtag/CableTable.h"
#include "jtag/ui/CablePage.h"
#include "jtag/ui/CablePages.h"
#include "platform/Translation.h"

#include <algorithm>
#include <wx/choice.h>
#include <wx/simplebook.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

OmCableSettingsPanel::OmCableSettingsPanel(wxWindow* parent)
    : wxPanel(parent), rows_(SortCableRows(&OmCableRow::windowPlace)) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* label = new wxStaticText(this, wxID_ANY, _("Connec&tion:"));
    row->Add(label, wxSizerFlags().CentreVertical().Border(wxRIGHT));
    connection_ = new wxChoice(this, wxID_ANY);
    for (const OmCableRow* each : rows_)
        connection_->Append(Translated(each->label));
    connection_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ShowPage(); });
    row->Add(connection_, wxSizerFlags(1));
    column->Add(row, RowFlags());
    BuildPages();
    AlignLabels(*label);
    column->Add(book_, RowFlags(1));
    SetSizer(column);
}

void OmCableSettingsPanel::BuildPages() {
    book_ = new wxSimplebook(this, wxID_ANY);
    std::vector<OmCablePageMaker> made;
    for (const OmCableRow& row : GetCableRows()) {
        const OmCablePageMaker make = FindCablePageMaker(row.type);
        const auto page = static_cast<size_t>(std::ranges::find(made, make) - made.begin());
        pageOfType_[row.type] = page;
        if (page < made.size())
            continue;
        made.push_back(make);
        pages_.push_back(make(book_, [this] { ShowPage(); }));
        book_->AddPage(pages_.back(), wxString());
    }
    errorText_ = new wxTextCtrl(book_, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                wxTE_MULTILINE | wxTE_READONLY);
    IndentText(*errorText_);
    book_->AddPage(errorText_, wxString());
}

void OmCableSettingsPanel::AlignLabels(wxStaticText& own) {
    int width = own.GetBestSize().x;
    for (const OmCablePage* page : pages_)
        width = std::max(width, page->GetLabelWidth());
    own.SetMinSize(wxSize(width, -1));
    for (OmCablePage* page : pages_)
        page->SetLabelWidth(width);
}

OmCableType OmCableSettingsPanel::GetChosenType() const {
    return rows_[connection_->GetSelection()]->type;
}

void OmCableSettingsPanel::ShowPage() {
    const size_t page = pageOfType_.at(GetChosenType());
    wxString error;
    if (pages_[page]->Check(settings_, error)) {
        book_->ChangeSelection(page);
    } else {
        errorText_->ChangeValue(error);
        book_->ChangeSelection(pages_.size());
    }
    Layout();
}

bool OmCableSettingsPanel::IsShown(size_t page) const {
    return book_->GetSelection() == static_cast<int>(page);
}

bool OmCableSettingsPanel::IsAdaptiveWarningAnswered() const {
    return std::ranges::any_of(pages_, &OmCablePage::IsAdaptiveWarningAnswered);
}

bool OmCableSettingsPanel::TransferDataToWindow() {
    if (!wxPanel::TransferDataToWindow())
        return false;
    for (OmCablePage* page : pages_)
        page->ShowSettings(settings_);
    const auto row = std::ranges::find(rows_, settings_.cableType, &OmCableRow::type);
    connection_->SetSelection(static_cast<int>(row - rows_.begin()));
    ShowPage();
    return true;
}

// Every page is read: a cable's parameters stay while another cable is used.
bool OmCableSettingsPanel::TransferDataFromWindow() {
    if (!wxPanel::TransferDataFromWindow())
        return false;
    settings_.cableType = GetChosenType();
    for (size_t page = 0; page < pages_.size(); ++page)
        if (!pages_[page]->Read(settings_, IsShown(page)))
            return false;
    return true;
}
