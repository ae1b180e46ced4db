// Drives the stand-in library as a JTAG program would: bytes out, bytes in, and a few scans made of
// hand-written MPSSE commands.
#pragma once

#include "tests/virtualboard/D2xxFunctions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vb_test {

using Bits = std::vector<bool>; // element 0 is shifted first

class TestPod {
  public:
    // Opens "Velmora Demo Board A" and sets MPSSE mode, 30 MHz and the JTAG pins.
    TestPod();
    ~TestPod();
    TestPod(const TestPod&) = delete;
    TestPod& operator=(const TestPod&) = delete;

    void* Handle() const { return handle_; }

    void Send(const std::vector<uint8_t>& bytes);
    std::vector<uint8_t> Receive(size_t count);
    std::vector<uint8_t> Exchange(const std::vector<uint8_t>& bytes, size_t answerBytes);

    void ResetTap();
    // From Run-Test/Idle to Run-Test/Idle. Bit texts have the bit that is shifted last on the left.
    Bits ScanIr(const Bits& bits);
    Bits ScanDr(const Bits& bits);
    std::string ScanIr(const std::string& bits);
    std::string ScanDr(const std::string& bits);
    // Many scans in one write, nothing read.
    void ScanDrBlind(const std::vector<Bits>& scans);

  private:
    Bits Scan(const std::vector<uint8_t>& toShift, const Bits& bits);

    void* handle_ = nullptr;
};

Bits ToBits(const std::string& text);
std::string ToText(const Bits& bits);
uint64_t ToNumber(const Bits& bits, size_t first, size_t count);

} // namespace vb_test
