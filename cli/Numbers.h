// Numbers as they are typed on a command line.
#pragma once

#include "jobs/SectorChoice.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// An 8-bit offset: hexadecimal, with or without 0x; with K or M after it decimal, in units of 1024
// or 1048576.
std::optional<uint32_t> ParseOffset(std::string_view text);

// Bytes: decimal, hexadecimal with 0x, or decimal with K or M. At least 1.
std::optional<uint32_t> ParseSize(std::string_view text);

// Hertz: decimal, or with k or M after it in units of 1000 or 1000000; a fraction is allowed then.
std::optional<int32_t> ParseFrequency(std::string_view text);

// Sector numbers from 0, single and as runs: "0-3,7". Both ends of a run are included.
std::optional<std::vector<OmSectorRun>> ParseSectorList(std::string_view text);
