// Cuts BSDL source into the tokens of the grammar. Inputs stack up: the grammar pushes the text of
// an attribute string, which is then read by the same rules before the file goes on. All state is
// process-wide: one parse at a time, from OpenScannerFile to CloseScanner.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Hears of inputs that cannot be opened or pushed, and of exhausted memory.
void SetScannerErrorFunction(std::function<void(const char*)> function);

// Makes the file the bottom of the stack. 0; -1 if it cannot be opened or is beyond 32 MiB; -2 if
// there is an input already; -3 if memory is exhausted. -1 and -3 are reported.
int OpenScannerFile(const char* path);

// Reads a copy of `text` before the present input goes on; `line` counts from there in messages. 0;
// -1 if memory is exhausted; -2 if the text cannot be scanned. Both are reported.
int PushScannerString(std::string_view text, int32_t line);

// Drops the input on top. One must be left below it.
void PopScannerInput();

// Frees every input and every token text, so that the next parse starts clean.
void CloseScanner();

// Delivered once by NextToken before it scans on.
void SetModeToken(int token);

// A token number of the grammar, 0 at the end of the bottom input.
int NextToken();

// Text of the last token, null for tokens without one. Valid until CloseScanner.
const std::string* TokenText();

// A text that lives until CloseScanner, as those of tokens do.
const std::string* MakePoolText(std::string text);

// Where the input on top is. Line 0 and a null name when there is none.
int32_t CurrentLine();
const char* CurrentFileName();
