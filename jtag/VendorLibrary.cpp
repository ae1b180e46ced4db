#include "jtag/VendorLibrary.h"

#include "jtag/Log.h"
#include "platform/Text.h"

bool OmVendorLibrary::Load(const char* name) {
    library_ = GetLibraryLoader().Load(name);
    return IsLoaded();
}

bool OmVendorLibrary::Resolve(std::span<const OmEntryPoint> table) {
    if (ResolveEntryPoints(*library_, table))
        return true;
    Free();
    return false;
}

bool OmVendorLibrary::LoadAndLog(const char* name, std::span<const OmEntryPoint> table) {
    OmLog(L"Loading %ls ...  ", FromLocal(name).c_str());
    if (IsLoaded()) {
        OmLog(L"OK (DLL already loaded)\n");
        return true;
    }
    if (!Load(name)) {
        OmLog(L"*** FAILED *** (LoadLibrary() failed)\n");
        return false;
    }
    if (!Resolve(table)) {
        OmLog(L"*** FAILED *** (failed to resolve all required exported functions)\n");
        return false;
    }
    OmLog(L"OK\n");
    return true;
}
