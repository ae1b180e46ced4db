#include "dialogs/GoToOffsetDlg.h"

#include "widgets/NumberParsing.h"

#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

OmGoToOffsetDlg::OmGoToOffsetDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Go to Offset")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(this, wxID_ANY, _("Enter a hex offset to scroll data view to:")),
                RowFlags());
    box_ = new wxTextCtrl(this, wxID_ANY);
    column->Add(box_, RowFlags());
    column->Add(new wxStaticLine(this), RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
    box_->SetFocus();
}

bool OmGoToOffsetDlg::TransferDataFromWindow() {
    const std::wstring text = TrimText(box_->GetValue().ToStdWstring());
    const std::optional<uint32_t> value = ParsePlainHex(text);
    if (!value)
        return RefuseInput(*box_,
                           wxString::Format(_("Invalid data entered: '%s'.\n\nPlease enter a "
                                              "hexadecimal offset to scroll the data view to."),
                                            text));
    offset = *value;
    return true;
}
