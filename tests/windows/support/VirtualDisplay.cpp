#include "tests/windows/support/VirtualDisplay.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

[[noreturn]] void Give(const char* reason) {
    std::fprintf(stderr, "cannot start the virtual display: %s\n", reason);
    std::exit(EXIT_FAILURE);
}

// As much room for windows at every scale.
std::string ScreenMode() {
    const int scale = std::max(std::atoi(getenv("GDK_SCALE")), 1);
    return std::to_string(1280 * scale) + "x" + std::to_string(1024 * scale) + "x24";
}

[[noreturn]] void BecomeServer(int reportTo) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a crashed test must not leave its display behind
    // Two servers that start at once try the same number; the loser says so and takes the next.
    if (!std::freopen("/dev/null", "w", stderr))
        _exit(127);
    const std::string descriptor = std::to_string(reportTo);
    execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", ScreenMode().c_str(),
           "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
    _exit(127);
}

// The server writes its number with a line feed once it takes clients.
std::string ReadDisplayNumber(int from) {
    std::string number;
    char character = 0;
    while (read(from, &character, 1) == 1 && character != '\n')
        number += character;
    return number;
}

} // namespace

VirtualDisplay::VirtualDisplay() {
    PrepareEnvironment();
    StartServer();
}

VirtualDisplay::~VirtualDisplay() {
    kill(server_, SIGTERM);
    waitpid(server_, nullptr, 0);
}

void VirtualDisplay::PrepareEnvironment() {
    static constexpr std::array<std::pair<const char*, const char*>, 8> kSettings = {{
        {"GDK_BACKEND", "x11"},
        {"GTK_THEME", "Adwaita"},
        {"GSETTINGS_BACKEND", "memory"},
        {"NO_AT_BRIDGE", "1"},
        {"GTK_IM_MODULE", "gtk-im-context-simple"},
        {"LC_ALL", "C.UTF-8"},
        {"LANGUAGE", ""}, // counts before the former where a catalogue is chosen
        {"GDK_SCALE", "1"},
    }};
    // To look at the windows in another theme or scale: OM_KEEP_THEME=1 GTK_THEME=Adwaita:dark ...
    const int replace = getenv("OM_KEEP_THEME") ? 0 : 1;
    for (const auto& [name, value] : kSettings)
        setenv(name, value, replace);
    setenv("HOME", home_.path.c_str(), 1);
    for (const char* name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        const std::filesystem::path folder = home_.path / name;
        std::filesystem::create_directory(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        setenv(name, folder.c_str(), 1);
    }
    SwitchAnimationsOff();
}

// A picture shows a state, not the way to it.
void VirtualDisplay::SwitchAnimationsOff() const {
    const std::filesystem::path folder = home_.path / "XDG_CONFIG_HOME" / "gtk-3.0";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "settings.ini") << "[Settings]\n"
                                              "gtk-enable-animations=false\n"
                                              "gtk-cursor-blink=false\n";
}

void VirtualDisplay::StartServer() {
    int ends[2];
    if (pipe(ends) != 0)
        Give("no pipe");
    server_ = fork();
    if (server_ < 0)
        Give("no process");
    if (server_ == 0) {
        close(ends[0]);
        BecomeServer(ends[1]);
    }
    close(ends[1]);
    const std::string number = ReadDisplayNumber(ends[0]);
    close(ends[0]);
    if (number.empty())
        Give("Xvfb did not start");
    setenv("DISPLAY", (":" + number).c_str(), 1);
}
