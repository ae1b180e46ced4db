#include "platform/FileReplacement.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Mode = OmFileReplacement::Mode;

class FileReplacement : public ::testing::Test {
  protected:
    bool Replace(const std::string& name, std::string_view text) const {
        OmFileReplacement file(folder_.path / name, Mode::Binary);
        file.Write(text);
        return file.Commit();
    }

    // Names in the folder, to see that nothing else stays there.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder folder_;
};

using Strings = std::vector<std::string>;

TEST_F(FileReplacement, WritesANewFile) {
    EXPECT_TRUE(Replace("new", "content\n"));
    EXPECT_EQ(ReadWholeFile(folder_.Path("new")), "content\n");
    EXPECT_EQ(Names(), (Strings{"new"}));
}

TEST_F(FileReplacement, TakesThePlaceOnlyWhenWhole) {
    folder_.Write("file", "old");
    {
        OmFileReplacement file(folder_.path / "file", Mode::Binary);
        EXPECT_TRUE(file.Write("new"));
        EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "old");
        EXPECT_TRUE(file.Commit());
    }
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "new");
    EXPECT_EQ(Names(), (Strings{"file"}));
}

TEST_F(FileReplacement, WithoutCommitLeavesNoTrace) {
    folder_.Write("file", "old");
    {
        OmFileReplacement file(folder_.path / "file", Mode::Binary);
        EXPECT_TRUE(file.Write("new"));
    }
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "old");
    EXPECT_EQ(Names(), (Strings{"file"}));
}

TEST_F(FileReplacement, KeepsThePermissionsOfTheOldFile) {
    folder_.Write("file", "old");
    const fs::perms kept = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(folder_.path / "file", kept);
    EXPECT_TRUE(Replace("file", "new"));
    EXPECT_EQ(fs::status(folder_.path / "file").permissions(), kept);
}

TEST_F(FileReplacement, FollowsLinks) {
    folder_.Write("file", "old");
    fs::create_directory(folder_.path / "sub");
    fs::create_symlink("../file", folder_.path / "sub" / "link");
    fs::create_symlink(folder_.path / "sub" / "link", folder_.path / "linkToLink");
    EXPECT_TRUE(Replace("linkToLink", "new"));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "new");
    EXPECT_TRUE(fs::is_symlink(folder_.path / "linkToLink"));
    EXPECT_TRUE(fs::is_symlink(folder_.path / "sub" / "link"));
}

TEST_F(FileReplacement, LinkToNowhereMakesTheFile) {
    fs::create_symlink("made", folder_.path / "link");
    EXPECT_TRUE(Replace("link", "new"));
    EXPECT_EQ(ReadWholeFile(folder_.Path("made")), "new");
    EXPECT_EQ(Names(), (Strings{"link", "made"}));
}

TEST_F(FileReplacement, RefusesWhatCannotBeWritten) {
    fs::create_directory(folder_.path / "directory");
    fs::create_symlink("loop", folder_.path / "loop");
    for (const char* name : {"directory", "missing/file", "loop"})
        EXPECT_FALSE(Replace(name, "x")) << name;
    EXPECT_EQ(Names(), (Strings{"directory", "loop"}));
    EXPECT_FALSE(OmFileReplacement(fs::path(), Mode::Binary).Commit());
}

TEST_F(FileReplacement, NameOfTheLongestLengthWorks) {
    const std::string name(255, 'n');
    EXPECT_TRUE(Replace(name, "a"));
    EXPECT_TRUE(Replace(name, "b"));
    EXPECT_EQ(ReadWholeFile(folder_.Path(name)), "b");
}

#ifdef __linux__
TEST_F(FileReplacement, FullDeviceFails) {
    OmFileReplacement file("/dev/full", Mode::Binary);
    file.Write("x");
    EXPECT_FALSE(file.Commit());
}

TEST_F(FileReplacement, PipeBehindALinkIsWrittenDirectly) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    OmFileReplacement file("/proc/self/fd/" + std::to_string(ends[1]), Mode::Binary);
    EXPECT_TRUE(file.Write("x"));
    EXPECT_TRUE(file.Commit());
    char character = 0;
    EXPECT_EQ(read(ends[0], &character, 1), 1);
    EXPECT_EQ(character, 'x');
    close(ends[0]);
    close(ends[1]);
}

TEST_F(FileReplacement, DeviceIsWrittenDirectly) {
    OmFileReplacement file("/dev/null", Mode::Binary);
    EXPECT_TRUE(file.Write("x"));
    EXPECT_TRUE(file.Commit());
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}
#endif

TEST_F(FileReplacement, NothingCanBeWrittenToo) {
    EXPECT_TRUE(Replace("file", {}));
    EXPECT_EQ(ReadWholeFile(folder_.Path("file")), "");
}

TEST_F(FileReplacement, ErrnoTellsWhatFailed) {
    struct {
        fs::path target;
        int error;
    } const cases[] = {
        {folder_.path, EISDIR},
        {folder_.path / "missing/file", ENOENT},
        {"/dev/full", ENOSPC},
        {fs::path(), ENOENT},
    };

    for (const auto& c : cases) {
        bool committed = true;
        {
            OmFileReplacement file(c.target, Mode::Binary);
            file.Write("content");
            committed = file.Commit();
            errno = committed ? 0 : errno;
        }
        EXPECT_EQ(errno, c.error) << c.target;
        EXPECT_FALSE(committed) << c.target;
    }
}

} // namespace
