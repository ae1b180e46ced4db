#include "jobs/ErasePlan.h"

#include "data/DataImage.h"
#include "flash/CommandSets.h"
#include "flash/TouchedSectors.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

namespace {

// A sector of the data that is not in the map would be programmed without having been erased.
bool FindSectorsForData(const OmFlashProgrammer& programmer, const OmDataImage& image,
                        OmSectorRange& indexes) {
    indexes = FindTouchedSectors(programmer.sectors,
                                 static_cast<uint32_t>(programmer.setup.ChipCount), image, 0);
    if (!indexes.empty())
        return true;
    ShowMessage(
        Translated("Nothing to erase -- data starting address is beyond flash address space"),
        kWarningBox);
    return false;
}

} // namespace

bool IsEraseImpossible(const OmFlashProgrammer& programmer) {
    return programmer.sectors.IsEmpty() && !CanEraseChip(programmer.commandSet);
}

std::wstring DescribeEraseImpossible() {
    return Translated("Erase operation is disabled because:\n"
                      "1) Sectors configuration is unknown and so erasure of individual sectors is "
                      "not possible\n"
                      "2) This chip does not support the 'full chip erase' command.\n\n"
                      "To enable erase operation, please enter the sectors configuration using "
                      "Setup dialog.");
}

bool OmErasePlan::Make(const OmFlashProgrammer& programmer, const OmEraseOptions& choice,
                       const OmDataImage* image) {
    if (IsEraseImpossible(programmer)) {
        ShowMessage(DescribeEraseImpossible(), kWarningBox);
        return false;
    }
    entire_ = choice.mode == OmEraseMode::EntireFlash;
    if (entire_)
        return true;
    if (programmer.sectors.IsEmpty())
        return RefuseUnknownSectors();
    OmSectorRange indexes = choice.selected;
    if (choice.mode == OmEraseMode::SectorsForData && image &&
        !FindSectorsForData(programmer, *image, indexes))
        return false;
    chipOffsets_ = ToChipOffsets(programmer, indexes);
    return true;
}

// Chips without a command for the whole go sector by sector.
bool OmErasePlan::Run(OmFlashProgrammer& programmer, OmProgressCallback& progress) const {
    if (!entire_) {
        progress.BeginSteps(chipOffsets_.size());
        return programmer.EraseSectors(progress, chipOffsets_);
    }
    progress.BeginSteps(CanEraseChip(programmer.commandSet) ? 0
                                                            : programmer.sectors.GetSectorCount());
    return programmer.EraseChip(progress);
}

OmSectorRange ToChipOffsets(const OmFlashProgrammer& programmer, const OmSectorRange& indexes) {
    OmSectorRange offsets;
    programmer.sectors.ToOffsets(indexes, offsets);
    return offsets;
}

bool RefuseUnknownSectors() {
    ShowMessage(Translated("The sectors of the flash are unknown."), kWarningBox);
    return false;
}
