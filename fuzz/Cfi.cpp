// The CFI tables of up to four chips, as the flash may give them, and what the program makes of
// them.

#include "flash/Cfi.h"
#include "flash/FlashInfo.h"
#include "fuzz/Check.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

// Bytes of the fixed part, the number of regions last, then as many regions as that says: nothing
// else is ever read.
OmCfiBuffer TakeTable(FuzzedDataProvider& input) {
    if (input.ConsumeIntegral<uint8_t>() == 0)
        return {};
    OmCfiBuffer table{'Q', 'R', 'Y'};
    for (size_t index = table.size(); index <= kCfiRegionCount; ++index)
        table.push_back(input.ConsumeIntegral<uint8_t>());
    const size_t size = kCfiRegions + size_t{4} * table[kCfiRegionCount];
    while (table.size() < size)
        table.push_back(input.ConsumeIntegral<uint8_t>());
    return table;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    std::vector<OmCfiBuffer> chips(input.ConsumeIntegralInRange<size_t>(1, kMaxChips));
    const bool alike = input.ConsumeBool();
    for (OmCfiBuffer& chip : chips)
        chip = alike && &chip != &chips.front() ? chips.front() : TakeTable(input);
    const OmCfiFindings findings = FindCommandSetInCfi(chips);
    const bool buffered = findings.commandSet == OmCommandSet::IntelExtended ||
                          findings.commandSet == OmCommandSet::AmdBuffered;
    Check(buffered == (findings.bufferBytes >= 2), "a buffered command set has a buffer");
    OmFlashSectorLayout sectors;
    if (FindSectorsInCfi(chips, sectors))
        Check(sectors.FitsAChip(), "a sector map is one that a chip can have");
    for (const OmCfiBuffer& chip : chips)
        Check(FormatCfiRows(chip).size() <= kCfiRowCount, "a report has no more rows than labels");
    return 0;
}
