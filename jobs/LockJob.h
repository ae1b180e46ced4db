#pragma once

#include "jobs/FlashJob.h"

enum class OmLockAction { Lock, Unlock };

// Locks or unlocks sectors of an Intel flash.
class OmLockJob : public OmFlashJob {
  public:
    OmLockJob(OmFlashProgrammer& programmer, OmLockAction action);

    OmSectorRange selected; // indexes; to be set if HasSectors

    // Whether there are sectors to choose from.
    bool HasSectors() const { return !GetSectors().IsEmpty(); }

    bool Open() override;
    bool Check() override;
    bool Run(OmProgressCallback& progress) override;

  private:
    const OmLockAction action_;
    OmSectorRange chipOffsets_;
};
