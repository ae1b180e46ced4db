#include "jobs/SectorChoice.h"

#include "jobs/ErasePlan.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

namespace {

bool Refuse(const std::wstring& text) {
    ShowMessage(text, kWarningBox);
    return false;
}

void Add(uint32_t first, uint64_t end, OmSectorRange& indexes) {
    for (uint64_t index = first; index < end; ++index)
        indexes.insert(indexes.end(), static_cast<uint32_t>(index));
}

} // namespace

bool ChooseSectors(const OmFlashProgrammer& programmer, const std::vector<OmSectorRun>& runs,
                   OmSectorRange& indexes) {
    if (programmer.sectors.IsEmpty())
        return RefuseUnknownSectors();
    const uint64_t count = programmer.sectors.GetSectorCount();
    for (const OmSectorRun& run : runs) {
        if (run.last >= count)
            return Refuse(
                TranslatedFormat("There is no sector %u: the flash has %llu sectors, from 0.",
                                 run.last, static_cast<unsigned long long>(count)));
        Add(run.first, uint64_t{run.last} + 1, indexes);
    }
    return true;
}

bool ChooseSectors(const OmFlashProgrammer& programmer, const OmFlashPart& part,
                   OmSectorRange& indexes) {
    if (programmer.sectors.IsEmpty())
        return RefuseUnknownSectors();
    OmAddressRange range;
    if (!FindFlashPart(programmer, part, range))
        return false;
    uint32_t first = 0;
    uint32_t count = 0;
    programmer.sectors.GetSectorRange(static_cast<uint32_t>(programmer.setup.ChipCount),
                                      range.start, range.start + (range.size - 1), first, count);
    if (count == 0)
        return Refuse(Translated("No sector lies in that part of the flash."));
    Add(first, uint64_t{first} + count, indexes);
    return true;
}
