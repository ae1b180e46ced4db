// Asks how many devices the JTAG chain has, for when the chain is not connected to the computer.
#pragma once

#include <wx/dialog.h>

class OmChainSizeDlg : public wxDialog {
  public:
    explicit OmChainSizeDlg(wxWindow* parent);

    int count = 1; // in and out; 1 to 200
};
