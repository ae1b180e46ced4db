// Random input, valid and invalid, must never cost more than a message. The seed makes a run, and
// each of its steps, repeatable:
//   OM_MONKEY_SECONDS    how long; 5 by default
//   OM_MONKEY_SEED       1 by default
//   OM_MONKEY_JOURNAL    file for what was done, one line a deed
#include "tests/monkey/Monkey.h"
#include "tests/windows/support/ModalSteps.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>
#include <wx/fileconf.h>
#include <wx/wx.h>

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kStepProcessorSeconds = 60; // of one step, under the sanitizers
constexpr unsigned kStepSeconds = 300;    // the same on a busy machine, for what waits

uint64_t FromEnvironment(const char* name, uint64_t otherwise) {
    const char* text = std::getenv(name);
    return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

void TellHang(int) {
    static constexpr char kText[] = "the window hangs in this step\n";
    if (write(STDERR_FILENO, kText, sizeof kText - 1) < 0)
        _exit(1);
    std::abort();
}

// Ends the program if one step takes too long.
class Watchdog {
  public:
    Watchdog() {
        std::signal(SIGALRM, TellHang);
        std::signal(SIGPROF, TellHang);
    }

    ~Watchdog() { Arm(0, 0); }

    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    void Feed() { Arm(kStepProcessorSeconds, kStepSeconds); }

  private:
    static void Arm(int processorSeconds, unsigned seconds) {
        const itimerval timer{{0, 0}, {processorSeconds, 0}};
        setitimer(ITIMER_PROF, &timer, nullptr);
        alarm(seconds);
    }
};

// In the program, an error or a warning in the toolkit's log comes up as a box that nobody wrote.
class FailingLog : public wxLog {
  public:
    FailingLog() : previous_(SetActiveTarget(this)) {}

    ~FailingLog() override { SetActiveTarget(previous_); }

    FailingLog(const FailingLog&) = delete;
    FailingLog& operator=(const FailingLog&) = delete;

  protected:
    void DoLogRecord(wxLogLevel level, const wxString& text, const wxLogRecordInfo&) override {
        if (level <= wxLOG_Message) {
            ADD_FAILURE() << "the toolkit logs: " << text;
        }
    }

  private:
    wxLog* previous_;
};

// A working folder of its own, where a program that stands for the editor and the browser does
// nothing.
class Surroundings {
  public:
    Surroundings() : workingFolder_(std::filesystem::current_path()) {
        const std::string opener = folder_.Write("xdg-open", "#!/bin/sh\n");
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
        setenv("PATH", (folder_.path.string() + ":" + std::getenv("PATH")).c_str(), 1);
        std::filesystem::current_path(folder_.path);
        auto* store = new wxFileConfig("test", "test", folder_.Path("settings"), wxString(),
                                       wxCONFIG_USE_LOCAL_FILE);
        store->SetExpandEnvVars(false);
        previousStore_ = wxConfigBase::Set(store);
    }

    ~Surroundings() {
        delete wxConfigBase::Set(previousStore_);
        std::filesystem::current_path(workingFolder_);
    }

    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

  private:
    TemporaryFolder folder_;
    std::filesystem::path workingFolder_;
    wxConfigBase* previousStore_;
};

} // namespace

TEST(MonkeyTest, LeavesTheProgramAlive) {
    const std::chrono::seconds time(FromEnvironment("OM_MONKEY_SECONDS", 5));
    const uint64_t seed = FromEnvironment("OM_MONKEY_SEED", 1);
    const Surroundings surroundings;
    const DialogsAllowed dialogs;
    const FailingLog log;
    Journal journal(std::getenv("OM_MONKEY_JOURNAL"));
    Watchdog watchdog;
    watchdog.Feed();
    Monkey monkey(seed, journal);
    const auto end = SteadyClock::now() + time;
    while (!HasFailure() && SteadyClock::now() < end) {
        watchdog.Feed();
        monkey.Step();
    }
    std::printf("seed %llu: %llu steps\n", static_cast<unsigned long long>(seed),
                static_cast<unsigned long long>(monkey.StepCount()));
    EXPECT_GT(monkey.StepCount(), 20U);
    EXPECT_FALSE(HasFailure()) << "in step " << monkey.StepCount() << " of seed " << seed;
}
