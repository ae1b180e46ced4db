// The two rows that say which piece of the flash is meant.
#pragma once

#include "widgets/DialogLayout.h"

#include <cstdint>

class OmPieceOfMemoryRows {
  public:
    OmPieceOfMemoryRows(wxWindow* parent, wxSizer* column);

    void Enable(bool enable) const;
    void SetFocus() const;

    // `size` in bytes, from address 0.
    void ShowEntireFlash(uint32_t size) const;

    // False after a warning; for a bad size that is `sizeWarning`. Whether the piece fits into the
    // flash is judged by the action.
    bool Read(uint32_t& start, uint32_t& size, const wxString& sizeWarning) const;

  private:
    OmTextRow from_;
    OmTextRow size_;
};
