#include "platform/Host.h"

#include "platform/Text.h"

#include <filesystem>
#include <system_error>

std::wstring GetHostProgramPath() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::wstring() : FromLocal(path.string());
}
