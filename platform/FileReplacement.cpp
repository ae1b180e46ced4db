#include "platform/FileReplacement.h"

#include "platform/Host.h"
#include "platform/Text.h"

#include <cerrno>
#include <random>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr int kMaxLinks = 40; // as the systems themselves
constexpr int kMaxNames = 100;

// Where writing to `path` would end up; a link to nowhere gives the file that it names.
fs::path FollowLinks(fs::path path) {
    std::error_code error;
    for (int links = 0; links < kMaxLinks && fs::is_symlink(path, error); ++links) {
        const fs::path next = fs::read_symlink(path, error);
        if (error)
            break;
        path = path.parent_path() / next; // an absolute `next` replaces the whole
    }
    return path;
}

// Short, so that it fits wherever the target's own name does.
fs::path TemporaryNameBeside(const fs::path& target) {
    static std::minstd_rand random{std::random_device{}()};
    return target.parent_path() / OmFormat(".velflash-%08x.tmp", static_cast<unsigned>(random()));
}

} // namespace

OmFileReplacement::OmFileReplacement(const fs::path& target, Mode mode) : target_(target) {
    errno = 0;
    Open(mode);
    Note(stream_ != nullptr);
}

// On failure errno is set.
void OmFileReplacement::Open(Mode mode) {
    std::error_code error;
    const bool text = mode == Mode::Text;
    const fs::file_status status = fs::status(target_, error);
    if (status.type() == fs::file_type::none || fs::is_directory(status)) {
        // The former cannot be looked at: a loop of links, a folder not to be searched.
        errno = fs::is_directory(status) ? EISDIR : error.default_error_condition().value();
        return;
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        // By its own name: a link to a pipe, as /dev/stdout can be one, leads to no name.
        stream_ = OpenHostFile(target_, text);
        return;
    }
    target_ = FollowLinks(target_);
    if (fs::exists(status) && !IsHostFileWritable(target_))
        return;
    for (int attempt = 0; attempt < kMaxNames && !stream_; ++attempt) {
        temporary_ = TemporaryNameBeside(target_);
        stream_ = CreateHostFile(temporary_, text);
    }
    if (stream_ && fs::exists(status))
        CopyHostFileAccess(target_, temporary_);
}

// Whoever asked has been told by then, and may still want to read errno.
OmFileReplacement::~OmFileReplacement() {
    if (!stream_)
        return;
    const int kept = errno;
    std::fclose(stream_);
    std::error_code ignored; // the caller is told of a failure already
    if (!temporary_.empty())
        fs::remove(temporary_, ignored);
    errno = kept;
}

// Only the first failure counts.
void OmFileReplacement::Note(bool succeeded) {
    if (!succeeded && error_ == 0)
        error_ = errno != 0 ? errno : EIO;
}

bool OmFileReplacement::Answer() const {
    if (error_ != 0)
        errno = error_;
    return error_ == 0;
}

bool OmFileReplacement::Write(std::string_view text) {
    if (error_ == 0 && !text.empty()) // an empty text has no place, which fwrite wants
        Note(std::fwrite(text.data(), 1, text.size(), stream_) == text.size());
    return Answer();
}

bool OmFileReplacement::Commit() {
    if (!stream_)
        return Answer();
    Note(Close());
    if (temporary_.empty())
        return Answer();
    std::error_code error;
    if (error_ == 0) {
        fs::rename(temporary_, target_, error);
        errno = error.default_error_condition().value();
        Note(!error);
    }
    if (error_ != 0) {
        std::error_code ignored; // the failure itself is what counts
        fs::remove(temporary_, ignored);
    }
    return Answer();
}

// The content must be on the disk before the name is: after a power failure in between, the name
// would otherwise stand for an empty file.
bool OmFileReplacement::Close() {
    const bool flushed = std::fflush(stream_) == 0 && (temporary_.empty() || SyncHostFile(stream_));
    const int kept = errno;
    const bool closed = std::fclose(stream_) == 0;
    if (!flushed)
        errno = kept;
    stream_ = nullptr;
    return flushed && closed;
}
