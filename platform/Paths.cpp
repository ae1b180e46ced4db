#include "platform/Paths.h"

#include "platform/Host.h"

const std::wstring& GetProgramDirectory() {
    static const std::wstring directory = [] {
        const std::wstring path = GetHostProgramPath();
        const size_t separator = path.find_last_of(L"/\\");
        return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator);
    }();
    return directory;
}
