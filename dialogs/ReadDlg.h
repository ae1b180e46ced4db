// Asks which piece of the flash to read.
#pragma once

#include "dialogs/PieceOfMemory.h"

#include <optional>

class OmReadDlg : public wxDialog {
  public:
    explicit OmReadDlg(wxWindow* parent);

    uint32_t start = 0;      // out
    uint32_t size = 0;       // out, bytes
    uint32_t entireSize = 0; // in, bytes of the flash

    bool TransferDataFromWindow() override;

  private:
    std::optional<OmPieceOfMemoryRows> piece_;
};
