// What a stream is connected to.
#pragma once

#include <cstddef>
#include <cstdio>

// A terminal on which a line can be written over.
bool IsTerminal(std::FILE* stream);

// Columns, at least 2; a large number for a stream that is no terminal or does not tell.
size_t GetTerminalWidth(std::FILE* stream);
