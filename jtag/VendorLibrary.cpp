#include "jtag/VendorLibrary.h"

#include "jtag/Log.h"
#include "platform/Text.h"

namespace {

void LogLoading(const char* name) {
    OmLog(L"Loading %ls ...  ", FromLocal(name).c_str());
}

} // namespace

bool OmVendorLibrary::Load(const char* name) {
    library_ = GetLibraryLoader().Load(name);
    return IsLoaded();
}

bool OmVendorLibrary::Resolve(std::span<const OmEntryPoint> table) {
    return ResolveEntryPoints(*library_, table);
}

bool OmVendorLibrary::LoadAnyAndLog(std::span<const char* const> names) {
    for (size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            LogLoading(names[i]);
        if (Load(names[i]))
            return true;
        OmLog(L"*** FAILED *** (LoadLibrary() failed)\n");
    }
    return false;
}

bool OmVendorLibrary::LoadAndLog(const OmLibraryRow& row, std::span<const OmEntryPoint> table,
                                 const std::function<bool()>& start) {
    OmLog(L"%ls", row.heading);
    if (!IsLoaded() || !*row.heading)
        LogLoading(row.names.front());
    if (IsLoaded()) {
        OmLog(L"%ls", row.loadedAlready);
        return true;
    }
    if (!LoadAnyAndLog(row.names))
        return false;
    if (!Resolve(table) || (start && !start())) {
        OmLog(L"%ls", row.incomplete);
        Free();
        return false;
    }
    OmLog(L"OK\n");
    return true;
}
