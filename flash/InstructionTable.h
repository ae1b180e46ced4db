// Gives the chain analyzer the instruction codes that boundary-scan needs.
#pragma once

#include "setup/DesignSetup.h"

#include <vector>

class OmChainAnalyzer;

// Replaces the analyzer's table by one entry a device: the IR length (kUnknownIrLength if nobody
// knows it), EXTEST, and PRELOAD or, where a device has none, SAMPLE. Codes that the BSDL data
// leaves open stay empty; don't-care bits of a code become 1.
void FillInstructionTable(const std::vector<OmChainDevice>& devices, OmChainAnalyzer& analyzer);
