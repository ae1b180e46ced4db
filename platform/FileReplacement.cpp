#include "platform/FileReplacement.h"

#include "platform/Host.h"
#include "platform/Text.h"

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
    std::error_code error;
    const bool text = mode == Mode::Text;
    const fs::file_status status = fs::status(target, error);
    if (status.type() == fs::file_type::none || fs::is_directory(status))
        return; // the former cannot be looked at: a loop of links, a folder not to be searched
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        // By its own name: a link to a pipe, as /dev/stdout can be one, leads to no name.
        stream_ = OpenHostFile(target, text);
        good_ = stream_ != nullptr;
        return;
    }
    target_ = FollowLinks(target);
    if (!fs::exists(status) || IsHostFileWritable(target_)) {
        for (int attempt = 0; attempt < kMaxNames && !stream_; ++attempt) {
            temporary_ = TemporaryNameBeside(target_);
            stream_ = CreateHostFile(temporary_, text);
        }
        if (stream_ && fs::exists(status))
            CopyHostFileAccess(target_, temporary_);
    }
    good_ = stream_ != nullptr;
}

OmFileReplacement::~OmFileReplacement() {
    if (!stream_)
        return;
    std::fclose(stream_);
    std::error_code ignored; // the caller is told of a failure already
    if (!temporary_.empty())
        fs::remove(temporary_, ignored);
}

bool OmFileReplacement::Write(std::string_view text) {
    good_ = good_ && std::fwrite(text.data(), 1, text.size(), stream_) == text.size();
    return good_;
}

bool OmFileReplacement::Commit() {
    if (!stream_)
        return false;
    good_ = Close() && good_;
    if (temporary_.empty())
        return good_;
    std::error_code error;
    if (good_)
        fs::rename(temporary_, target_, error);
    if (!good_ || error) {
        std::error_code ignored; // the failure itself is what counts
        fs::remove(temporary_, ignored);
        return false;
    }
    return true;
}

// The content must be on the disk before the name is: after a power failure in between, the name
// would otherwise stand for an empty file.
bool OmFileReplacement::Close() {
    const bool flushed = std::fflush(stream_) == 0 && (temporary_.empty() || SyncHostFile(stream_));
    const bool closed = std::fclose(stream_) == 0;
    stream_ = nullptr;
    return flushed && closed;
}
