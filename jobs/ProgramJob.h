#pragma once

#include "jobs/ErasePlan.h"
#include "jobs/FlashJob.h"
#include "jobs/PlacedData.h"

#include <optional>

// Erases what is asked for, programs the data, and compares the flash with them.
class OmProgramJob : public OmFlashJob {
  public:
    explicit OmProgramJob(OmFlashProgrammer& programmer);

    OmDataChoice data; // before Open; its place before Check
    std::optional<OmEraseOptions> erase;
    bool verify = true;

    // The erase to offer, once the job is open: what the data need, the chip if its sectors are
    // unknown, or none if this flash cannot be erased at all.
    std::optional<OmEraseOptions> GetUsualErase() const;

    // Takes it; tells if there is none, which is no reason not to program.
    void TakeUsualErase();

    bool Open() override;
    bool Check() override;
    bool Run(OmProgressCallback& progress) override;
    std::wstring DescribeSuccess() const override;

  private:
    OmPlacedData placed_;
    OmErasePlan plan_;
};
