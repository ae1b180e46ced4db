#pragma once

#include "jobs/FlashJob.h"
#include "jobs/FlashReach.h"

// Reads a part of the flash. What came in before an abort or a failure stays in the image.
class OmReadJob : public OmFlashJob {
  public:
    explicit OmReadJob(OmFlashProgrammer& programmer)
        : OmFlashJob(programmer, kPrepareNone, nullptr) {}

    OmFlashPart part;
    OmDataImage* image = nullptr; // not owned; gets whole bus words, also around the part

    bool Check() override;
    bool Run(OmProgressCallback& progress) override;

    // The part, once it has been checked.
    const OmAddressRange& GetRange() const { return range_; }

  private:
    OmAddressRange range_;
};
