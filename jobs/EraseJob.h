#pragma once

#include "jobs/ErasePlan.h"
#include "jobs/FlashJob.h"
#include "jobs/PlacedData.h"

// Erases the flash, the sectors of it that the data need, or selected ones.
class OmEraseJob : public OmFlashJob {
  public:
    explicit OmEraseJob(OmFlashProgrammer& programmer);

    OmEraseOptions erase;
    OmDataChoice data; // for SectorsForData

    bool Open() override;
    bool Check() override;
    bool Run(OmProgressCallback& progress) override;

  private:
    OmErasePlan plan_;
};
