// The Connection dialog.
#pragma once

#include "jtag/ConnectionSettings.h"

#include <wx/dialog.h>

class OmCableSettingsPanel;

class OmCableSettingsDlg : public wxDialog {
  public:
    explicit OmCableSettingsDlg(wxWindow* parent);

    OmConnectionSettings settings;        // in and out
    bool adaptiveWarningAnswered = false; // out

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    OmCableSettingsPanel* panel_;
};
