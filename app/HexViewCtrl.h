// The read-only hex view of a data image. It learns of a change of the image's contents only
// through SetDataImage, and must be detached before the image goes away or is filled.
#pragma once

#include "app/HexLines.h"
#include "app/VirtualListViewCtrl.h"

class OmHexViewCtrl : public OmVirtualListViewCtrl {
  public:
    explicit OmHexViewCtrl(wxWindow* parent);

    // Attaches an image (not owned), or detaches with null, and shows its top. Also to be called
    // after the contents have changed.
    void SetDataImage(const OmDataImage* image);

    // True with the line that shows `address`; false with the first line of the next data above it,
    // or the line count if there is none.
    bool FindLine(uint32_t address, uint32_t& line) const;

    void OnGetLineText(unsigned line, wxString& text) const override;

  private:
    OmHexLines lines_;
};
