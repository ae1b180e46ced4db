// A vendor's library as a cable holds it: loaded when first needed, its functions found by a table,
// freed with the cable.
#pragma once

#include "platform/SharedLibrary.h"

#include <functional>
#include <memory>
#include <span>

// A row of an entry point table, for a function pointer of any type.
template <typename Function>
OmEntryPoint MakeEntryPoint(const char* name, Function*& function) {
    return {name, reinterpret_cast<void**>(&function)};
}

// The same for one that only some versions or hosts have.
template <typename Function>
OmEntryPoint MakeOptionalEntryPoint(const char* name, Function*& function) {
    return {name, reinterpret_cast<void**>(&function), false};
}

// How a cable finds its library and what it says on the way.
struct OmLibraryRow {
    std::span<const char* const> names; // tried in this order
    const wchar_t* heading = L"";       // a line of its own, where one is wanted
    const wchar_t* loadedAlready = L"OK (DLL already loaded)\n";
    const wchar_t* incomplete =
        L"*** FAILED *** (failed to resolve all required exported functions)\n";
};

class OmVendorLibrary {
  public:
    bool IsLoaded() const { return library_ != nullptr; }

    // Loads the library, finds every function of the table and starts the library's use, if that
    // has a form, with the log lines; frees the library if one of these fails. True at once if it
    // is loaded already.
    bool LoadAndLog(const OmLibraryRow& row, std::span<const OmEntryPoint> table,
                    const std::function<bool()>& start = {});

    void Free() { library_.reset(); }

  private:
    bool Load(const char* name);
    bool Resolve(std::span<const OmEntryPoint> table);
    bool LoadAnyAndLog(std::span<const char* const> names);

    std::unique_ptr<OmSharedLibrary> library_; // null until loaded
};
