// The program with settings that are damaged, or that cannot be read or written.
#include "tests/support/WithPermissions.h"
#include "tests/windows/StartUp.h"
#include "tests/windows/support/UserActions.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <wx/config.h>
#include <wx/log.h>

namespace {

namespace fs = std::filesystem;

// What the toolkit's log would put into a box of its own, in front of the program or behind it.
class BoxCounter : public wxLog {
  public:
    BoxCounter() : previous_(SetActiveTarget(this)) {}

    ~BoxCounter() override { SetActiveTarget(previous_); }

    std::string texts;

  protected:
    void DoLogText(const wxString& text) override { texts += text.ToStdString() + "\n"; }

  private:
    wxLog* previous_;
};

std::string MakeGarbage() {
    std::string garbage;
    uint32_t state = 1;
    for (int index = 0; index < 5000; ++index) {
        state = state * 1664525 + 1013904223;
        garbage += static_cast<char>(state >> 24);
    }
    return garbage;
}

class Settings : public StartUp {
  protected:
    void WriteSettings(const std::string& text) { folder_.Write(kSettingsFile, text); }

    // As the program was closed, so it is started again.
    wxRect StoreAndComeBack(const std::string& settings) {
        WriteSettings(settings);
        return Start({}).GetRect();
    }
};

} // namespace

TEST_F(Settings, ThatAreUnusableNeitherStopTheProgramNorBringABox) {
    const struct {
        const char* what;
        std::function<void()> prepare;
    } cases[] = {
        {"no file", [] {}},
        {"empty file", [this] { WriteSettings(""); }},
        {"garbage", [this] { WriteSettings(MakeGarbage()); }},
        {"broken lines", [this] { WriteSettings("[Recent\nfile1\n=x\n[/]\n]\n\\\nx=1\nx=2\n"); }},
        {"a folder in place of the file",
         [this] { fs::create_directories(folder_.path / kSettingsFile / "inside"); }},
        {"a file in place of the folder",
         [this] { setenv("XDG_CONFIG_HOME", folder_.Write("file", "").c_str(), 1); }},
        {"a folder that cannot be made",
         [] { setenv("XDG_CONFIG_HOME", "/proc/no/such/folder", 1); }},
        {"a file that takes nothing",
         [this] { fs::create_symlink("/dev/full", folder_.path / kSettingsFile); }},
    };

    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        fs::remove_all(folder_.path / kSettingsFile);
        test.prepare();
        const BoxCounter boxes;
        EXPECT_EQ(Start({}).GetTitle(), "Untitled - Velmora Flash Programmer");
        EXPECT_EQ(frame_->GetSize(), wxSize(670, 680));
        Stop();
        EXPECT_EQ(boxes.texts, "");
        setenv("XDG_CONFIG_HOME", folder_.path.c_str(), 1);
    }
}

TEST_F(Settings, ThatMustNotBeReadOrWrittenAreTheDefaults) {
    fs::permissions(folder_.path, fs::perms::all); // for nobody
    WriteSettings("x=30\ny=40\nw=800\nh=600\n");
    const BoxCounter boxes;
    {
        fs::permissions(folder_.path / kSettingsFile, fs::perms::none);
        const WithPermissions folder(folder_.path, fs::perms(0555));
        EXPECT_EQ(Start({}).GetSize(), wxSize(670, 680));
        Stop();
    }
    EXPECT_EQ(boxes.texts, "");
    fs::permissions(folder_.path / kSettingsFile, fs::perms::owner_read);
    EXPECT_EQ(ReadWholeFile(folder_.Path(kSettingsFile)), "x=30\ny=40\nw=800\nh=600\n");
}

// $HOME is not merely unset: the toolkit would then find the real one of whoever runs the tests.
TEST_F(Settings, OfAUserWithoutAHomeAreTheDefaults) {
    const std::string home = std::getenv("HOME");
    setenv("HOME", "/proc/no/such/home", 1);
    unsetenv("XDG_CONFIG_HOME");
    const BoxCounter boxes;
    EXPECT_EQ(Start({}).GetSize(), wxSize(670, 680));
    Stop();
    EXPECT_EQ(boxes.texts, "");
    setenv("HOME", home.c_str(), 1);
}

TEST_F(Settings, ThatWereDamagedAreWrittenAnew) {
    for (const std::string& damage : {MakeGarbage(), std::string("x=abc\n[Recent\n=\n")}) {
        WriteSettings(damage);
        Start({}).SetSize(30, 40, 800, 600);
        ASSERT_TRUE(WaitFor([this] { return frame_->GetRect() == wxRect(30, 40, 800, 600); }));
        Stop();
        Start({});
        EXPECT_TRUE(WaitFor([this] { return frame_->GetRect() == wxRect(30, 40, 800, 600); }));
        Stop();
    }
}

TEST_F(Settings, OfAWindowOutOfReachGiveTheDefaultSize) {
    for (const char* settings : {
             "x=-11\ny=40\nw=800\nh=600\n",
             "x=30\ny=-11\nw=800\nh=600\n",
             "x=1181\ny=40\nw=800\nh=600\n",
             "x=30\ny=895\nw=800\nh=600\n",
             "x=30\ny=40\nw=99\nh=600\n",
             "x=30\ny=40\nw=800\nh=99\n",
             "x=4294967326\ny=40\nw=800\nh=600\n",
             "x=30\ny=40\nw=-2147483648\nh=600\n",
         }) {
        EXPECT_EQ(StoreAndComeBack(settings).GetSize(), wxSize(670, 680)) << settings;
        Stop();
    }
}

// No number in the file may make a window that cannot be shown.
TEST_F(Settings, OfAWindowBeyondAnyScreenStillShowIt) {
    for (const char* settings : {
             "x=0\ny=0\nw=2147483647\nh=2147483647\n",
             "x=0\ny=0\nw=99999999999\nh=4294967396\n",
         }) {
        const wxSize size = StoreAndComeBack(settings).GetSize();
        EXPECT_TRUE(frame_->IsShown());
        EXPECT_GT(size.x, 1280) << settings;
        EXPECT_GT(size.y, 1024) << settings;
        Stop();
    }
}

TEST_F(Settings, ThatAreNoNumbersAreTheDefaults) {
    EXPECT_EQ(StoreAndComeBack("x=abc\ny=\nw=0x300\nh=1e9\n").GetSize(), wxSize(670, 680));
}
