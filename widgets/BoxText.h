// Makes a text of any length fit into a message box: names come from outside, and may be as long as
// they like.
#pragma once

#include <string>

// Breaks lines of more than 90 characters, between words where there are any, and leaves out the
// middle of lines and of texts that no box could show. Shorter texts stay as they are.
std::wstring FitIntoBox(const std::wstring& text);
