// What the flash commands share.
#pragma once

#include "app/ProgressDlg.h"
#include "data/DataImage.h"

#include <cstdint>
#include <string>

// The progress dialog of one flash action, shown from its construction on.
class OmActionProgress : public OmProgressDlg {
  public:
    explicit OmActionProgress(wxWindow* parent);

    // Tells a success, and hides itself first: its box must not come up behind a disabled window.
    // A failure has already been told by the operation.
    void Report(const wxString& success);
};

// How far `image` (not empty) moves when it is to begin at `newStart`; modulo 2^32, so a lower
// start moves it down.
uint32_t GetMoveDistance(const OmDataImage& image, uint32_t newStart);

// The image that an action uses: the one shown, or a copy of it that begins elsewhere. The one
// shown keeps its addresses.
class OmActionImage {
  public:
    // `shown` must outlive this object and must not be empty if it is moved.
    OmActionImage(const OmDataImage& shown, bool move, uint32_t newStart);

    const OmDataImage& Get() const { return moved_.IsEmpty() ? shown_ : moved_; }

  private:
    const OmDataImage& shown_;
    OmDataImage moved_;
};
