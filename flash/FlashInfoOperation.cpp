// The Info command's report.
#include "flash/FlashInfo.h"
#include "flash/FlashOperations.h"
#include "flash/Identification.h"
#include "setup/DesignSetup.h"

#include <algorithm>

namespace {

constexpr int kHighestLane = 24; // of the 32 data bits that the bus can have

std::vector<OmChipInfo> DescribeChips(const OmDesignSetup& setup, const OmFlashIds& ids,
                                      const CfiData& cfi) {
    std::vector<OmChipInfo> chips;
    for (int chip = 0; chip < std::min(setup.ChipCount, kMaxChips); ++chip) {
        const int lane = std::min(chip * setup.WordSize * 8, kHighestLane);
        chips.push_back({static_cast<uint8_t>(ids.manufacturer >> lane),
                         static_cast<uint8_t>(ids.device >> lane),
                         cfi.chips[static_cast<size_t>(chip)]});
    }
    return chips;
}

} // namespace

// Looks at the flash whatever is known of it.
void OmFlashOperations::MakeReport(OmFlashReport& report) {
    OmFlashIdentifier identifier(setup_, analyzer_);
    OmDetectedFlash found;
    identifier.DetectCommandSet(found);
    facts_.commandSet = OmCommandSet::Unknown;
    identifier.EnsureCommandSet(facts_.commandSet, facts_.bufferBytes);
    facts_.sectorsValid = false;
    identifier.EnsureSectors(facts_.sectors, facts_.sectorsValid);
    report = MakeFlashReport(found.commandSet, setup_.WordSize,
                             DescribeChips(setup_, found.ids, identifier.cfi));
}
