#include "dialogs/ChainSizeDlg.h"

#include "widgets/DialogLayout.h"

#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/valgen.h>

namespace {

constexpr int kMostDevices = 200;

} // namespace

OmChainSizeDlg::OmChainSizeDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("JTAG Chain Devices Count")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, wxString());
    rows->Add(
        new wxStaticText(
            box, wxID_ANY,
            _("This dialog provides a second method to define a JTAG chain. It is only\nintended "
              "as a backup option when the chain is not connected to the\ncomputer. The best way "
              "is to let the software examine the JTAG chain\nto detect devices and their idcodes "
              "(choose 'Examine the chain' button).")),
        RowFlags());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(box, wxID_ANY, _("Number of devices in the JTAG chain:")),
             wxSizerFlags().CentreVertical().Border(wxRIGHT));
    auto* spin = new wxSpinCtrl(box, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                wxSP_ARROW_KEYS, 1, kMostDevices);
    spin->SetValidator(wxGenericValidator(&count));
    row->Add(spin);
    rows->Add(row, RowFlags());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
    spin->SetFocus();
}
