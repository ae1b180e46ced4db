#pragma once

#include "jobs/FlashJob.h"
#include "jobs/FlashReach.h"
#include "jobs/PlacedData.h"

// Looks whether the place of the data is blank, or without data a part of the flash.
class OmBlankCheckJob : public OmFlashJob {
  public:
    explicit OmBlankCheckJob(OmFlashProgrammer& programmer);

    OmDataChoice data;
    OmFlashPart part;

    bool Check() override;
    bool Run(OmProgressCallback& progress) override;

  private:
    std::vector<OmAddressRange> ranges_;
};
