// The command line, read.
#pragma once

#include "cli/Commands.h"
#include "cli/Options.h"

#include <iosfwd>

// What to do: run `command`, or end at once with `exitCode` if that is null (help was shown, or the
// command line is wrong and `err` says how).
struct OmParsedLine {
    const OmCommand* command = nullptr;
    int exitCode = 0;
    OmCliOptions options;
};

OmParsedLine ParseCommandLine(int argc, const char* const* argv, std::ostream& out,
                              std::ostream& err);
