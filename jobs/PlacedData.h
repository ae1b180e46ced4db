// The data of an action at the place where they are to be in the flash.
#pragma once

#include "data/DataImage.h"

#include <cstdint>

// What the user chose: an image, at its own address or elsewhere.
struct OmDataChoice {
    const OmDataImage* image = nullptr; // not owned; null for none
    bool move = false;                  // the data are to begin at `newStart`
    uint32_t newStart = 0;

    bool IsEmpty() const { return !image || image->IsEmpty(); }
};

class OmPlacedData {
  public:
    // `choice` must not be empty, and its image must outlive this object. A move takes a copy: the
    // image itself keeps its addresses. It is modulo 2^32, so a lower start moves the data down.
    void Place(const OmDataChoice& choice);

    const OmDataImage& Get() const { return moved_.IsEmpty() ? *original_ : moved_; }

  private:
    const OmDataImage* original_ = nullptr;
    OmDataImage moved_;
};
