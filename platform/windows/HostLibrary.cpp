#include "platform/Host.h"
#include "platform/SharedLibrary.h"

#include <string>
#include <string_view>
#include <windows.h>

namespace {

class HostLibrary : public OmSharedLibrary {
  public:
    explicit HostLibrary(HMODULE handle) : handle_(handle) {}

    ~HostLibrary() override { FreeLibrary(handle_); }

    HostLibrary(const HostLibrary&) = delete;
    HostLibrary& operator=(const HostLibrary&) = delete;

    void* Resolve(const char* name) override {
        return reinterpret_cast<void*>(GetProcAddress(handle_, name));
    }

  private:
    HMODULE handle_; // owned
};

// Libraries that have another name for programs of 64 bits.
struct OtherName {
    std::string_view name;
    const char* of64Bits;
};

constexpr OtherName kOtherNames[] = {{"JLinkARM.dll", "JLink_x64.dll"}};

HMODULE Find(const char* windowsName) {
    const std::string chosen = GetLibraryOverride(windowsName);
    if (!chosen.empty())
        return LoadLibraryA(chosen.c_str());
    HMODULE handle = nullptr;
    for (const OtherName& other : kOtherNames)
        if (sizeof(void*) == 8 && other.name == windowsName)
            handle = LoadLibraryA(other.of64Bits);
    return handle ? handle : LoadLibraryA(windowsName);
}

class HostLoader : public OmLibraryLoader {
  public:
    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        SetErrorMode(SEM_FAILCRITICALERRORS); // a missing driver must not put up a system box
        HMODULE handle = Find(windowsName);
        SetErrorMode(0);
        return handle ? std::make_unique<HostLibrary>(handle) : nullptr;
    }
};

} // namespace

std::string GetHostLibraryName(const char* windowsName) {
    return windowsName;
}

OmLibraryLoader& GetHostLibraryLoader() {
    static HostLoader loader;
    return loader;
}
