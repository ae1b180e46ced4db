#include "dialogs/StaticPinsPage.h"

#include "dialogs/PinCombo.h"
#include "platform/UserInterface.h"
#include "setup/PinTableText.h"
#include "setup/SignalRows.h"
#include "widgets/DialogLayout.h"

#include <algorithm>
#include <iterator>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

// In the order of the entries.
constexpr uint8_t kValues[] = {0, 1, kBitReleased};

int FindValue(uint8_t value) {
    const auto* found = std::ranges::find(kValues, value);
    return found == std::end(kValues) ? wxNOT_FOUND : static_cast<int>(found - kValues);
}

void Warn(const wxString& text) {
    ShowMessage(text.ToStdWstring(), kWarningBox);
}

} // namespace

OmStaticPinsPage::OmStaticPinsPage(wxWindow* parent, OmSetupSession& session)
    : OmPinsPage(parent, session) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(
                    this, wxID_ANY,
                    _("Please specify here any pins that need to be held at a certain value.")),
                RowFlags());
    AddEditor(column);
    AddNote(column);
    AddButtons(column);
    const OmPinColumn columns[] = {{_("JTAG device"), 130},
                                   {_("JTAG device pin"), 150},
                                   {_("Pin value"), 80},
                                   {_("Note"), 200}};
    AddList(column, columns);
    AddConflictLines(column);
    SetSizer(column);
}

void OmStaticPinsPage::AddEditor(wxSizer* column) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    chooser_.AddControls(row);
    auto* label = new wxStaticText(this, wxID_ANY, _("Pin value:"));
    value_ = new wxChoice(this, wxID_ANY);
    for (const uint8_t value : kValues)
        value_->Append(FormatStaticValue(value));
    value_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { chooser_.UpdateHint(); });
    row->Add(MakeLabelled(label, value_), wxSizerFlags().Bottom());
    column->Add(row, RowFlags());
    column->Add(chooser_.MakeHintLine(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
    chooser_.findFault = [this](const OmPinChoice& pin) {
        return FindStaticPinFault(pin, GetValue());
    };
}

void OmStaticPinsPage::AddNote(wxSizer* column) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(this, wxID_ANY, _("&Note (optional):")),
             wxSizerFlags().CentreVertical().Border(wxRIGHT));
    note_ = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                           wxTE_PROCESS_ENTER);
    note_->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { Enter(); });
    row->Add(note_, wxSizerFlags(1).CentreVertical());
    column->Add(row, RowFlags());
}

void OmStaticPinsPage::AddButtons(wxSizer* column) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    AddButton(row, _("Add"), static_cast<Action>(&OmStaticPinsPage::Add));
    apply_ = AddButton(row, _("Apply changes"), static_cast<Action>(&OmStaticPinsPage::Apply));
    remove_ = AddButton(row, _("Remove"), static_cast<Action>(&OmStaticPinsPage::Remove));
    row->AddStretchSpacer();
    AddEditButtons(row);
    column->Add(row, RowFlags());
}

std::vector<OmPinRow> OmStaticPinsPage::MakeRows() const {
    std::vector<OmPinRow> rows;
    rows.reserve(session_.setup.staticPins.size());
    for (const StaticPin& pin : session_.setup.staticPins) {
        const OmPinChoice* choice = session_.pins.Find(pin);
        OmPinRow& shown = rows.emplace_back();
        shown.texts = FormatStaticRow(pin, session_.pins);
        shown.isConnected = pin.IsConnected();
        shown.isInConflict = session_.conflicts.statics[rows.size() - 1];
        shown.isFaulty = choice && !FindStaticPinFault(*choice, pin.Value).empty();
    }
    return rows;
}

