// The tables of pins as tab-separated text, for a spreadsheet: one line a row, columns as in the
// tables. No windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <string>
#include <utility>
#include <vector>

class OmChainPins;

std::wstring FormatSignalTable(const OmFlashPins& pins, const OmChainPins& chain,
                               const std::vector<int>& rows);
std::wstring FormatStaticTable(const OmFlashPins& pins, const OmChainPins& chain,
                               const std::vector<int>& rows);

struct OmPasteProblem {
    size_t line; // from 1
    std::wstring text;
};

// What a pasted text says, and which of its lines say nothing that can be used. Empty lines and a
// line of headings are passed over. A device is named as in the table, as "Dev1" or by its entity,
// and may be left out if only one has BSDL data; a pin by its package pin or its port.
struct OmSignalPaste {
    std::vector<std::pair<int, SignalPin>> rows; // an unconnected pin empties its row
    std::vector<OmPasteProblem> problems;
};

struct OmStaticPaste {
    std::vector<StaticPin> pins;
    std::vector<OmPasteProblem> problems;
};

OmSignalPaste ParseSignalTable(const std::wstring& text, const OmChainPins& chain);
OmStaticPaste ParseStaticTable(const std::wstring& text, const OmChainPins& chain);

// The buses must have been padded.
void ApplyPaste(OmFlashPins& pins, const OmSignalPaste& paste);

// A pin that is in the list already gets the new value and note.
void ApplyPaste(OmFlashPins& pins, const OmStaticPaste& paste);

// Whether `usable` lines are to be taken although others have problems, which are listed. Asks;
// tells if there is nothing usable. True without a word if there is no problem.
bool ConfirmPaste(size_t usable, const std::vector<OmPasteProblem>& problems);
