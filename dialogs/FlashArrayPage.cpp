#include "dialogs/FlashArrayPage.h"

#include "dialogs/EditSectorsDlg.h"
#include "platform/Translation.h"
#include "setup/FlashArrayChoices.h"

#include <span>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kSummaryCharacters = 24;

void List(wxChoice& choice, std::span<const char* const> labels) {
    wxArrayString texts;
    for (const char* label : labels)
        texts.push_back(Translated(label));
    choice.Set(texts);
}

// A row that may come from a damaged file.
void SelectIfThere(wxChoice& choice, int row) {
    choice.SetSelection(row < static_cast<int>(choice.GetCount()) ? row : wxNOT_FOUND);
}

wxArrayString GetOrganisationLabels() {
    wxArrayString labels;
    for (const OmBusOrganisation& row : GetBusOrganisations())
        labels.push_back(Translated(row.label));
    return labels;
}

} // namespace

OmFlashArrayPage::OmFlashArrayPage(wxWindow* parent, OmSetupSession& session)
    : wxPanel(parent), session_(session) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    BuildOrganisation(column);
    BuildAlgorithm(column);
    BuildSectors(column);
    SetSizer(column);
}

void OmFlashArrayPage::BuildOrganisation(wxSizer* column) {
    organisation_ = AddChoice(this, column, _("&DATA bus organization:"));
    organisation_->Set(GetOrganisationLabels());
    organisation_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ChangeOrganisation(); });
    maxWidth_ = AddChoice(this, column, _("The &maximum data width a single chip is capable of:"));
    maxWidth_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { StoreChange(); });
}

wxChoice* OmFlashArrayPage::AddChoice(wxWindow* parent, wxSizer* column, const wxString& label) {
    auto* text = new wxStaticText(parent, wxID_ANY, label);
    auto* choice = new wxChoice(parent, wxID_ANY);
    column->Add(text, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP));
    column->Add(choice, RowFlags());
    return choice;
}

void OmFlashArrayPage::BuildAlgorithm(wxSizer* column) {
    const auto [box, rows] = AddGroup(this, column, _("Program and Erase algorithm"), 0);
    commandSet_ = AddChoice(box, rows, _("Command &set:"));
    List(*commandSet_, GetCommandSetLabels());
    commandSet_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { StoreChange(); });
    buffered_ =
        AddCheck(box, rows, _("If supported, use &buffered programming instead of word-by-word"));
    noStatus_ = AddCheck(
        box, rows, _("Do &not check status while programming (use only with small TCK frequency)"));
    const auto [amdBox, amdRows] = AddGroup(box, rows, _("AMD specific"), 0);
    unlockBypass_ = AddCheck(amdBox, amdRows, _("Use &Unlock Bypass mode for programming"));
}

wxCheckBox* OmFlashArrayPage::AddCheck(wxWindow* parent, wxSizer* column, const wxString& label) {
    auto* check = new wxCheckBox(parent, wxID_ANY, label);
    check->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { StoreChange(); });
    column->Add(check, RowFlags());
    return check;
}

void OmFlashArrayPage::BuildSectors(wxSizer* column) {
    const auto [box, rows] = AddGroup(this, column, _("Sectors"), 0);
    rows->Add(new wxStaticText(
                  box, wxID_ANY,
                  _("For Common Flash Interface (CFI) compliant devices the software "
                    "will\nautomatically read sector configuration from the CFI table. You only "
                    "have to define\nsectors for non-CFI devices.")),
              RowFlags());
    cfi_ = AddCheck(box, rows, _("&Flash is CFI-compliant -- no need to define sectors info"));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    defineSectors_ = new wxButton(box, wxID_ANY, _("D&efine Sectors..."));
    defineSectors_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { DefineSectors(); });
    row->Add(defineSectors_, wxSizerFlags().CentreVertical().Border(wxRIGHT));
    summary_ = MakeReadOnlyLine(box, kSummaryCharacters);
    summary_->ChangeValue(_("count x size"));
    row->Add(summary_, wxSizerFlags(1).CentreVertical());
    rows->Add(row, RowFlags());
}

void OmFlashArrayPage::ShowSetup() {
    const OmDesignSetup& setup = session_.setup;
    const int organisation = FindBusOrganisation(setup.ChipCount, setup.WordSize);
    organisation_->SetSelection(organisation);
    ListMaxWidths(organisation < 0 ? -1 : setup.WordSize, setup.AddrCmdShift);
    SelectIfThere(*commandSet_, setup.CmdSet);
    buffered_->SetValue(setup.UseBufferedProg);
    noStatus_->SetValue(setup.DontCheckStatus);
    unlockBypass_->SetValue(setup.UseUnlockBypass);
    cfi_->SetValue(session_.sectorsFromFlash);
    UpdateEnabled();
}

// A single entry leaves nothing to choose.
void OmFlashArrayPage::ListMaxWidths(int32_t wordSize, int32_t selected) {
    List(*maxWidth_, GetMaxWidthLabels(wordSize));
    const unsigned count = maxWidth_->GetCount();
    if (count == 1)
        maxWidth_->SetSelection(0);
    else
        SelectIfThere(*maxWidth_, selected);
    maxWidth_->Enable(count > 1);
}

void OmFlashArrayPage::ChangeOrganisation() {
    const int row = organisation_->GetSelection();
    ListMaxWidths(row < 0 ? -1 : GetBusOrganisations()[static_cast<size_t>(row)].wordSize, -1);
    StoreChange();
}

void OmFlashArrayPage::StoreChange() {
    session_.BeginChange();
    StoreControls();
    UpdateEnabled();
    session_.EndChange();
}

void OmFlashArrayPage::StoreControls() {
    OmDesignSetup& setup = session_.setup;
    const int row = organisation_->GetSelection();
    const OmBusOrganisation none = {nullptr, -1, -1};
    const OmBusOrganisation& chosen =
        row < 0 ? none : GetBusOrganisations()[static_cast<size_t>(row)];
    setup.ChipCount = chosen.chipCount;
    setup.WordSize = chosen.wordSize;
    setup.AddrCmdShift = maxWidth_->GetSelection();
    if (commandSet_->GetSelection() != wxNOT_FOUND)
        setup.CmdSet = commandSet_->GetSelection();
    setup.UseBufferedProg = buffered_->GetValue();
    setup.DontCheckStatus = noStatus_->GetValue();
    setup.UseUnlockBypass = unlockBypass_->GetValue();
    session_.sectorsFromFlash = cfi_->GetValue();
}

void OmFlashArrayPage::UpdateEnabled() {
    const int commandSet = commandSet_->GetSelection();
    buffered_->Enable(commandSet == kCmdSetAuto);
    unlockBypass_->Enable(commandSet != kCmdSetIntel);
    const bool fromFlash = cfi_->GetValue();
    defineSectors_->Enable(!fromFlash);
    ShowLine(*summary_, fromFlash ? std::wstring() : DescribeSectorGroups(session_.setup.sectors));
}

void OmFlashArrayPage::DefineSectors() {
    OmEditSectorsDlg dialog(this);
    dialog.SetTitle(_("Sectors"));
    dialog.layout = session_.setup.sectors;
    if (dialog.ShowModal() != wxID_OK)
        return;
    session_.BeginChange();
    session_.setup.sectors = dialog.layout;
    UpdateEnabled();
    session_.EndChange();
}

void OmFlashArrayPage::FocusField(OmClosingField field) {
    (field == OmClosingField::MaxWidth ? maxWidth_ : organisation_)->SetFocus();
}
