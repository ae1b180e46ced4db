// A vendor's library as a cable holds it: loaded when first needed, its functions found by a table,
// freed with the cable.
#pragma once

#include "platform/SharedLibrary.h"

#include <memory>
#include <span>

// Calling convention of the vendors' functions.
#ifdef _WIN32
#define OM_VENDOR_CALL __stdcall
#else
#define OM_VENDOR_CALL
#endif

// A row of an entry point table, for a function pointer of any type.
template <typename Function>
OmEntryPoint MakeEntryPoint(const char* name, Function*& function) {
    return {name, reinterpret_cast<void**>(&function)};
}

class OmVendorLibrary {
  public:
    bool IsLoaded() const { return library_ != nullptr; }

    // Without a word in the log.
    bool Load(const char* name);

    // Finds every function of the table; if one is missing, frees the library.
    bool Resolve(std::span<const OmEntryPoint> table);

    // Both of the above, with the log lines that most cables have in common. True at once if the
    // library is loaded already.
    bool LoadAndLog(const char* name, std::span<const OmEntryPoint> table);

    void Free() { library_.reset(); }

  private:
    std::unique_ptr<OmSharedLibrary> library_; // null until loaded
};
