#include "platform/Host.h"
#include "platform/SharedLibrary.h"

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

class HostLoader : public OmLibraryLoader {
  public:
    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        SetErrorMode(SEM_FAILCRITICALERRORS); // a missing driver must not put up a system box
        HMODULE handle = LoadLibraryA(windowsName);
        SetErrorMode(0);
        return handle ? std::make_unique<HostLibrary>(handle) : nullptr;
    }
};

} // namespace

OmLibraryLoader& GetHostLibraryLoader() {
    static HostLoader loader;
    return loader;
}
