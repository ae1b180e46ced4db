#include "platform/Host.h"

#include <algorithm>
#include <windows.h>

// The list is of names such as "de-AT", each with a null after it.
std::vector<std::string> GetHostLanguages() {
    wchar_t names[1024];
    ULONG length = 1024;
    ULONG count = 0;
    if (!GetUserPreferredUILanguages(MUI_LANGUAGE_NAME, &count, names, &length))
        return {};
    std::vector<std::string> languages;
    for (const wchar_t* name = names; *name; name += languages.back().size() + 1) {
        languages.emplace_back(name, name + std::char_traits<wchar_t>::length(name));
        std::replace(languages.back().begin(), languages.back().end(), '-', '_');
    }
    return languages;
}
