#include "dialogs/IRLenDlg.h"

#include "widgets/NumberParsing.h"

#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

constexpr uint32_t kMinLength = 2; // IEEE 1149.1, clause 7.1.1
constexpr uint32_t kMaxLength = 32;

} // namespace

OmIRLenDlg::OmIRLenDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("IR Length")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, "");
    rows->Add(new wxStaticText(
                  box, wxID_ANY,
                  _("The Instruction Register (IR) length only has to be set when\nit is not "
                    "recognized while examining the JTAG chain and the\ndevice BSDL file is not "
                    "available.")),
              RowFlags());
    wxFlexGridSizer* fields = MakeTextRows();
    row_ = AddTextRow(box, fields, _("IR length:"), "");
    rows->Add(fields, RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

bool OmIRLenDlg::TransferDataToWindow() {
    if (!displayName.empty())
        SetTitle(wxString::Format(_("%s IR Length"), displayName));
    const bool isKnown = length >= static_cast<int32_t>(kMinLength);
    row_.box->ChangeValue(isKnown ? wxString::Format("%d", length) : wxString());
    row_.box->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmIRLenDlg::TransferDataFromWindow() {
    const std::wstring text = TrimText(row_.GetText());
    const std::optional<uint32_t> number = ParseDecimal(text, kMinLength);
    if (!text.empty() && (!number || *number > kMaxLength))
        return RefuseInput(
            *row_.box,
            _("IR length must be entered as either an integer in a range from 2 to 32 or an empty "
              "string (in this case the software will try to auto detect the IR length when "
              "examining the JTAG chain)."));
    length = text.empty() ? -1 : static_cast<int32_t>(*number);
    return true;
}
