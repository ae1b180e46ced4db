#include "dialogs/PinCombo.h"

#include "widgets/DialogLayout.h"

#include <numeric>
#include <wx/dc.h>
#include <wx/settings.h>

namespace {

constexpr unsigned kCharacters = 22;

} // namespace

OmPinCombo::OmPinCombo(wxWindow* parent) {
    Create(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxArrayString(),
           wxTE_PROCESS_ENTER);
    SetMinSize(wxSize(MeasureText(*this, kCharacters, 1).x, -1));
    Bind(wxEVT_TEXT, [this](wxCommandEvent&) { OnTyped(); });
    Bind(wxEVT_COMBOBOX, [this](wxCommandEvent&) { onChanged(); });
    Bind(wxEVT_COMBOBOX_DROPDOWN, [this](wxCommandEvent&) { OnDropDown(); });
}

void OmPinCombo::ShowPins(const OmChainDevice* device, const OmDevicePins* pins) {
    device_ = device;
    pins_ = pins;
    listed_.clear(); // the same indexes, but of other pins
    wxItemContainer::Clear();
    ShowPin(nullptr);
}

void OmPinCombo::ShowPin(const OmPinChoice* pin) {
    List(pins_ ? pins_->Filter({}) : std::vector<size_t>());
    ChangeValue(pin ? wxString(pin->text) : wxString());
    onChanged();
}

const OmPinChoice* OmPinCombo::GetPin() const {
    return pins_ ? pins_->FindByText(GetValue().ToStdWstring()) : nullptr;
}

void OmPinCombo::OnTyped() {
    if (GetParent()->IsBeingDeleted())
        return; // an open list lets go of its text only now, and the pins are gone
    if (pins_ && !IsPopupShown())
        List(pins_->Filter(GetValue().ToStdWstring()));
    onChanged();
}

// A pin that is there already is no filter: the user wants another one.
void OmPinCombo::OnDropDown() {
    const OmPinChoice* pin = GetPin();
    if (!pins_ || !pin || GetValue() != pin->text)
        return;
    List(pins_->Filter({}));
    SetSelection(static_cast<int>(pin - pins_->GetChoices().data()));
}

void OmPinCombo::List(const std::vector<size_t>& indexes) {
    if (indexes == listed_)
        return;
    listed_ = indexes;
    wxItemContainer::Clear();
    wxArrayString texts;
    std::vector<wxClientData*> data;
    for (const size_t index : indexes) {
        const OmPinChoice& pin = pins_->GetChoices()[index];
        texts.push_back(pin.text);
        data.push_back(new OmDevPinClientData(device_, pin));
    }
    if (!texts.empty())
        Append(texts, data.data());
}

// The text is what the list is filtered by, and stays.
void OmPinCombo::DoClear() {
    EnsurePopupControl();
    GetVListBoxComboPopup()->Clear();
}

void OmPinCombo::OnDrawItem(wxDC& dc, const wxRect& rect, int item, int flags) const {
    if (item < 0 || (flags & wxODCB_PAINTING_CONTROL)) {
        wxOwnerDrawnComboBox::OnDrawItem(dc, rect, item, flags);
        return;
    }
    const OmPinChoice& pin = pins_->GetChoices()[listed_[static_cast<size_t>(item)]];
    const wxString mark = getMark(pin);
    if (!mark.empty() && !(flags & wxODCB_PAINTING_SELECTED))
        dc.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
    const wxString text = mark.empty() ? wxString(pin.text) : pin.text + "   " + mark;
    dc.DrawText(text, rect.x + 2, rect.y + (rect.height - dc.GetCharHeight()) / 2);
}