void OmStaticPinsPage::ShowSelection() {
    const int row = list_->GetSelectedRow();
    shownRow_ = row;
    apply_->Enable(row >= 0);
    remove_->Enable(list_->GetSelectedItemCount() > 0);
    // The list may still tell of a row that the setup has just lost.
    if (row < 0 || row >= static_cast<int>(session_.setup.staticPins.size()))
        return;
    const StaticPin& pin = session_.setup.staticPins[static_cast<size_t>(row)];
    value_->SetSelection(FindValue(pin.Value));
    note_->ChangeValue(pin.Note);
    chooser_.ShowPin(pin);
}

uint8_t OmStaticPinsPage::GetValue() const {
    const int row = value_->GetSelection();
    return row == wxNOT_FOUND ? kBitReleased : kValues[row];
}

std::optional<StaticPin> OmStaticPinsPage::ReadControls(int row) const {
    const std::optional<OmDevicePin> pin = chooser_.GetPin();
    if (!pin || value_->GetSelection() == wxNOT_FOUND) {
        Warn(_("Please make sure to select 'JTAG device', 'JTAG device pin' and 'Pin value'."));
        return std::nullopt;
    }
    const std::vector<StaticPin>& pins = session_.setup.staticPins;
    for (size_t other = 0; other < pins.size(); ++other)
        if (static_cast<int>(other) != row &&
            static_cast<const OmDevicePin&>(pins[other]) == *pin) {
            Warn(_("The pin is already in the list."));
            return std::nullopt;
        }
    StaticPin entered;
    static_cast<OmDevicePin&>(entered) = *pin;
    entered.Value = GetValue();
    entered.Note = note_->GetValue().ToStdWstring();
    return entered;
}

void OmStaticPinsPage::Add() {
    Append();
}

bool OmStaticPinsPage::Append() {
    const std::optional<StaticPin> pin = ReadControls(-1);
    if (!pin)
        return false;
    session_.BeginChange();
    session_.setup.staticPins.push_back(*pin);
    session_.EndChange();
    list_->SelectOnly(list_->GetItemCount() - 1);
    return true;
}

void OmStaticPinsPage::Apply() {
    StoreIn(list_->GetSelectedRow());
}

bool OmStaticPinsPage::StoreIn(int row) {
    const std::optional<StaticPin> pin = ReadControls(row);
    if (row < 0 || !pin)
        return false;
    session_.BeginChange();
    session_.setup.staticPins[static_cast<size_t>(row)] = *pin;
    session_.EndChange();
    return true;
}

void OmStaticPinsPage::Remove() {
    const std::vector<int> rows = list_->GetSelectedRows();
    if (rows.empty())
        return;
    session_.BeginChange();
    std::vector<StaticPin>& pins = session_.setup.staticPins;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        pins.erase(pins.begin() + *row);
    list_->SelectOnly(-1);
    session_.EndChange();
    list_->SelectOnly(std::min(rows.front(), static_cast<int>(pins.size()) - 1));
}

// Another pin than that of the selected row is a new one.
void OmStaticPinsPage::Enter() {
    const int row = list_->GetSelectedRow();
    const std::optional<OmDevicePin> pin = chooser_.GetPin();
    const bool isSamePin = row >= 0 && pin &&
                           *pin == static_cast<const OmDevicePin&>(
                                       session_.setup.staticPins[static_cast<size_t>(row)]);
    if (!(isSamePin ? StoreIn(row) : Append()))
        return;
    if (isSamePin && row + 1 < list_->GetItemCount())
        list_->SelectOnly(row + 1);
    chooser_.GetCombo().SetFocus();
}

std::wstring OmStaticPinsPage::FormatRows(const std::vector<int>& rows) const {
    return FormatStaticTable(session_.setup, session_.pins, rows);
}

void OmStaticPinsPage::PasteText(const std::wstring& text) {
    const OmStaticPaste paste = ParseStaticTable(text, session_.pins);
    if (!ConfirmPaste(paste.pins.size(), paste.problems))
        return;
    session_.BeginChange();
    ApplyPaste(session_.setup, paste);
    session_.EndChange();
}
