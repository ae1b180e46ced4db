// A program of its own, as the product is one: it loads the stand-in by path (argument 1), writes
// six bytes to the demo pod, unloads it, and does so again. It links nothing of the board.

#include <cstdint>
#include <cstdio>
#include <dlfcn.h>

namespace {

template <typename Function>
Function* Find(void* library, const char* name) {
    return reinterpret_cast<Function*>(dlsym(library, name));
}

bool UseOnce(const char* path) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    auto* open = Find<uint32_t(const void*, uint32_t, void**)>(library, "FT_OpenEx");
    auto* setMode = Find<uint32_t(void*, uint8_t, uint8_t)>(library, "FT_SetBitMode");
    auto* write = Find<uint32_t(void*, const void*, uint32_t, uint32_t*)>(library, "FT_Write");
    auto* close = Find<uint32_t(void*)>(library, "FT_Close");
    const uint8_t reset[] = {0x80, 0x0A, 0x0B, 0x4B, 0x05, 0x9F};
    void* handle = nullptr;
    uint32_t written = 0;
    const bool done = open("Velmora Demo Board A", 2, &handle) == 0 && setMode(handle, 0, 2) == 0 &&
                      write(handle, reset, sizeof reset, &written) == 0 && close(handle) == 0;
    return dlclose(library) == 0 && done;
}

} // namespace

int main(int, char** arguments) {
    for (int time = 0; time < 2; ++time)
        if (!UseOnce(arguments[1]))
            return 1;
    return 0;
}
