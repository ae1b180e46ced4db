#include "dialogs/NewStartControls.h"

#include "widgets/NumberParsing.h"

#include <wx/checkbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

wxString EmptyNewStartWarning() {
    return _("If you choose to ignore the data view contents address, please enter a new starting "
             "address. The address must be an unsigned hex 8-bit offset.");
}

wxString InvalidAddressWarning() {
    return _("Invalid starting address. Address must be an unsigned hex 8-bit offset.");
}

OmNewStartControls::OmNewStartControls(wxWindow* parent, wxSizer* column, const Texts& texts)
    : check_(new wxCheckBox(parent, wxID_ANY, texts.check)), emptyWarning_(texts.emptyWarning),
      invalidWarning_(texts.invalidWarning) {
    column->Add(check_, RowFlags());
    address_ = AddIndentedBox(parent, column, texts.unit);
    check_->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { UpdateEnabled(); });
}

void OmNewStartControls::Show(bool checked, uint32_t start) {
    check_->SetValue(checked);
    if (checked)
        address_.box->ChangeValue(wxString::Format("%X", start));
    UpdateEnabled();
}

void OmNewStartControls::SetFocus() const {
    check_->SetFocus();
}

void OmNewStartControls::EnableAll(bool enable) {
    unitFollowsCheck_ = false;
    check_->Enable(enable);
    address_.unit->Enable(enable);
    address_.box->Enable(enable && IsChecked());
}

void OmNewStartControls::UpdateEnabled() {
    address_.box->Enable(IsChecked());
    if (unitFollowsCheck_)
        address_.unit->Enable(IsChecked());
}

bool OmNewStartControls::IsChecked() const {
    return check_->GetValue();
}

bool OmNewStartControls::Read(bool& checked, uint32_t& start) const {
    checked = IsChecked();
    if (!checked)
        return true;
    if (address_.box->IsEmpty())
        return RefuseInput(*address_.box, emptyWarning_);
    return Peek(start) || RefuseInput(*address_.box, invalidWarning_);
}

bool OmNewStartControls::Peek(uint32_t& start) const {
    const std::optional<uint32_t> value = ParseNewStart(address_.GetText());
    if (value)
        start = *value;
    return value.has_value();
}
