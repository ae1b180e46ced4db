// Run-time loading of vendor libraries, which are closed and never linked. A library is named by
// its Windows file name everywhere in the program; the host's loader translates.
#pragma once

#include <memory>
#include <span>
#include <string>

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

// The environment variable in which the user may name a library's file: VELFLASH_FTD2XX for
// "ftd2xx.dll".
std::string GetLibraryVariable(const char* windowsName);

// What that variable holds, empty for nothing. If there is something, nothing else is tried.
std::string GetLibraryOverride(const char* windowsName);

// The library's name on this host.
std::string GetHostLibraryName(const char* windowsName);

// One row of a vendor's table of entry points: the exported name and where its address goes.
struct OmEntryPoint {
    const char* name;
    void** address;
    bool required = true; // if not, the address stays null where the library lacks it
};

// Resolves every row; false if any required one is missing, and then all addresses are null.
bool ResolveEntryPoints(OmSharedLibrary& library, std::span<const OmEntryPoint> table);
