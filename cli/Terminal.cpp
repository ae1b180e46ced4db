#include "cli/Terminal.h"

#include <cstdlib>
#include <limits>
#include <string_view>
#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

constexpr size_t kUnlimited = std::numeric_limits<size_t>::max();
constexpr size_t kLeastWidth = 2;

size_t CheckWidth(long columns) {
    return columns < static_cast<long>(kLeastWidth) ? kUnlimited : static_cast<size_t>(columns);
}

} // namespace

#ifdef _WIN32

bool IsTerminal(std::FILE* stream) {
    return _isatty(_fileno(stream)) != 0;
}

size_t GetTerminalWidth(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    auto* console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    if (!GetConsoleScreenBufferInfo(console, &info))
        return kUnlimited;
    return CheckWidth(info.srWindow.Right - info.srWindow.Left + 1);
}

#else

// A dumb terminal, such as the shell in an editor, keeps all that is written to it.
bool IsTerminal(std::FILE* stream) {
    const char* kind = std::getenv("TERM");
    return isatty(fileno(stream)) != 0 && kind && std::string_view(kind) != "dumb";
}

size_t GetTerminalWidth(std::FILE* stream) {
    winsize size = {};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) != 0)
        return kUnlimited;
    return CheckWidth(size.ws_col);
}

#endif
