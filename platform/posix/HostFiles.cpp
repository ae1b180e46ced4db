#include "platform/FileReplacement.h"
#include "platform/Host.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::FILE* Open(const std::filesystem::path& path, int flags) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0666);
    return file < 0 ? nullptr : fdopen(file, "wb");
}

} // namespace

std::filesystem::path PathFromLocal(const std::string& text) {
    return text;
}

std::filesystem::path PathFromWide(const std::wstring& text) {
    return ToLocal(text);
}

std::FILE* CreateHostFile(const std::filesystem::path& path, bool) {
    return Open(path, O_EXCL);
}

std::FILE* OpenHostFile(const std::filesystem::path& path, bool) {
    return Open(path, O_TRUNC);
}

bool IsHostFileWritable(const std::filesystem::path& path) {
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; // as opening it would be
}

// The owner can only be kept by the superuser, the group only by a member: where that fails the new
// file belongs to who wrote it, as a new file does.
void CopyHostFileAccess(const std::filesystem::path& from, const std::filesystem::path& to) {
    struct stat status = {};
    if (stat(from.c_str(), &status) != 0)
        return;
    const bool owned = chown(to.c_str(), status.st_uid, status.st_gid) == 0 ||
                       chown(to.c_str(), static_cast<uid_t>(-1), status.st_gid) == 0;
    // Set-user-id bits must not pass on to another owner. A file system without permissions
    // refuses, and then there is nothing to keep.
    chmod(to.c_str(), status.st_mode & (owned ? 07777 : 0777));
}

bool SyncHostFile(std::FILE* stream) {
    return fsync(fileno(stream)) == 0;
}
