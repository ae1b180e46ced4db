// Names of ports as BSDL cells write them.
#pragma once

#include <string>
#include <string_view>

// "DATA(3)" gives "DATA" and 3, anything that does not end in an index in parentheses an index of
// -1.
void SplitPortName(std::string_view text, std::string& name, int& index);
