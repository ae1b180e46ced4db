// What a scan must look like from the far side of the cable: the TAP's walk, and the bits that come
// out of the registers.
#pragma once

#include "jtag/Cable.h"
#include "jtag/TapPaths.h"
#include "tests/cables/CableCases.h"
#include "virtualboard/JtagChain.h"

#include <string>
#include <vector>

using Trace = std::vector<vb::TckCycle>;

// Where a scan starts and ends, as its `from` and `to` name it.
struct ScanEnds {
    OmScanRegister which;
    int from;
    int to;
};

std::ostream& operator<<(std::ostream& stream, const ScanEnds& ends);

// Every cycle of the scan of `in`.
Trace ExpectedTrace(const CableCase& cable, const ScanEnds& ends, const OmBitVector& in);

vb::TapState ExpectedEnd(const ScanEnds& ends);

// Empty if they are equal, otherwise the first difference.
std::string FirstDifference(const Trace& seen, const Trace& expected);

// The registers between TDI and TDO, element 0 nearest TDO. Shifts as IEEE 1149.1 has it: the
// register's bits come out first, then what went in.
class ShiftRegister {
  public:
    explicit ShiftRegister(OmBitVector captured) : bits_(std::move(captured)) {}

    OmBitVector Shift(const OmBitVector& in);

  private:
    OmBitVector bits_;
};

// What the chain of `ThreeDevices` captures after a TAP reset.
ShiftRegister CapturedData();
ShiftRegister CapturedInstruction();

// A fixed pseudo-random sequence.
OmBitVector Pattern(size_t bits, uint32_t seed);
