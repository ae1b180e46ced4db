#include "jtag/ui/StaticPinsDlg.h"

#include "platform/UserInterface.h"
#include "widgets/NumberParsing.h"

#include <algorithm>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kListRows = 10;
constexpr unsigned kFirstStaticBit = 4; // bits 0 to 3 are the JTAG pins
constexpr size_t kLowPinCount = 4;      // DBUS4 to DBUS7
constexpr size_t kRowsOfPins = 6;

// In the order of the entries.
enum PinState { kPinReleased = 0, kPinLow = 1, kPinHigh = 2 };

wxString GetPinLabel(size_t pin) {
    return pin < kLowPinCount
               ? wxString::Format("GPIOL%zu / DBUS%zu:", pin, pin + kLowPinCount)
               : wxString::Format("GPIOH%zu / CBUS%zu:", pin - kLowPinCount, pin - kLowPinCount);
}

int GetPinState(const OmFtd2xxStaticPinsScheme& scheme, size_t pin) {
    const unsigned bit = 1U << (pin + kFirstStaticBit);
    if (!(scheme.gpioDir & bit))
        return kPinReleased;
    return scheme.gpioValue & bit ? kPinHigh : kPinLow;
}

void SetPinState(OmFtd2xxStaticPinsScheme& scheme, size_t pin, int state) {
    const unsigned bit = 1U << (pin + kFirstStaticBit);
    const auto set = [bit](uint16_t& word, bool on) {
        word = static_cast<uint16_t>(on ? word | bit : word & ~bit);
    };
    set(scheme.gpioDir, state != kPinReleased);
    set(scheme.gpioValue, state == kPinHigh);
}

} // namespace

OmFtd2xxStaticPinsDlg::OmFtd2xxStaticPinsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Edit Schemes for Static Pins Values of FT2232-based JTAG Pods"),
               wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(
                    this, wxID_ANY,
                    _("Most FT2232-based JTAG pods require some DBUS/CBUS (GPIO) pins to be\n"
                      "held at certain constant values during scan (e.g. to enable buffers, to "
                      "drive\nnTRST, etc.). For a particular JTAG pod type please define here "
                      "required\nstatic states of FT2232 chip's DBUS/CBUS pins.")),
                RowFlags());
    column->Add(BuildListRow(), RowFlags(1));
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

wxSizer* OmFtd2xxStaticPinsDlg::BuildListRow() {
    list_ = new wxListBox(this, wxID_ANY);
    list_->SetMinSize(wxSize(-1, MeasureText(*list_, 1, kListRows).y));
    list_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { UpdateEnabled(); });
    list_->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { Edit(); });
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    AddButton(buttons, _("&New..."), &OmFtd2xxStaticPinsDlg::New);
    edit_ = AddButton(buttons, _("&Edit..."), &OmFtd2xxStaticPinsDlg::Edit);
    delete_ = AddButton(buttons, _("&Delete..."), &OmFtd2xxStaticPinsDlg::Delete);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(list_, wxSizerFlags(1).Expand());
    row->Add(buttons, wxSizerFlags().Border(wxLEFT));
    return row;
}

wxButton* OmFtd2xxStaticPinsDlg::AddButton(wxSizer* column, const wxString& label, Action action) {
    auto* button = new wxButton(this, wxID_ANY, label);
    button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
    column->Add(button, wxSizerFlags().Expand().Border(wxBOTTOM));
    return button;
}

