// Text in capitals and small letters. ASCII letters alone: the user's locale must not change what
// is equal.
#pragma once

#include <string>
#include <string_view>

std::string UpperCased(std::string_view text);

// As VHDL compares names and people file extensions.
bool EqualsIgnoringCase(std::string_view a, std::string_view b);
