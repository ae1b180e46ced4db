// The operations on the flash, each from its opening to the box that tells of a failure. They know
// the chain through the analyzer and the flash through its facts; the cable is not their business,
// and what the JTAG layer throws passes through. Part of OmFlashProgrammer, which says what each
// one takes.
#pragma once

#include "flash/FlashFacts.h"
#include "flash/Progress.h"

#include <cstdint>
#include <vector>

class OmBoundaryScanBus;
class OmChainAnalyzer;
class OmDataImage;
class OmDesignSetup;
struct OmFlashReport;
struct OmSectorWork;

// Bytes of the image, counted over all chips.
struct OmAddressRange {
    uint32_t start = 0;
    uint32_t size = 0;
};

class OmFlashOperations {
  public:
    // All must outlive this object. The setup has been found drivable.
    OmFlashOperations(const OmDesignSetup& setup, OmChainAnalyzer& analyzer, OmFlashFacts& facts)
        : setup_(setup), analyzer_(analyzer), facts_(facts) {}

    bool Read(OmProgressCallback& callback, const OmAddressRange& range, OmDataImage& image);
    bool Program(OmProgressCallback& callback, const OmDataImage& image);
    bool Verify(OmUnitedProgressCallback& callback, const OmDataImage& image);
    bool BlankCheck(OmUnitedProgressCallback& callback, const std::vector<OmAddressRange>& ranges);
    bool EraseSectors(OmProgressCallback& callback, const OmSectorRange& chipOffsets);
    bool EraseChip(OmProgressCallback& callback);
    bool SetSectorLocks(OmProgressCallback& callback, const OmSectorRange& chipOffsets, bool lock);
    void MakeReport(OmFlashReport& report); // finds the facts anew

  private:
    // The opening of every operation: EXTEST, and the flash in read mode.
    void OpenBus(OmBoundaryScanBus& bus);
    void OpenBus(OmBoundaryScanBus& bus, OmCommandSet mode);

    bool EraseEach(OmProgressCallback& callback, const OmSectorWork& work);

    const OmDesignSetup& setup_;
    OmChainAnalyzer& analyzer_;
    OmFlashFacts& facts_;
};
