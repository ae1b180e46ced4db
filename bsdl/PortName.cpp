#include "bsdl/PortName.h"

#include <cstdio>

void SplitPortName(std::string_view text, std::string& name, int& index) {
    index = -1;
    name = text;
    if (!text.ends_with(')'))
        return;
    const size_t open = text.find('(');
    if (open == std::string_view::npos)
        return;
    int number = -1;
    if (std::sscanf(name.c_str() + open, "(%d)", &number) == 1)
        index = number;
    name.resize(open);
}
