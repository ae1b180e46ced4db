// How long flash work reports to whoever shows it, and how it learns that the user wants to stop.
#pragma once

#include <cstdint>

class OmProgressCallback {
  public:
    virtual ~OmProgressCallback() = default;

    // `percent` is 0 to 100, or -1 for activity of unknown length; a null `message` leaves the
    // shown text alone. True means go on, false that the user has asked to stop.
    virtual bool OnProgress(int percent, const wchar_t* message) = 0;

    // The next reports are about one step of an action that moves so many bytes in all, 0 if that
    // cannot be told; or that goes through so many pieces, with a heading first and then a message
    // for each. For whoever shows a rate or the time left.
    virtual void Begin(uint64_t /*bytes*/) {}

    virtual void BeginSteps(uint64_t /*pieces*/) {}

    // The whole operation is over: hide whatever shows progress.
    virtual void OnFinish() = 0;
};

// Reports the 0 to 100 of one step as a share of the whole.
class OmUnitedProgressCallback : public OmProgressCallback {
  public:
    // `targetCallback` is not owned. Until SetStep, one step is the whole.
    explicit OmUnitedProgressCallback(OmProgressCallback* targetCallback)
        : target(targetCallback) {}

    // The current step begins at `done` of `total` and is `size` long. A total of 0 changes
    // nothing.
    void SetStep(uint32_t total, uint32_t done, uint32_t size);

    bool OnProgress(int percent, const wchar_t* message) override;
    void OnFinish() override;

    OmProgressCallback* target;
    uint32_t base = 0;  // percent at which the current step begins
    double scale = 1.0; // share of the whole
};
