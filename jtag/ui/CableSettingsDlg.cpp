#include "jtag/ui/CableSettingsDlg.h"

#include "jtag/ui/CableSettingsPanel.h"
#include "widgets/DialogLayout.h"

OmCableSettingsDlg::OmCableSettingsDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("JTAG Connection")), panel_(new OmCableSettingsPanel(this)) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(panel_, wxSizerFlags(1).Expand());
    LayOutDialog(this, column, MakeOkCancelRow(this, _("&OK")));
}

bool OmCableSettingsDlg::TransferDataToWindow() {
    panel_->SetSettings(settings);
    panel_->SetFocus(); // its first control, the choice of the connection
    return panel_->TransferDataToWindow();
}

bool OmCableSettingsDlg::TransferDataFromWindow() {
    if (!panel_->TransferDataFromWindow())
        return false;
    settings = panel_->GetSettings();
    adaptiveWarningAnswered = panel_->IsAdaptiveWarningAnswered();
    return true;
}
