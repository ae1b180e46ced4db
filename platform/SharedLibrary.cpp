#include "platform/SharedLibrary.h"

#include "platform/Host.h"

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

bool ResolveEntryPoints(OmSharedLibrary& library, std::span<const OmEntryPoint> table) {
    bool complete = true;
    for (const OmEntryPoint& row : table) {
        *row.address = library.Resolve(row.name);
        complete = complete && *row.address;
    }
    if (!complete) {
        for (const OmEntryPoint& row : table)
            *row.address = nullptr;
    }
    return complete;
}