bool OmFtd2xxStaticPinsDlg::TransferDataToWindow() {
    Redraw(selected);
    list_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmFtd2xxStaticPinsDlg::TransferDataFromWindow() {
    selected = list_->GetSelection();
    return true;
}

void OmFtd2xxStaticPinsDlg::Redraw(int selectedRow) {
    wxArrayString descriptions;
    for (const OmFtd2xxStaticPinsScheme& scheme : schemes)
        descriptions.push_back(scheme.description);
    list_->Set(descriptions);
    list_->SetSelection(selectedRow);
    UpdateEnabled();
}

void OmFtd2xxStaticPinsDlg::UpdateEnabled() {
    const bool hasRow = list_->GetSelection() != wxNOT_FOUND;
    edit_->Enable(hasRow);
    delete_->Enable(hasRow);
}

bool OmFtd2xxStaticPinsDlg::EditScheme(OmFtd2xxStaticPinsScheme& scheme) {
    OmEditFtd2xxStaticPinsSchemeDlg dialog(this);
    dialog.scheme = scheme;
    if (dialog.ShowModal() != wxID_OK)
        return false;
    scheme = dialog.scheme;
    return true;
}

void OmFtd2xxStaticPinsDlg::New() {
    OmFtd2xxStaticPinsScheme scheme;
    if (!EditScheme(scheme))
        return;
    schemes.push_back(scheme);
    Redraw(static_cast<int>(schemes.size()) - 1);
}

void OmFtd2xxStaticPinsDlg::Edit() {
    const int row = list_->GetSelection();
    if (row != wxNOT_FOUND && EditScheme(schemes[row]))
        Redraw(row);
}

void OmFtd2xxStaticPinsDlg::Delete() {
    const int row = list_->GetSelection();
    const OmFtd2xxStaticPinsScheme& scheme = schemes[row];
    if (scheme.isPredefined) {
        const wxString text = wxString::Format(
            _("Sorry, '%s' is a predefined standard scheme and it cannot be deleted."),
            scheme.description);
        ShowMessage(text.ToStdWstring(), kWarningBox);
        return;
    }
    const wxString question =
        wxString::Format(_("Are you sure you want to delete '%s' scheme?"), scheme.description);
    if (ShowMessage(question.ToStdWstring(), kLossQuestionBox) != OmAnswer::Yes)
        return;
    schemes.erase(schemes.begin() + row);
    Redraw(wxNOT_FOUND);
}

OmEditFtd2xxStaticPinsSchemeDlg::OmEditFtd2xxStaticPinsSchemeDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("DBUS/CBUS Pins States")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(
        new wxStaticText(this, wxID_ANY,
                         _("Scheme description (e.g. JTAG pod or pods this scheme is for):")),
        RowFlags());
    description_ = new wxTextCtrl(this, wxID_ANY);
    column->Add(description_, RowFlags());
    column->Add(BuildPins(), RowFlags());
    note_ = new wxStaticText(
        this, wxID_ANY, _("NOTE: This is a predefined standard scheme and it cannot be modified."));
    note_->Hide();
    column->Add(note_, RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

// Six pins to a column, so that the twelve rows make a dialog of a usual shape.
wxSizer* OmEditFtd2xxStaticPinsSchemeDlg::BuildPins() {
    const wxString states[] = {"Z", "0", "1"};
    const int gap = wxSizerFlags::GetDefaultBorder();
    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    wxFlexGridSizer* rows = nullptr;
    for (size_t pin = 0; pin < kStaticPinCount; ++pin) {
        if (pin % kRowsOfPins == 0) {
            rows = new wxFlexGridSizer(2, wxSize(gap, gap));
            columns->Add(rows, wxSizerFlags().Border(wxRIGHT, 5 * gap));
        }
        rows->Add(new wxStaticText(this, wxID_ANY, GetPinLabel(pin)),
                  wxSizerFlags().CentreVertical());
        pins_[pin] = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                  static_cast<int>(std::size(states)), states);
        rows->Add(pins_[pin]);
    }
    return columns;
}

bool OmEditFtd2xxStaticPinsSchemeDlg::TransferDataToWindow() {
    description_->ChangeValue(scheme.description);
    description_->Enable(!scheme.isPredefined);
    for (size_t pin = 0; pin < kStaticPinCount; ++pin) {
        pins_[pin]->SetSelection(GetPinState(scheme, pin));
        pins_[pin]->Enable(!scheme.isPredefined);
    }
    note_->Show(scheme.isPredefined);
    GetSizer()->SetSizeHints(this);
    (scheme.isPredefined ? FindWindow(wxID_OK) : description_)->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmEditFtd2xxStaticPinsSchemeDlg::TransferDataFromWindow() {
    if (scheme.isPredefined)
        return true;
    const std::wstring description = TrimText(description_->GetValue().ToStdWstring());
    if (description.empty())
        return RefuseInput(*description_, _("Scheme description cannot be empty."));
    scheme.description = description;
    for (size_t pin = 0; pin < kStaticPinCount; ++pin)
        SetPinState(scheme, pin, pins_[pin]->GetSelection());
    return true;
}
