// The USB devices that the vendor library will list, and how their calls go wrong when asked to.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vb {

enum class PodType { Ft2232H, Ft2232C, Ft232R, UsbBlaster, JLink, Digilent, Other };

struct PodEntry {
    PodType type = PodType::Ft2232H;
    std::string description = "Velmora Demo Board A";
    std::string serial = "VELDEMO1A";
    bool open = false;       // held by another program
    bool onThisBoard = true; // false: a pod with nothing connected
    uint32_t usbId = 0;      // vendor above, product below; 0 for the usual one of its type
    bool returnClock = true; // RTCK follows TCK, for adaptive clocking
    // Port pins that must be driven so to open the pod's buffers: low byte for the low port, high
    // byte for the high one.
    uint16_t needsLow = 0;
    uint16_t needsHigh = 0;
};

struct PodFaults {
    std::map<std::string, uint64_t> failingCalls; // function name to the number of the failing call
    uint64_t unplugAfterCalls = 0;                // 0 for never
    uint32_t shortReadBytes = 0;                  // at most so many bytes a read; 0 for no limit
    bool readsNeverComplete = false;
};

// How time passes while TCK stands still.
enum class IdleTime {
    None,   // not at all: every run is the same
    Sleeps, // host pauses of some milliseconds between two calls count
};

struct PodDescription {
    std::vector<PodEntry> entries;
    PodFaults faults;
    IdleTime idleTime = IdleTime::None;
};

} // namespace vb
