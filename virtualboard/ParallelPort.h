// A PC parallel port with a JTAG pod on it: three registers, and what each pod makes of their bits.
// A test puts it behind its own port driver.
#pragma once

#include "virtualboard/JtagPins.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vb {

// How a pod is wired. The status bit of TDO comes inverted when it is the port's BUSY line.
struct ParallelPod {
    const char* name;
    uint8_t tck, tms, tdi; // bits of the data register
    uint8_t dataHigh;      // further data bits that must be 1 for the pod to work
    uint8_t dataLow;       // and those that must be 0
    uint8_t controlHigh;   // bits of the control register that must be 1
    uint8_t tdo;           // bit of the status register
    bool tdoInverted;
};

// "xilinx", "byteblaster", "isp", "wiggler"; throws std::runtime_error for another name.
const ParallelPod& FindParallelPod(const std::string& name);

class ParallelPort {
  public:
    // `hertz` is the TCK that the host's writes amount to.
    ParallelPort(Board& board, const ParallelPod& pod, uint32_t hertz = 200'000);

    // Registers relative to the port's base address: 0 data, 1 status, 2 control.
    void Write(unsigned offset, uint8_t value);
    uint8_t Read(unsigned offset) const;

    // The port driver's three control codes (read a port, write a port, list the ports) for a
    // machine whose LPT1 at 378h is this port. False if the request makes no sense.
    bool Control(uint32_t code, std::span<const uint8_t> in, std::vector<uint8_t>& out);

    uint64_t Writes() const { return writes_; }

    uint64_t Reads() const { return reads_; }

    // The next call after so many of them fails, once; 0 for never.
    void FailCallAfter(uint64_t calls) { failAfter_ = calls; }

    static constexpr uint16_t kBaseAddress = 0x378;

  private:
    bool PodWorks() const;

    const ParallelPod& pod_;
    JtagPins pins_;
    uint8_t data_ = 0;
    uint8_t control_ = 0x20; // as a bidirectional port may wake up: the data pins are inputs
    uint64_t writes_ = 0;
    mutable uint64_t reads_ = 0;
    uint64_t calls_ = 0;
    uint64_t failAfter_ = 0;
};

} // namespace vb
