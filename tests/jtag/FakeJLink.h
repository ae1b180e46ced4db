// The J-Link library in the test's own process: keeps every call as a line of text, bit arrays in
// hexadecimal, answers TDO from a list, and reports errors and warnings on demand.
#pragma once

#include "tests/jtag/FakeLibrary.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

class FakeJLink : public FakeLoader {
  public:
    FakeJLink();
    ~FakeJLink() override;
    FakeJLink(const FakeJLink&) = delete;
    FakeJLink& operator=(const FakeJLink&) = delete;

    // Exports the function that only some versions have.
    void ExportSyncBits();

    // Calls so far; forgets them.
    std::vector<std::string> TakeCalls();

    std::deque<std::vector<uint8_t>> tdo; // one answer for each exchange
    const char* openFailure = nullptr;    // what JLINKARM_Open gives
    int selectResult = 0;
    bool pendingError = false;
    const char* rawError = nullptr;   // reported by the next raw call
    const char* syncError = nullptr;  // reported when what is stored is sent
    const char* rawWarning = nullptr; // likewise
    std::vector<std::string> calls;
    bool isOpen = false;

    void (*onWarning)(const char*) = nullptr;
    void (*onError)(const char*) = nullptr;
};
