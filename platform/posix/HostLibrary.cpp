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

// All vendors name their libraries alike outside Windows: "JLinkARM.dll" is "libjlinkarm.so".
std::string PosixName(std::string_view windowsName) {
    std::string name = "lib";
    for (const char letter : windowsName.substr(0, windowsName.rfind('.')))
        name += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return name + ".so";
}

class HostLoader : public OmLibraryLoader {
  public:
    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        void* handle = dlopen(PosixName(windowsName).c_str(), RTLD_NOW | RTLD_LOCAL);
        return handle ? std::make_unique<HostLibrary>(handle) : nullptr;
    }
};

} // namespace

OmLibraryLoader& GetHostLibraryLoader() {
    static HostLoader loader;
    return loader;
}
