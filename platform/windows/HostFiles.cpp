#include "platform/FileReplacement.h"
#include "platform/Host.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace {

std::FILE* Open(const std::filesystem::path& path, int flags, bool text) {
    const int kind = text ? _O_TEXT : _O_BINARY;
    const int file =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | flags | kind, _S_IREAD | _S_IWRITE);
    return file < 0 ? nullptr : _fdopen(file, text ? "w" : "wb");
}

} // namespace

std::filesystem::path PathFromLocal(const std::string& text) {
    return FromLocal(text);
}

std::filesystem::path PathFromWide(const std::wstring& text) {
    return text;
}

std::FILE* CreateHostFile(const std::filesystem::path& path, bool text) {
    return Open(path, _O_EXCL, text);
}

std::FILE* OpenHostFile(const std::filesystem::path& path, bool text) {
    return Open(path, _O_TRUNC, text);
}

bool IsHostFileWritable(const std::filesystem::path& path) {
    constexpr int kWritable = 2;
    return _waccess(path.c_str(), kWritable) == 0;
}

// A file inherits its access rights from its folder.
void CopyHostFileAccess(const std::filesystem::path&, const std::filesystem::path&) {}

bool SyncHostFile(std::FILE* stream) {
    return _commit(_fileno(stream)) == 0;
}
