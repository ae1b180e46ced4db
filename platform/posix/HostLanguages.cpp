#include "platform/Host.h"

#include <algorithm>
#include <cstdlib>

namespace {

// An empty variable counts as none.
std::string GetVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string GetMessageLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (std::string value = GetVariable(name); !value.empty())
            return value;
    return "C";
}

} // namespace

// As GNU gettext reads the environment (its manual, "Locale Environment Variables" and "The
// LANGUAGE variable"), so that the program speaks the language of everything around it.
std::vector<std::string> GetHostLanguages() {
    const std::string locale = GetMessageLocale();
    if (locale == "C" || locale == "POSIX")
        return {};
    const std::string list = GetVariable("LANGUAGE");
    std::vector<std::string> languages;
    for (size_t start = 0; !list.empty() && start <= list.size();) {
        const size_t end = std::min(list.find(':', start), list.size());
        if (end > start)
            languages.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    if (languages.empty())
        languages.push_back(locale);
    for (std::string& language : languages)
        language.resize(std::min(language.find_first_of(".@"), language.size()));
    return languages;
}
