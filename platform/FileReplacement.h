// Writing a file so that a failure never costs the one that was there: everything goes to a
// temporary file beside the target, which takes the target's place when it is whole.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

// A path from text in the local encoding, and from wide text.
std::filesystem::path PathFromLocal(const std::string& text);
std::filesystem::path PathFromWide(const std::wstring& text);

// A symbolic link is followed, so that what it points to is replaced. The new file keeps the
// permissions of the old one; one that must not be written is refused. A target that is no regular
// file (a terminal, a pipe) has nothing to lose and is written directly.
class OmFileReplacement {
  public:
    enum class Mode { Binary, Text }; // Text ends lines as the host does

    OmFileReplacement(const std::filesystem::path& target, Mode mode);
    ~OmFileReplacement(); // without Commit: removes the temporary file
    OmFileReplacement(const OmFileReplacement&) = delete;
    OmFileReplacement& operator=(const OmFileReplacement&) = delete;

    // False once anything has failed; the file is then not replaced, and errno tells what failed
    // first.
    bool Write(std::string_view text);

    // Puts the written file in place; false, with errno, if anything has failed. To be called once.
    bool Commit();

  private:
    void Open(Mode mode);
    bool Close();
    void Note(bool succeeded);
    bool Answer() const;

    std::filesystem::path target_;
    std::filesystem::path temporary_; // empty for a target that is written directly
    std::FILE* stream_ = nullptr;
    int error_ = 0; // errno of what failed first; 0 while all is well
};
