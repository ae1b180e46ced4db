#include "platform/SharedLibrary.h"

#include "platform/Host.h"

#include <cstdlib>

namespace {

OmLibraryLoader* installed = nullptr;

} // namespace

OmLibraryLoader& GetLibraryLoader() {
    return installed ? *installed : GetHostLibraryLoader();
}

OmLibraryLoader* SetLibraryLoader(OmLibraryLoader* loader) {
    OmLibraryLoader* previous = installed;
    installed = loader;
    return previous;
}

std::string GetLibraryVariable(const char* windowsName) {
    std::string variable = "VELFLASH_";
    for (const char* letter = windowsName; *letter != '\0' && *letter != '.'; ++letter)
        variable +=
            *letter >= 'a' && *letter <= 'z' ? static_cast<char>(*letter - 'a' + 'A') : *letter;
    return variable;
}

std::string GetLibraryOverride(const char* windowsName) {
    const char* file = std::getenv(GetLibraryVariable(windowsName).c_str());
    return file ? file : "";
}

bool ResolveEntryPoints(OmSharedLibrary& library, std::span<const OmEntryPoint> table) {
    bool complete = true;
    for (const OmEntryPoint& row : table) {
        *row.address = library.Resolve(row.name);
        complete = complete && (*row.address || !row.required);
    }
    if (!complete) {
        for (const OmEntryPoint& row : table)
            *row.address = nullptr;
    }
    return complete;
}
