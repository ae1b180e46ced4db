#include "cli/FlashAction.h"

#include "cli/Commands.h"
#include "data/DataFiles.h"
#include "flash/CommandSets.h"
#include "flash/TouchedSectors.h"
#include "platform/Text.h"
#include "platform/UserInterface.h"

namespace {

uint32_t GetChipCount() {
    return static_cast<uint32_t>(OmFlashProgrammer::GetInstance().setup.ChipCount);
}

bool FailSectorsUnknown() {
    return Fail(L"The sectors of the flash are unknown.");
}

bool SelectByNumber(const std::vector<OmSectorRun>& runs, OmSectorRange& indexes) {
    const uint64_t count = OmFlashProgrammer::GetInstance().sectors.GetSectorCount();
    for (const OmSectorRun& run : runs) {
        if (run.last >= count)
            return Fail(OmFormat(L"There is no sector %u: the flash has %llu sectors, from 0.",
                                 run.last, static_cast<unsigned long long>(count)));
        for (uint32_t index = run.first; index <= run.last; ++index)
            indexes.insert(indexes.end(), index);
    }
    return true;
}

bool SelectByAddress(const OmCliOptions& options, OmSectorRange& indexes) {
    OmAddressRange range;
    if (!GetFlashRange(options, range))
        return false;
    uint32_t first = 0;
    uint32_t count = 0;
    OmFlashProgrammer::GetInstance().sectors.GetSectorRange(
        GetChipCount(), range.start, range.start + (range.size - 1), first, count);
    for (uint32_t index = 0; index < count; ++index)
        indexes.insert(indexes.end(), first + index);
    return count > 0 || Fail(L"No sector lies in that part of the flash.");
}

OmSectorRange ToChipOffsets(const OmSectorRange& indexes) {
    OmSectorRange offsets;
    OmFlashProgrammer::GetInstance().sectors.ToOffsets(indexes, offsets);
    return offsets;
}

} // namespace

bool LoadActionData(const OmCliOptions& options, OmDataImage& image) {
    std::string error;
    if (!ReadDataFile(options.dataFile, image, error))
        return Fail(L"Failed to load data file '" + FromLocal(options.dataFile) + L"'.\n" +
                    FromLocal(error));
    if (image.IsEmpty())
        return Fail(L"The data file '" + FromLocal(options.dataFile) + L"' holds no bytes.");
    if (options.offset)
        image = image.ShiftedBy(*options.offset - image.GetChunks().front().address); // may wrap
    return true;
}

bool GetFlashRange(const OmCliOptions& options, OmAddressRange& range) {
    const uint32_t flashSize = OmFlashProgrammer::GetInstance().GetFlashSizeBytes();
    range.start = options.from.value_or(0);
    range.size = options.size.value_or(flashSize - range.start);
    if (range.start < flashSize && range.size <= flashSize - range.start)
        return true;
    return Fail(OmFormat(
        L"The address lines reach %u bytes: there is nothing at offset %llXh.", flashSize,
        static_cast<unsigned long long>(
            range.start < flashSize ? uint64_t{range.start} + range.size - 1 : range.start)));
}

bool CheckDataFits(const OmDataImage& image) {
    const uint32_t flashSize = OmFlashProgrammer::GetInstance().GetFlashSizeBytes();
    return image.GetHighestAddress() < flashSize ||
           Fail(OmFormat(L"The data reaches up to offset %Xh, beyond the %u bytes that the address "
                         L"lines reach. Use --offset to put it elsewhere.",
                         image.GetHighestAddress(), flashSize));
}

bool IsEraseImpossible() {
    const OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    return programmer.sectors.IsEmpty() && !CanEraseChip(programmer.commandSet);
}

bool FailEraseImpossible() {
    ShowMessage(
        L"Erase operation is disabled because:\n1) Sectors configuration is unknown and so "
        L"erasure of individual sectors is not possible\n2) This chip does not support the "
        L"'full chip erase' command.\n\nTo enable erase operation, please enter the sectors "
        L"configuration using Setup dialog.",
        kWarningBox);
    return false;
}

bool SelectSectors(const OmCliOptions& options, OmSectorRange& chipOffsets) {
    if (OmFlashProgrammer::GetInstance().sectors.IsEmpty())
        return FailSectorsUnknown();
    OmSectorRange indexes;
    const bool selected = options.sectors.empty() ? SelectByAddress(options, indexes)
                                                  : SelectByNumber(options.sectors, indexes);
    chipOffsets = ToChipOffsets(indexes);
    return selected;
}

OmSectorRange GetSectorsForData(const OmDataImage& image) {
    return ToChipOffsets(
        FindTouchedSectors(OmFlashProgrammer::GetInstance().sectors, GetChipCount(), image, 0));
}
