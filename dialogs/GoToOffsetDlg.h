// Asks for the address that the data view is to be scrolled to.
#pragma once

#include "widgets/DialogLayout.h"

#include <cstdint>

class OmGoToOffsetDlg : public wxDialog {
  public:
    explicit OmGoToOffsetDlg(wxWindow* parent);

    uint32_t offset = 0; // out

    bool TransferDataFromWindow() override;

  private:
    wxTextCtrl* box_ = nullptr;
};
