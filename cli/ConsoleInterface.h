// The user interface of the console: messages on standard error, questions answered by an option.
#pragma once

#include "jtag/Log.h"
#include "platform/UserInterface.h"

#include <cstdio>

class OmConsoleInterface : public OmUserInterface {
  public:
    // `stream` is not owned. `yes` answers every question with what lets the action go on; `quiet`
    // leaves out messages of success.
    OmConsoleInterface(std::FILE* stream, bool yes, bool quiet)
        : stream_(stream), yes_(yes), quiet_(quiet) {}

    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override;

    void ShowFailure(const std::wstring& text, const std::wstring& details) override;

    void BeginBusyCursor() override {}

    void EndBusyCursor() override {}

  private:
    std::FILE* stream_;
    bool yes_;
    bool quiet_;
};

// The connection log, line by line as it comes.
class OmConsoleLog : public OmLogSink {
  public:
    explicit OmConsoleLog(std::FILE* stream) : stream_(stream) {}

    void Write(const std::wstring& text) override;

  private:
    std::FILE* stream_;
};
