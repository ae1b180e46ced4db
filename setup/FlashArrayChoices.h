// What can be chosen about the flash array, and how it is stored in a setup. No windows here.
#pragma once

#include <cstdint>
#include <span>
#include <string>

class OmFlashSectorLayout;

struct OmBusOrganisation {
    const char* label; // for translation
    int32_t chipCount;
    int32_t wordSize; // bytes of one chip's bus
};

std::span<const OmBusOrganisation> GetBusOrganisations();

// Index of the organisation; -1 if it is none of them.
int FindBusOrganisation(int32_t chipCount, int32_t wordSize);

// What a chip with a bus of this width may be capable of, for translation; the index of an entry is
// the shift of command addresses. None for a width that no organisation has.
std::span<const char* const> GetMaxWidthLabels(int32_t wordSize);

// The command sets, for translation; the index is what the setup stores.
std::span<const char* const> GetCommandSetLabels();

// "8 x 8192, 1 x 65536.", or "(no sectors defined)".
std::wstring DescribeSectorGroups(const OmFlashSectorLayout& layout);
