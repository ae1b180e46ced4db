// FTDI's D2XX library in the test's own process: keeps every call as a line of text and every write
// as bytes, answers reads from a queue, and fails on demand.
#pragma once

#include "tests/jtag/FakeLibrary.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

class FakeD2xx : public FakeLoader {
  public:
    struct Device {
        std::string description;
        std::string serial;
        uint32_t type = 6; // FT2232H
        uint32_t flags = 0;
        uint32_t id = 0x04036010;
        bool hasDetail = true;
    };

    FakeD2xx();
    ~FakeD2xx() override;
    FakeD2xx(const FakeD2xx&) = delete;
    FakeD2xx& operator=(const FakeD2xx&) = delete;

    // Makes the call of that name fail, after `successes` more that succeed.
    void Fail(const std::string& function, int successes = 0);

    // Exports what only some versions and hosts have: FT_SetVIDPID, with which the list holds
    // FTDI's own devices and those of the one identifier that was set, and FT_SetTimeouts.
    void ExportOptional();

    // The devices that the library lists now.
    std::vector<Device> Listed() const;

    void Answer(const Bytes& bytes) { queue.insert(queue.end(), bytes.begin(), bytes.end()); }

    // All calls so far, or all writes; forgets them.
    std::vector<std::string> TakeCalls();
    std::vector<Bytes> TakeWrites();

    int Count(const std::string& function) const; // among the calls not taken

    std::vector<Device> devices{{"Dual RS232-HS A", "FT0001A"}};
    uint32_t extraDevices = 0;     // counted by the library, but without detail
    std::deque<uint8_t> queue;     // what FT_Read gives
    size_t readLimit = SIZE_MAX;   // bytes that one FT_Read gives at most
    size_t readOverrun = 0;        // bytes that FT_Read claims beyond what was asked for
    size_t writeShortfall = 0;     // bytes that FT_Write leaves out
    uint32_t waiting = UINT32_MAX; // what FT_GetQueueStatus says; UINT32_MAX: the queue's size
    uint64_t answerAt = 0;         // milliseconds of the clock from which FT_Read gives anything
    unsigned readMilliseconds = 0; // that each FT_Read takes
    bool listsAll = true;
    uint32_t customId = 0;
    uint32_t openedType = 6; // what FT_GetDeviceInfo says
    std::vector<std::string> calls;
    std::vector<Bytes> writes;
    int openHandles = 0;

    // Used by the exported functions: notes the call; true if it shall fail.
    bool Note(const std::string& function, const std::string& arguments);

  private:
    std::string failing_;
    int successes_ = 0;
};
