// Asks for the length of a device's instruction register, for a device without a BSDL file.
#pragma once

#include "widgets/DialogLayout.h"

#include <cstdint>

class OmIRLenDlg : public wxDialog {
  public:
    explicit OmIRLenDlg(wxWindow* parent);

    int32_t length = -1;  // in and out: bits, -1 while it is not known
    wxString displayName; // in: leads the title, such as "Dev1"

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    OmTextRow row_;
};
