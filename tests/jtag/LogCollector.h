// A sink that keeps what the connection log says, line feeds included.
#pragma once

#include "jtag/Log.h"

#include <string>
#include <utility>

class LogCollector : public OmLogSink {
  public:
    LogCollector() : previous_(SetLogSink(this)) {}

    ~LogCollector() override { SetLogSink(previous_); }

    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    void Write(const std::wstring& written) override {
        text += written;
        ++writes;
    }

    // What was said since the last call.
    std::wstring Take() { return std::exchange(text, {}); }

    std::wstring text;
    int writes = 0;

  private:
    OmLogSink* previous_;
};
