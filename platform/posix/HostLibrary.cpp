#include "platform/Host.h"
#include "platform/SharedLibrary.h"

#include <dlfcn.h>
#include <string>
#include <string_view>

namespace {

class HostLibrary : public OmSharedLibrary {
  public:
    explicit HostLibrary(void* handle) : handle_(handle) {}

    ~HostLibrary() override { dlclose(handle_); }

    HostLibrary(const HostLibrary&) = delete;
    HostLibrary& operator=(const HostLibrary&) = delete;

    void* Resolve(const char* name) override { return dlsym(handle_, name); }

  private:
    void* handle_; // owned
};

struct LibraryName {
    std::string_view windows;
    const char* posix;
};

// The names under which the vendors ship their libraries outside Windows.
constexpr LibraryName kLibraryNames[] = {
    {"ftd2xx.dll", "libftd2xx.so"},
    {"usbblstr32.dll", "libusbblstr32.so"},
    {"JLinkARM.dll", "libjlinkarm.so"},
    {"dpcutil.dll", "libdpcutil.so"},
};

class HostLoader : public OmLibraryLoader {
  public:
    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        for (const LibraryName& name : kLibraryNames) {
            if (name.windows != windowsName)
                continue;
            void* handle = dlopen(name.posix, RTLD_NOW | RTLD_LOCAL);
            return handle ? std::make_unique<HostLibrary>(handle) : nullptr;
        }
        return nullptr;
    }
};

} // namespace

OmLibraryLoader& GetHostLibraryLoader() {
    static HostLoader loader;
    return loader;
}
