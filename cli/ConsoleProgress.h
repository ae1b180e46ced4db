// Progress of an action: one line that is written anew on a terminal, plain lines elsewhere.
#pragma once

#include "flash/Progress.h"

#include <cstdint>
#include <cstdio>
#include <string>

enum class OmProgressStyle { None, Lines, Terminal };

class OmConsoleProgress : public OmProgressCallback {
  public:
    // `stream` is not owned.
    OmConsoleProgress(std::FILE* stream, OmProgressStyle style) : stream_(stream), style_(style) {}

    ~OmConsoleProgress() override { OmConsoleProgress::OnFinish(); }

    OmConsoleProgress(const OmConsoleProgress&) = delete;
    OmConsoleProgress& operator=(const OmConsoleProgress&) = delete;

    void Begin(uint64_t bytes) override;
    void BeginSteps(uint64_t steps) override;

    // False once the user has pressed Ctrl+C.
    bool OnProgress(int percent, const wchar_t* message) override;

    void OnFinish() override; // may come at any time, also more than once

  private:
    void TakeMessage(int percent, const wchar_t* message);
    void ShowOnTerminal(int percent);
    void WriteOver(std::string line);
    void ShowLine(int percent, bool isNew);
    std::string FormatState(int percent, uint64_t elapsed) const;
    std::string FormatSteps(uint64_t elapsed) const;

    std::FILE* stream_;
    OmProgressStyle style_;
    uint64_t bytes_ = 0;
    uint64_t steps_ = 0;
    uint64_t messages_ = 0; // since the step began
    std::wstring message_;
    uint64_t started_ = 0;   // milliseconds
    uint64_t shown_ = 0;     // likewise, when the line was last written
    int shownTenth_ = 0;     // tenths of the whole of which a line has told
    size_t shownLength_ = 0; // of the line that is open on a terminal; 0 for none
};
