#include "cli/ConsoleProgress.h"

#include "cli/Interrupt.h"
#include "cli/Terminal.h"
#include "platform/Clock.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

constexpr size_t kEchoLength = 2; // the terminal shows ^C where the line ends
constexpr uint64_t kShowEveryMilliseconds = 100;

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
    steps_ = 0;
    messages_ = 0;
    message_.clear();
}

void OmConsoleProgress::BeginSteps(uint64_t steps) {
    Begin(0);
    steps_ = steps;
}

bool OmConsoleProgress::OnProgress(int percent, const wchar_t* message) {
    const bool isNew = message && message_ != message;
    if (isNew)
        TakeMessage(percent, message);
    if (style_ == OmProgressStyle::Lines)
        ShowLine(percent, isNew);
    if (style_ == OmProgressStyle::Terminal &&
        (isNew || GetClock().Milliseconds() - shown_ >= kShowEveryMilliseconds))
        ShowOnTerminal(percent);
    return !IsInterrupted();
}

// Messages that follow each other in one step share its clock.
void OmConsoleProgress::TakeMessage(int percent, const wchar_t* message) {
    message_ = message;
    shownTenth_ = 0;
    ++messages_;
    if (percent <= 0 && (steps_ == 0 || messages_ == 1))
        started_ = GetClock().Milliseconds();
}

void OmConsoleProgress::OnFinish() {
    if (shownLength_ == 0)
        return;
    WriteOver({});
    std::fputc('\r', stream_);
    std::fflush(stream_);
}

void OmConsoleProgress::ShowOnTerminal(int percent) {
    shown_ = GetClock().Milliseconds();
    WriteOver(ToLocal(message_) + FormatState(percent, shown_ - started_));
    std::fflush(stream_);
}

// With blanks over what is left of the line before: not every console knows how to erase. A line
// longer than the terminal is wide would go on below, and could not be written over.
void OmConsoleProgress::WriteOver(std::string line) {
    const size_t room = GetTerminalWidth(stream_) - 1;
    line.resize(std::min(line.size(), room));
    const size_t length = line.size();
    const size_t written = shownLength_ + (IsInterrupted() ? kEchoLength : 0);
    if (length < written)
        line.resize(std::min(written, room), ' ');
    std::fprintf(stream_, "\r%s", line.c_str());
    shownLength_ = length;
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
        return steps_ > 0 ? FormatSteps(elapsed) : "  " + FormatTime(elapsed);
    std::string state = OmFormat("  %d%%", percent);
    if (percent == 0 || elapsed == 0)
        return state;
    if (bytes_ > 0)
        state += "  " + FormatRate(static_cast<double>(bytes_) * percent * 10 /
                                   static_cast<double>(elapsed));
    const auto done = static_cast<uint64_t>(percent);
    return state + "  " + FormatTime(elapsed * (100 - done) / done) + " left";
}

// By the pieces that are done; the one at hand is not.
std::string OmConsoleProgress::FormatSteps(uint64_t elapsed) const {
    const uint64_t done = std::min(messages_ - std::min<uint64_t>(messages_, 2), steps_);
    if (done == 0)
        return "  0%  " + FormatTime(elapsed);
    return OmFormat("  %llu%%", static_cast<unsigned long long>(done * 100 / steps_)) + "  " +
           FormatTime(elapsed * (steps_ - done) / done) + " left";
}
