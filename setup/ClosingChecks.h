// What is asked before a setup is taken over: does what was entered fit together? Only the first
// thing that does not is told. No windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <optional>
#include <string>

// Where the user can mend it.
enum class OmClosingField { None, BusOrganisation, MaxWidth };

struct OmClosingProblem {
    std::wstring text;
    OmClosingField field = OmClosingField::None;
};

// The buses must have been padded.
std::optional<OmClosingProblem> FindClosingProblem(const OmDesignSetup& setup);

// Whether the setup may be taken over with this problem; asks.
bool ConfirmClosing(const OmClosingProblem& problem);
