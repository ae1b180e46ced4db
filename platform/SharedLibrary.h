// Run-time loading of vendor libraries, which are closed and never linked. A library is named by
// its Windows file name everywhere in the program; the host's loader translates.
#pragma once

#include <memory>
#include <span>

// A loaded library; destroying it frees the library, after which none of its functions may be
// called.
class OmSharedLibrary {
  public:
    virtual ~OmSharedLibrary() = default;

    // Address of an exported function, null if there is none of that name.
    virtual void* Resolve(const char* name) = 0;
};

class OmLibraryLoader {
  public:
    virtual ~OmLibraryLoader() = default;

    // Loads the vendor library known on Windows as `windowsName` ("ftd2xx.dll"), with the host's
    // error pop-ups off. Null if it cannot be loaded.
    virtual std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) = 0;
};

OmLibraryLoader& GetLibraryLoader();

// Installs `loader` (not owned; null restores the host's); returns the one installed before, null
// for the host's.
OmLibraryLoader* SetLibraryLoader(OmLibraryLoader* loader);

// One row of a vendor's table of entry points: the exported name and where its address goes.
struct OmEntryPoint {
    const char* name;
    void** address;
};

// Resolves every row; false if any is missing, and then all addresses are null.
bool ResolveEntryPoints(OmSharedLibrary& library, std::span<const OmEntryPoint> table);
