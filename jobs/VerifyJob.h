#pragma once

#include "jobs/FlashJob.h"
#include "jobs/PlacedData.h"

// Compares the flash with the data.
class OmVerifyJob : public OmFlashJob {
  public:
    explicit OmVerifyJob(OmFlashProgrammer& programmer);

    OmDataChoice data; // before Open; its place before Check

    bool Open() override;
    bool Check() override;
    bool Run(OmProgressCallback& progress) override;

  private:
    OmPlacedData placed_;
};

// The same as a step of another job. `image` fits the flash.
bool VerifyStep(OmFlashProgrammer& programmer, OmProgressCallback& progress,
                const OmDataImage& image);
