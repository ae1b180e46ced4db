// Digilent's library in the test's own process: keeps every call as a line of text, bytes in
// hexadecimal, answers TDO from a list, and fails on demand.
#pragma once

#include "tests/jtag/FakeLibrary.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

class FakeDigilent : public FakeLoader {
  public:
    FakeDigilent();
    ~FakeDigilent() override;
    FakeDigilent(const FakeDigilent&) = delete;
    FakeDigilent& operator=(const FakeDigilent&) = delete;

    // Makes the call of that name fail, after `successes` more that succeed.
    void Fail(const std::string& function, int successes = 0);

    // Calls so far; forgets them.
    std::vector<std::string> TakeCalls();

    std::vector<std::string> names{"DigilentUsb", "Basys"};
    std::deque<std::vector<uint8_t>> tdo; // one answer for each call that gets TDO
    int32_t configureError = 0;
    int deviceCount = 2;
    void* configuredOver = nullptr;
    std::vector<std::string> calls;
    int initialized = 0;
    int opened = 0;
    int enabled = 0;

    // Used by the exported functions: notes the call; true if it shall fail.
    bool Note(const std::string& function, const std::string& arguments);

  private:
    std::string failing_;
    int successes_ = 0;
};
