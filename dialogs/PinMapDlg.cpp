#include "dialogs/PinMapDlg.h"

#include "platform/Text.h"

#include <wx/choice.h>
#include <wx/stattext.h>

OmPinMapDlg::OmPinMapDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Package Pin Mapping")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, "");
    rows->Add(new wxStaticText(
                  box, wxID_ANY,
                  _("A BSDL file may contain multiple packaging options (called pin\nmappings) for "
                    "the same silicon. Please select a pin mapping\nthat corresponds to the "
                    "device's package type.")),
              RowFlags());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(box, wxID_ANY, _("Package pin mapping:")),
             wxSizerFlags().CentreVertical().Border(wxRIGHT));
    choice_ = new wxChoice(box, wxID_ANY);
    row->Add(choice_, wxSizerFlags(1).CentreVertical());
    rows->Add(row, RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

bool OmPinMapDlg::TransferDataToWindow() {
    if (!displayName.empty())
        SetTitle(wxString::Format(_("%s Package Pin Mapping"), displayName));
    wxArrayString names;
    for (const std::string& name : pinMaps)
        names.push_back(FromLocal(name));
    choice_->Set(names);
    choice_->SetSelection(selected);
    Fit(); // names may be long
    choice_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmPinMapDlg::TransferDataFromWindow() {
    if (choice_->GetSelection() == wxNOT_FOUND)
        return RefuseInput(*choice_,
                           _("Please select from the pin mappings in the drop-down menu."));
    selected = choice_->GetSelection();
    return true;
}
