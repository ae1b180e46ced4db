// Finds out which command set the flash speaks, how large its write buffer is and how its sectors
// lie, from the CFI tables and from the identifiers read in both languages. Lives for one action,
// over a setup whose pins have been found drivable.
#pragma once

#include "flash/Cfi.h"
#include "flash/FlashIds.h"
#include "setup/DesignSetup.h"

#include <cstdint>
#include <vector>

class OmBoundaryScanBus;
class OmChainAnalyzer;

struct OmDetectedFlash {
    OmCommandSet commandSet = OmCommandSet::Unknown;
    OmFlashIds ids;           // 0 if the flash did not answer
    uint32_t bufferBytes = 0; // write buffer of one chip, 0 for none
};

// A neutral command in both languages, for a flash of which nothing is known; ends with the bus
// idle.
void ResetFlashModes(OmBoundaryScanBus& bus);

class OmFlashIdentifier {
  public:
    // Both must outlive the identifier.
    OmFlashIdentifier(const OmDesignSetup& setup, OmChainAnalyzer& analyzer)
        : setup_(setup), analyzer_(analyzer) {}

    // Reads the CFI tables once. All operations that touch the flash throw OmException.
    const CfiData& EnsureCfi();

    // Looks at the flash whatever the setup says. False if nothing was found.
    bool DetectCommandSet(OmDetectedFlash& found);

    // Fills `commandSet` and `bufferBytes` if `commandSet` is unknown: as the setup fixes it, or by
    // detection.
    bool EnsureCommandSet(OmCommandSet& commandSet, uint32_t& bufferBytes);

    // Fills `sectors` if not `valid`: from the CFI tables or from the setup. Tells the user when
    // the tables overrule the setup and when neither knows. The answer is `valid`.
    bool EnsureSectors(OmFlashSectorLayout& sectors, bool& valid);

    CfiData cfi;

  private:
    struct Answer;

    void EnterNeutralMode(OmBoundaryScanBus& bus) const;
    std::vector<Answer> ReadIdentifiers(); // of every command set

    const OmDesignSetup& setup_;
    OmChainAnalyzer& analyzer_;
};
