#include "setup/FlashArrayChoices.h"

#include "platform/Translation.h"
#include "setup/SectorLayout.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr OmBusOrganisation kOrganisations[] = {
    {ForTranslation("8-bit  (1 chip x 8-bit)"), 1, 1},
    {ForTranslation("16-bit  (1 chip x 16-bit)"), 1, 2},
    {ForTranslation("16-bit  (2 chips x 8-bit)"), 2, 1},
    {ForTranslation("24-bit  (3 chips x 8-bit)"), 3, 1},
    {ForTranslation("32-bit  (1 chip x 32-bit)"), 1, 4},
    {ForTranslation("32-bit  (2 chips x 16-bit)"), 2, 2},
    {ForTranslation("32-bit  (4 chips x 8-bit)"), 4, 1},
};

constexpr const char* kByteWidths[] = {
    ForTranslation("8-bit only capable"),
    ForTranslation("16-bit capable operating in 8-bit mode (BYTE# is low)"),
    ForTranslation("32-bit capable operating in 8-bit mode (BYTE# is low)"),
};

constexpr const char* kWordWidths[] = {
    ForTranslation("16-bit maximum capable"),
    ForTranslation("32-bit capable operating in 16-bit mode (WORD# is low)"),
};

constexpr const char* kDoubleWordWidths[] = {ForTranslation("32-bit")};

constexpr const char* kCommandSets[] = {
    ForTranslation("Auto-Detect (Recommended)"),
    ForTranslation("Intel Std (Word-by-Word Prog.)"),
    ForTranslation("AMD (Word-by-Word Prog.)"),
};

} // namespace

std::span<const OmBusOrganisation> GetBusOrganisations() {
    return kOrganisations;
}

int FindBusOrganisation(int32_t chipCount, int32_t wordSize) {
    const auto* found = std::ranges::find_if(kOrganisations, [=](const OmBusOrganisation& row) {
        return row.chipCount == chipCount && row.wordSize == wordSize;
    });
    return found == std::end(kOrganisations) ? -1 : static_cast<int>(found - kOrganisations);
}

std::span<const char* const> GetMaxWidthLabels(int32_t wordSize) {
    switch (wordSize) {
    case 1:
        return kByteWidths;
    case 2:
        return kWordWidths;
    case 4:
        return kDoubleWordWidths;
    default:
        return {};
    }
}

std::span<const char* const> GetCommandSetLabels() {
    return kCommandSets;
}

std::wstring DescribeSectorGroups(const OmFlashSectorLayout& layout) {
    if (layout.IsEmpty())
        return Translated("(no sectors defined)");
    std::wstring text;
    for (const OmSectorGroup& group : layout.groups) {
        if (!text.empty())
            text += L", ";
        text += OmFormat(L"%u x %u", group.Count, group.Size);
    }
    return text + L'.';
}
