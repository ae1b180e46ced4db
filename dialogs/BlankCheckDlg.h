// Asks where the flash is to be checked for blank: where the data goes, or in a piece of memory.
#pragma once

#include "dialogs/NewStartControls.h"
#include "dialogs/PieceOfMemory.h"

#include <optional>

class wxRadioButton;

class OmBlankCheckDlg : public wxDialog {
  public:
    explicit OmBlankCheckDlg(wxWindow* parent);

    bool noData = false;        // in
    bool pieceOfMemory = false; // out: `from` and `size` count, and not the data
    bool ignoreAddress = false; // out: the data counts as if it began at `newStart`
    uint32_t newStart = 0;
    uint32_t from = 0;
    uint32_t size = 0;       // bytes
    uint32_t entireSize = 0; // in, bytes of the flash

    bool TransferDataToWindow() override;
    bool TransferDataFromWindow() override;

  private:
    void BuildDataControls(wxWindow* parent, wxSizer* column);
    void BuildPieceControls(wxWindow* parent, wxSizer* column);
    void ChoosePiece(bool piece);
    void UpdateEnabled();

    wxRadioButton* dataRadio_ = nullptr;
    wxRadioButton* pieceRadio_ = nullptr;
    std::optional<OmNewStartControls> newStartControls_;
    std::optional<OmPieceOfMemoryRows> piece_;
};
