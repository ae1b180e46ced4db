#include "platform/Host.h"

#include <windows.h>

std::wstring GetHostProgramPath() {
    wchar_t buffer[4096];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, 4096);
    return length < 4096 ? std::wstring(buffer, length) : std::wstring();
}
