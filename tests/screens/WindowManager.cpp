#include "tests/screens/WindowManager.h"

#include "tests/windows/support/UserActions.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kStartMilliseconds = 20000; // on a machine that is busy with a build

// A window manager names its own window on the root window once it manages the others.
bool IsRunning() {
    return std::system("xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'") ==
           0;
}

} // namespace

void WindowManager::SetUp() {
    process_ = fork();
    ASSERT_GE(process_, 0);
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (std::freopen("/dev/null", "w", stderr))
            execlp("openbox", "openbox", static_cast<char*>(nullptr));
        _exit(127);
    }
    ASSERT_TRUE(WaitFor(IsRunning, kStartMilliseconds)) << "openbox did not start";
}

void WindowManager::TearDown() {
    if (process_ <= 0)
        return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

static testing::Environment* const kWindowManager =
    testing::AddGlobalTestEnvironment(new WindowManager);
