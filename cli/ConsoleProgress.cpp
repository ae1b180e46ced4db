#include "cli/ConsoleProgress.h"

#include "cli/Interrupt.h"
#include "platform/Clock.h"
#include "platform/Text.h"

namespace {

constexpr uint64_t kShowEveryMilliseconds = 100;
constexpr char kClearLine[] = "\r\033[K"; // ECMA-48: erase from the cursor to the end of the line

std::string FormatRate(double bytesPerSecond) {
    if (bytesPerSecond >= 1048576)
        return OmFormat("%.1f MiB/s", bytesPerSecond / 1048576);
    if (bytesPerSecond >= 1024)
        return OmFormat("%.1f KiB/s", bytesPerSecond / 1024);
    return OmFormat("%.0f B/s", bytesPerSecond);
}

std::string FormatTime(uint64_t milliseconds) {
    const auto seconds = static_cast<unsigned long long>((milliseconds + 500) / 1000);
    return OmFormat("%llu:%02llu", seconds / 60, seconds % 60);
}

} // namespace

void OmConsoleProgress::Begin(uint64_t bytes) {
    bytes_ = bytes;
    message_.clear();
}

bool OmConsoleProgress::OnProgress(int percent, const wchar_t* message) {
    const bool isNew = message && message_ != message;
    if (isNew) {
        message_ = message;
        shownTenth_ = 0;
        if (percent <= 0)
            started_ = GetClock().Milliseconds();
    }
    if (style_ == OmProgressStyle::Lines)
        ShowLine(percent, isNew);
    if (style_ == OmProgressStyle::Terminal &&
        (isNew || GetClock().Milliseconds() - shown_ >= kShowEveryMilliseconds))
        ShowOnTerminal(percent);
    return !IsInterrupted();
}

void OmConsoleProgress::OnFinish() {
    if (!lineIsOpen_)
        return;
    std::fputs(kClearLine, stream_);
    std::fflush(stream_);
    lineIsOpen_ = false;
}

void OmConsoleProgress::ShowOnTerminal(int percent) {
    shown_ = GetClock().Milliseconds();
    std::fprintf(stream_, "%s%s%s", kClearLine, ToLocal(message_).c_str(),
                 FormatState(percent, shown_ - started_).c_str());
    std::fflush(stream_);
    lineIsOpen_ = true;
}

void OmConsoleProgress::ShowLine(int percent, bool isNew) {
    if (isNew) {
        std::fprintf(stream_, "%s\n", ToLocal(message_).c_str());
    } else if (percent / 10 > shownTenth_) {
        shownTenth_ = percent / 10;
        std::fprintf(stream_, "%s %d%%\n", ToLocal(message_).c_str(), shownTenth_ * 10);
    }
    std::fflush(stream_);
}

// Percent, rate and time left, as far as they are known.
std::string OmConsoleProgress::FormatState(int percent, uint64_t elapsed) const {
    if (percent < 0)
        return "  " + FormatTime(elapsed);
    std::string state = OmFormat("  %d%%", percent);
    if (percent == 0 || elapsed == 0)
        return state;
    if (bytes_ > 0)
        state += "  " + FormatRate(static_cast<double>(bytes_) * percent * 10 /
                                   static_cast<double>(elapsed));
    const auto done = static_cast<uint64_t>(percent);
    return state + "  " + FormatTime(elapsed * (100 - done) / done) + " left";
}
