#include "dialogs/SignalPinsPage.h"

#include "dialogs/PinCombo.h"
#include "platform/UserInterface.h"
#include "setup/PinFill.h"
#include "setup/PinTableText.h"
#include "setup/SignalRows.h"
#include "widgets/DialogLayout.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr int kLow = 0; // entries of the level; an inverted signal is active high
constexpr int kHigh = 1;

bool IsFaulty(const SignalPin& pin, const OmChainPins& pins, int row) {
    const OmPinChoice* choice = pins.Find(pin);
    return choice && !FindPinFault(*choice, GetSignalKind(row)).empty();
}

void TellNoPattern(bool portEnds) {
    const wxString text =
        portEnds ? _("There is nothing to fill: the port or the bus ends here.")
                 : _("To fill the rows of a bus, first connect two neighbouring pins of it, such "
                     "as A0 and A1, to consecutive bits of one port, and select one of them.");
    ShowMessage(text.ToStdWstring(), kWarningBox);
}

bool ConfirmOverwriting(const OmPinFill& fill, const std::wstring& lost) {
    const int last = fill.firstRow + static_cast<int>(fill.pins.size()) - 1;
    const wxString text = wxString::Format(
        _("Filling %s to %s will replace these connections:\n\n%s\nDo you wish to continue?"),
        GetSignalName(fill.firstRow), GetSignalName(last), lost);
    return ShowMessage(text.ToStdWstring(), kLossQuestionBox) == OmAnswer::Yes;
}

} // namespace

OmSignalPinsPage::OmSignalPinsPage(wxWindow* parent, OmSetupSession& session)
    : OmPinsPage(parent, session) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(
                    this, wxID_ANY,
                    _("Please define here connections of the flash address, data and control "
                      "signals to the pins\nof chain device(s). The flash signals in the list that "
                      "are non-applicable must be left empty.")),
                RowFlags());
    column->Add(new wxStaticLine(this), RowFlags());
    AddEditor(column);
    AddButtons(column);
    const OmPinColumn columns[] = {{_("Flash pin"), 60},
                                   {_("JTAG device"), 100},
                                   {_("JTAG device pin"), 110},
                                   {_("Active"), 128}};
    AddList(column, columns);
    AddConflictLines(column);
    SetSizer(column);
}

void OmSignalPinsPage::AddEditor(wxSizer* column) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    name_ = new wxStaticText(this, wxID_ANY, "...", wxDefaultPosition,
                             wxSize(GetTextExtent("A31: ").x, -1), wxST_NO_AUTORESIZE);
    name_->SetFont(name_->GetFont().Bold());
    row->Add(name_, wxSizerFlags().Bottom().Border(wxRIGHT | wxBOTTOM));
    chooser_.AddControls(row);
    auto* label = new wxStaticText(this, wxID_ANY, _("Active:"));
    level_ = new wxChoice(this, wxID_ANY);
    level_->Append(_("low"));
    level_->Append(_("high"));
    row->Add(MakeLabelled(label, level_), wxSizerFlags().Bottom());
    column->Add(row, RowFlags());
    column->Add(chooser_.MakeHintLine(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
    chooser_.findFault = [this](const OmPinChoice& pin) {
        return shownRow_ < 0 ? std::wstring() : FindPinFault(pin, GetSignalKind(shownRow_));
    };
}

void OmSignalPinsPage::AddButtons(wxSizer* column) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    apply_ = AddButton(row, _("Apply changes"), static_cast<Action>(&OmSignalPinsPage::Apply));
    remove_ = AddButton(row, _("Remove"), static_cast<Action>(&OmSignalPinsPage::Remove));
    row->AddStretchSpacer();
    fill_ = AddButton(row, _("&Fill"), static_cast<Action>(&OmSignalPinsPage::Fill));
    AddEditButtons(row);
    column->Add(row, RowFlags());
}

