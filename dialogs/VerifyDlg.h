// Asks where in the flash the data is to be found.
#pragma once

#include "dialogs/NewStartControls.h"

#include <optional>

class OmVerifyDlg : public wxDialog {
  public:
    explicit OmVerifyDlg(wxWindow* parent);

    bool ignoreAddress = false; // the data counts as if it began at `newStart`
    uint32_t newStart = 0;

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    std::optional<OmNewStartControls> newStartControls_;
};
