#include "dialogs/PinChooser.h"

#include "dialogs/PinCombo.h"
#include "platform/Translation.h"
#include "widgets/DialogLayout.h"

#include <wx/choice.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr unsigned kDeviceCharacters = 22;
constexpr unsigned kLineCharacters = 60;

std::wstring MakeCountHint(unsigned count) {
    return OmFormat(TranslatedPlural("%u pin fits", "%u pins fit", count).c_str(), count);
}

} // namespace

// A page may have another colour than the dialog around it.
wxTextCtrl* MakeMessageLine(wxWindow* page) {
    wxTextCtrl* line = MakeReadOnlyLine(page, kLineCharacters);
#ifdef __WXGTK__
    line->SetBackgroundColour(wxTransparentColour);
#else
    line->SetBackgroundColour(page->GetBackgroundColour());
#endif
    return line;
}

wxSizer* MakeLabelled(wxWindow* label, wxWindow* control) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(label);
    column->Add(control, wxSizerFlags().Expand());
    return column;
}

OmPinChooser::OmPinChooser(wxWindow* parent, OmSetupSession& session)
    : parent_(parent), session_(session) {}

void OmPinChooser::AddControls(wxSizer* row) {
    auto* deviceLabel = new wxStaticText(parent_, wxID_ANY, _("JTAG &device:"));
    device_ = new wxChoice(parent_, wxID_ANY);
    device_->SetMinSize(wxSize(MeasureText(*device_, kDeviceCharacters, 1).x, -1));
    device_->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ChooseDevice(device_->GetSelection()); });
    row->Add(MakeLabelled(deviceLabel, device_), wxSizerFlags(1).Bottom().Border(wxRIGHT));
    auto* pinLabel = new wxStaticText(parent_, wxID_ANY, _("JTAG device pin:"));
    combo_ = new OmPinCombo(parent_);
    combo_->getMark = [this](const OmPinChoice& pin) {
        return findFault(pin).empty() ? wxString() : _("(cannot be used here)");
    };
    combo_->onChanged = [this] { UpdateHint(); };
    row->Add(MakeLabelled(pinLabel, combo_), wxSizerFlags(1).Bottom().Border(wxRIGHT));
}

wxTextCtrl* OmPinChooser::MakeHintLine() {
    hint_ = MakeMessageLine(parent_);
    return hint_;
}

void OmPinChooser::ListDevices() {
    lastDevice_ = wxNOT_FOUND;
    wxArrayString names;
    for (unsigned device = 0; device < session_.setup.GetDeviceCount(); ++device)
        names.push_back(FormatDeviceName(session_.setup.devices, static_cast<int>(device)));
    device_->Set(names);
    combo_->ShowPins(nullptr, nullptr);
}

void OmPinChooser::ClearLists() {
    if (device_->GetSelection() != wxNOT_FOUND)
        lastDevice_ = device_->GetSelection();
    device_->Clear();
    combo_->ShowPins(nullptr, nullptr);
}

void OmPinChooser::RestoreLists() {
    if (device_->GetCount() > 0)
        return;
    const int last = lastDevice_;
    ListDevices();
    if (last < static_cast<int>(device_->GetCount()))
        ChooseDevice(last);
}

void OmPinChooser::Enable(bool enable) {
    device_->Enable(enable);
    combo_->Enable(enable);
}

void OmPinChooser::ChooseDevice(int device) {
    device_->SetSelection(device);
    if (device == wxNOT_FOUND)
        combo_->ShowPins(nullptr, nullptr);
    else
        combo_->ShowPins(&session_.setup.GetDevice(static_cast<unsigned>(device)),
                         &session_.pins.Get(device));
}

void OmPinChooser::ShowPin(const OmDevicePin& pin) {
    if (pin.IsConnected() && device_->GetSelection() != pin.Device)
        ChooseDevice(pin.Device);
    combo_->ShowPin(session_.pins.Find(pin));
}

std::optional<OmDevicePin> OmPinChooser::GetPin() const {
    const OmPinChoice* pin = combo_->GetPin();
    if (device_->GetSelection() == wxNOT_FOUND || !pin)
        return std::nullopt;
    return OmDevicePin{device_->GetSelection(), pin->portName, pin->portIndex};
}

void OmPinChooser::UpdateHint() {
    if (hint_)
        ShowLine(*hint_, MakeHint());
}

std::wstring OmPinChooser::MakeHint() const {
    const OmPinChoice* pin = combo_->GetPin();
    if (!pin)
        return combo_->GetValue().empty() ? std::wstring() : MakeCountHint(combo_->GetCount());
    const std::wstring fault = findFault(*pin);
    if (!fault.empty())
        return TranslatedFormat("Warning: %ls", fault.c_str());
    return combo_->GetValue() == pin->text ? std::wstring() : L"\u2192 " + pin->text;
}