std::vector<OmPinRow> OmSignalPinsPage::MakeRows() const {
    std::vector<OmPinRow> rows(kSignalRowCount);
    for (int row = 0; row < kSignalRowCount; ++row) {
        const SignalPin& pin = GetSignalPin(session_.setup, row);
        OmPinRow& shown = rows[static_cast<size_t>(row)];
        shown.texts = FormatSignalRow(session_.setup, session_.pins, row);
        shown.isConnected = pin.IsConnected();
        shown.isInConflict = session_.conflicts.signals[static_cast<size_t>(row)];
        shown.isFaulty = IsFaulty(pin, session_.pins, row);
    }
    return rows;
}

void OmSignalPinsPage::ShowSelection() {
    const int row = list_->GetSelectedRow();
    shownRow_ = row;
    name_->SetLabel(row < 0 ? wxString("...") : GetSignalName(row) + ":");
    chooser_.Enable(row >= 0);
    apply_->Enable(row >= 0);
    remove_->Enable(list_->GetSelectedItemCount() > 0);
    fill_->Enable(row >= 0);
    ShowLevel(row);
    if (row < 0) {
        chooser_.ClearLists();
        return;
    }
    chooser_.RestoreLists();
    chooser_.ShowPin(GetSignalPin(session_.setup, row));
}

void OmSignalPinsPage::ShowLevel(int row) {
    const bool isControl = row >= 0 && GetSignalKind(row) == OmSignalKind::Control;
    level_->Enable(isControl);
    const bool hasLevel = isControl && GetSignalPin(session_.setup, row).IsConnected();
    const int level = !hasLevel                                    ? wxNOT_FOUND
                      : GetSignalPin(session_.setup, row).Inverted ? kHigh
                                                                   : kLow;
    level_->SetSelection(level);
}

void OmSignalPinsPage::Apply() {
    Store();
}

bool OmSignalPinsPage::Store() {
    const int row = list_->GetSelectedRow();
    const std::optional<OmDevicePin> pin = chooser_.GetPin();
    const bool isControl = row >= 0 && GetSignalKind(row) == OmSignalKind::Control;
    if (row < 0 || !pin || (isControl && level_->GetSelection() == wxNOT_FOUND)) {
        ShowMessage(_("Please make sure to select 'JTAG device' and 'JTAG device pin'. For CE, OE "
                      "and WE please also specify 'Active' signal level.")
                        .ToStdWstring(),
                    kWarningBox);
        return false;
    }
    session_.BeginChange();
    SignalPin& stored = GetSignalPin(session_.setup, row);
    static_cast<OmDevicePin&>(stored) = *pin;
    if (isControl)
        stored.Inverted = level_->GetSelection() == kHigh;
    session_.EndChange();
    return true;
}

void OmSignalPinsPage::Remove() {
    const std::vector<int> rows = list_->GetSelectedRows();
    if (rows.empty())
        return;
    session_.BeginChange();
    for (const int row : rows)
        GetSignalPin(session_.setup, row) = SignalPin();
    session_.EndChange();
}

void OmSignalPinsPage::Enter() {
    if (!Store())
        return;
    list_->SelectOnly(std::min(list_->GetSelectedRow() + 1, kSignalRowCount - 1));
    chooser_.GetCombo().SetFocus();
}

// Asks only if something would be lost.
void OmSignalPinsPage::Fill() {
    const std::optional<OmPinFill> fill =
        PlanPinFill(session_.setup, session_.pins, list_->GetSelectedRow());
    if (!fill || fill->pins.empty()) {
        TellNoPattern(fill.has_value());
        return;
    }
    const std::wstring lost = DescribeOverwritten(session_.setup, session_.pins, *fill);
    if (!lost.empty() && !ConfirmOverwriting(*fill, lost))
        return;
    session_.BeginChange();
    ApplyPinFill(session_.setup, *fill);
    session_.EndChange();
}

std::wstring OmSignalPinsPage::FormatRows(const std::vector<int>& rows) const {
    return FormatSignalTable(session_.setup, session_.pins, rows);
}

void OmSignalPinsPage::PasteText(const std::wstring& text) {
    const OmSignalPaste paste = ParseSignalTable(text, session_.pins);
    if (!ConfirmPaste(paste.rows.size(), paste.problems))
        return;
    session_.BeginChange();
    ApplyPaste(session_.setup, paste);
    session_.EndChange();
}
