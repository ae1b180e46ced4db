// What the user gave the program on its command line.
#pragma once

#include <span>
#include <string>

struct OmCommandLine {
    std::wstring setupFile; // empty: none
    std::wstring dataFile;  // empty: none
    bool helpWanted = false;

    bool operator==(const OmCommandLine&) const = default;
};

// `arguments` without the program's name, taken as they are. A third file name ends the scan, and
// with it everything after it is ignored.
OmCommandLine ParseCommandLine(std::span<const std::wstring> arguments);
