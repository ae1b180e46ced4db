// Waiting for an operation inside the flash that takes seconds: polls without a pause, the scans
// being slow enough, until the flash is done, the user stops, or time is up.
#pragma once

#include "flash/CommandSet.h"

class OmProgressCallback;

class OmStatusPoll {
  public:
    virtual ~OmStatusPoll() = default;

    // What the chips reported, or Stopped, or TimeOut.
    OmFlashResult Wait(OmProgressCallback& callback, unsigned limitSeconds);

  protected:
    // Reads status once; true if every chip is done. Notes what it finds in `found`.
    virtual bool Poll() = 0;

    OmFlashResult found = OmFlashResult::Done;
};
