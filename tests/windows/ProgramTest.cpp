// The program itself, in a process of its own under a window manager: what only those two show.
#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr char kMainTitle[] = "^Untitled - Velmora Flash Programmer$";
constexpr char kBoxTitle[] = "^Velmora Flash Programmer$";
constexpr char kSettingsFile[] = "Velmora Flash Programmer.conf";

std::string RunShell(const std::string& command) {
    std::string output;
    FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
    std::array<char, 4096> block;
    while (pipe && std::fgets(block.data(), block.size(), pipe))
        output += block.data();
    if (pipe)
        pclose(pipe);
    return output;
}

bool WaitUntil(const std::function<bool()>& predicate) {
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!predicate()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

class Process {
  public:
    explicit Process(std::vector<std::string> arguments) {
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        id_ = fork();
        if (id_ == 0) {
            execvp(pointers[0], pointers.data());
            _exit(127);
        }
    }

    ~Process() {
        if (id_ > 0) {
            kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
        }
    }

    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // The most memory that it ever had, in KiB.
    uint64_t GetPeakMemory() const {
        std::ifstream status("/proc/" + std::to_string(id_) + "/status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("VmHWM:"))
                return std::stoull(line.substr(6));
        return 0;
    }

    // Its exit status, or -1 if it does not end.
    int Wait() {
        int status = 0;
        if (!WaitUntil([&] { return waitpid(id_, &status, WNOHANG) == id_; }))
            return -1;
        id_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t id_;
};

// The id of a visible window whose title matches, empty if there is none.
std::string FindWindowId(const std::string& title) {
    const std::string found = RunShell("xdotool search --onlyvisible --name '" + title + "'");
    return found.substr(0, found.find('\n'));
}

bool WaitForWindow(const std::string& title) {
    return WaitUntil([&] { return !FindWindowId(title).empty(); });
}

// Presses a key until the window closes: which of two new windows is active is the window manager's
// affair, and a key that comes before the toolkit has the focus is lost.
void CloseWithKey(const std::string& title, const std::string& key) {
    EXPECT_TRUE(WaitUntil([&] {
        const std::string id = FindWindowId(title);
        if (id.empty())
            return true;
        RunShell("xdotool windowactivate " + id + "; sleep 0.2");
        if (RunShell("xdotool getactivewindow") == id + "\n")
            RunShell("xdotool key " + key + "; sleep 0.2");
        return false;
    })) << title;
}

class Program : public testing::Test {
  protected:
    Program() : windowManager_({"openbox", "--sm-disable"}) {
        EXPECT_TRUE(WaitUntil([] {
            return RunShell("xprop -root _NET_SUPPORTING_WM_CHECK").find("window id") !=
                   std::string::npos;
        }));
        setenv("XDG_CONFIG_HOME", folder_.path.c_str(), 1);
    }

    std::string GetSettings() const { return ReadWholeFile(folder_.Path(kSettingsFile)); }

    static const char* GetProgram() { return std::getenv("OM_PROGRAM"); }

    TemporaryFolder folder_;
    Process windowManager_;
};

} // namespace

TEST_F(Program, WindowComesBackWhereItWasClosed) {
    folder_.Write(kSettingsFile, "x=200\ny=100\nw=600\nh=500\n");
    Process program({GetProgram()});
    ASSERT_TRUE(WaitForWindow(kMainTitle));
    // The client area lies inside the frame that the window manager draws.
    EXPECT_TRUE(WaitUntil([] {
        const std::string geometry =
            RunShell("xdotool getwindowgeometry --shell " + FindWindowId(kMainTitle));
        return geometry.find("X=20") != std::string::npos;
    }));
    CloseWithKey(kMainTitle, "alt+F4");
    EXPECT_EQ(program.Wait(), 0);
    const std::string settings = GetSettings();
    EXPECT_NE(settings.find("x=200\ny=100\nw=600\nh=500\n"), std::string::npos) << settings;
}

TEST_F(Program, WindowClosedMaximizedComesBackAtTheDefaults) {
    folder_.Write(kSettingsFile, "x=200\ny=100\nw=600\nh=500\n");
    Process program({GetProgram()});
    ASSERT_TRUE(WaitForWindow(kMainTitle));
    EXPECT_TRUE(WaitUntil([] {
        RunShell("xdotool mousemove 400 110 click --repeat 2 1; sleep 0.3"); // the title bar
        return RunShell("xprop -id " + FindWindowId(kMainTitle) + " _NET_WM_STATE")
                   .find("MAXIMIZED_VERT") != std::string::npos;
    }));
    CloseWithKey(kMainTitle, "alt+F4");
    EXPECT_EQ(program.Wait(), 0);
    const std::string settings = GetSettings();
    EXPECT_NE(settings.find("x=-1\ny=-1\nw=670\nh=680\n"), std::string::npos) << settings;
    EXPECT_NE(settings.find("Maximized=1\n"), std::string::npos) << settings;
}

TEST_F(Program, SpeaksTheLanguageOfItsUser) {
    setenv("LANGUAGE", "de", 1);
    {
        Process program({GetProgram()});
        EXPECT_TRUE(WaitForWindow("^Unbenannt - Velmora Flash Programmer$"));
        CloseWithKey("^Unbenannt - Velmora Flash Programmer$", "alt+F4");
        EXPECT_EQ(program.Wait(), 0);
    }
    setenv("LANGUAGE", "", 1);
}

TEST_F(Program, SettingsThatCannotBeWrittenBringNoBox) {
    std::filesystem::create_directories(folder_.path / kSettingsFile / "inside");
    Process program({GetProgram()});
    ASSERT_TRUE(WaitForWindow(kMainTitle));
    CloseWithKey(kMainTitle, "alt+F4");
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(Program, BoxAtStartUpStandsAboveTheWindowAndTheProgramGoesOn) {
    Process program({GetProgram(), folder_.Path("missing.velflash")});
    ASSERT_TRUE(WaitForWindow(kBoxTitle));
    ASSERT_TRUE(WaitForWindow(kMainTitle));
    char box[32];
    std::snprintf(box, sizeof box, "0x%lx", std::stoul(FindWindowId(kBoxTitle)));
    EXPECT_TRUE(WaitUntil([&] {
        const std::string stack = RunShell("xprop -root _NET_CLIENT_LIST_STACKING");
        return stack.find(box) == stack.rfind("0x"); // the last one is on top
    }));
    CloseWithKey(kBoxTitle, "Return");
    CloseWithKey(kMainTitle, "alt+F4");
    EXPECT_EQ(program.Wait(), 0);
}

// The sanitizers keep memory of their own, and what was freed.
#ifndef __SANITIZE_ADDRESS__

TEST_F(Program, LoadOfABigFileTakesLittleMoreMemoryThanItsData) {
    constexpr uint32_t kMebibytes = 16;
    OmDataImage image;
    image.SetBytes(0xFE000000, std::vector<uint8_t>(kMebibytes << 20, 0x5A));
    const std::string data = folder_.Path("big.srec");
    ASSERT_TRUE(WriteSRecordFile(data, image));
    uint64_t before = 0;
    {
        const Process program({GetProgram(), folder_.Path("missing.velflash")});
        ASSERT_TRUE(WaitForWindow(kBoxTitle));
        before = program.GetPeakMemory();
    }
    const Process program({GetProgram(), folder_.Path("missing.velflash"), data});
    ASSERT_TRUE(WaitForWindow(kBoxTitle));
    CloseWithKey(kBoxTitle, "Return");
    const uint64_t enough = before + kMebibytes * 1024;
    EXPECT_TRUE(WaitUntil([&] { return program.GetPeakMemory() >= enough; }));
    std::this_thread::sleep_for(1s);
    EXPECT_LT(program.GetPeakMemory(), before + kMebibytes * 1024 * 5 / 2);
}

#endif
