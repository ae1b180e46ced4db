// The Info command's report.
#include "flash/FlashInfo.h"
#include "flash/FlashProgrammer.h"
#include "flash/Identification.h"

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

// Looks at the flash whatever is known of it; what the object knows is then found anew.
bool OmFlashProgrammer::GetFlashInfo(OmFlashReport& report) {
    return Guarded(nullptr, [&] {
        OmFlashIdentifier identifier(setup, *analyzer);
        OmDetectedFlash found;
        identifier.DetectCommandSet(found);
        commandSet = OmCommandSet::Unknown;
        identifier.EnsureCommandSet(commandSet, bufferBytes);
        sectorsValid = false;
        identifier.EnsureSectors(sectors, sectorsValid);
        report = MakeFlashReport(found.commandSet, setup.WordSize,
                                 DescribeChips(setup, found.ids, identifier.cfi));
        return true;
    });
}
