#include "dialogs/VerifyDlg.h"

OmVerifyDlg::OmVerifyDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("Verify")) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto [box, rows] = AddGroup(this, column, _("Starting address"));
    newStartControls_.emplace(
        box, rows,
        OmNewStartControls::Texts{
            _("&Ignore the data view contents address and instead read data from the flash "
              "starting at address:"),
            _("(enter address as a hex 8-bit offset)"),
            _("If you choose to ignore the data view contents address, please enter a starting "
              "address. The address must be an unsigned hex 8-bit offset."),
            _("Invalid starting address.\nAddress must be an unsigned hex 8-bit offset.")});
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&Verify")));
}

bool OmVerifyDlg::TransferDataToWindow() {
    newStartControls_->Show(ignoreAddress, newStart);
    newStartControls_->SetFocus();
    return wxDialog::TransferDataToWindow();
}

bool OmVerifyDlg::TransferDataFromWindow() {
    return newStartControls_->Read(ignoreAddress, newStart);
}
