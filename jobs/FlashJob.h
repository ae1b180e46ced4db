// An action on the flash as the user means it, from the first check to the sentence that tells of
// success. What an action means stands in its job and nowhere else: windows and console ask for the
// options, show the progress and tell the result.
#pragma once

#include "flash/FlashProgrammer.h"

#include <string>

// In this order: Open, set the options, Check, Run. Whichever answers false has told the user why,
// and the action ends there.
class OmFlashJob {
  public:
    virtual ~OmFlashJob() = default;
    OmFlashJob(const OmFlashJob&) = delete;
    OmFlashJob& operator=(const OmFlashJob&) = delete;

    // Whether the action can be at all; then finds out about chain and flash what its options need.
    virtual bool Open();

    // Looks at the options. Nothing has been written to the flash yet.
    virtual bool Check() { return true; }

    virtual bool Run(OmProgressCallback& progress) = 0;

    // What to tell after a Run that went well.
    virtual std::wstring DescribeSuccess() const;

    // --- what options are chosen from, once the job is open

    uint32_t GetFlashSizeBytes() const { return programmer_.GetFlashSizeBytes(); }

    const OmFlashSectorLayout& GetSectors() const { return programmer_.sectors; }

    uint32_t GetChipCount() const { return static_cast<uint32_t>(programmer_.setup.ChipCount); }

  protected:
    // `flags` is an OR of PrepareFlags; `success` is marked for translation, null if success shows
    // by itself. `programmer` must outlive the job.
    OmFlashJob(OmFlashProgrammer& programmer, unsigned flags, const char* success)
        : programmer_(programmer), flags_(flags), success_(success) {}

    OmFlashProgrammer& programmer_;

  private:
    const unsigned flags_;
    const char* const success_;
};

// What Erase and Program need of the flash.
inline constexpr unsigned kPrepareChange =
    kPrepareFlashCommands | kPrepareIdentify | kPrepareIdentifyOrFail | kPrepareSectors;
