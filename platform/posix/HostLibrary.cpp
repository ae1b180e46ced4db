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

// Where a vendor's installer puts a library that the ordinary search does not find.
struct UsualPlace {
    std::string_view windowsName;
    const char* folder;
};

constexpr UsualPlace kUsualPlaces[] = {
    {"JLinkARM.dll", "/opt/SEGGER/JLink/"},
};

void* Open(const std::string& file) {
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* Find(const char* windowsName) {
    const std::string chosen = GetLibraryOverride(windowsName);
    if (!chosen.empty())
        return Open(chosen);
    const std::string name = GetHostLibraryName(windowsName);
    void* handle = Open(name);
    for (const UsualPlace& place : kUsualPlaces)
        if (!handle && place.windowsName == windowsName)
            handle = Open(place.folder + name);
    return handle;
}

class HostLoader : public OmLibraryLoader {
  public:
    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        void* handle = Find(windowsName);
        return handle ? std::make_unique<HostLibrary>(handle) : nullptr;
    }
};

} // namespace

// All vendors name their libraries alike: "JLinkARM.dll" is "libjlinkarm.so".
std::string GetHostLibraryName(const char* windowsName) {
    const std::string_view name(windowsName);
    std::string hostName = "lib";
    for (const char letter : name.substr(0, name.rfind('.')))
        hostName += letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return hostName + ".so";
}

OmLibraryLoader& GetHostLibraryLoader() {
    static HostLoader loader;
    return loader;
}
