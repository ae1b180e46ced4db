// What an erase means for the flash at hand, found out before anything is erased.
#pragma once

#include "flash/FlashProgrammer.h"

#include <string>

enum class OmEraseMode {
    EntireFlash = 0,
    SectorsForData = 1,
    SelectedSectors = 2,
};

struct OmEraseOptions {
    OmEraseMode mode = OmEraseMode::EntireFlash;
    OmSectorRange selected; // indexes, for SelectedSectors

    bool operator==(const OmEraseOptions&) const = default;
};

// Sectors are unknown, and there is no command that erases the whole chip.
bool IsEraseImpossible(const OmFlashProgrammer& programmer);

// Why it is; said by every way that leads to an erase.
std::wstring DescribeEraseImpossible();

class OmErasePlan {
  public:
    // False with a message if this flash cannot be erased like this. `image` (null for none) is
    // what SectorsForData asks about.
    bool Make(const OmFlashProgrammer& programmer, const OmEraseOptions& choice,
              const OmDataImage* image);

    bool Run(OmFlashProgrammer& programmer, OmProgressCallback& progress) const;

  private:
    bool entire_ = false;
    OmSectorRange chipOffsets_;
};

// Sector start offsets in bytes of one chip.
OmSectorRange ToChipOffsets(const OmFlashProgrammer& programmer, const OmSectorRange& indexes);

// For an action that only works sector by sector.
bool RefuseUnknownSectors();
