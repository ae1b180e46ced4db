// A USB-Blaster behind D2XX in the test's own process.
#pragma once

#include "tests/jtag/FakeD2xx.h"

#include <string>

inline constexpr uint32_t kBlasterId = 0x09FB6001;

// One USB-Blaster behind the vendor's private library.
class FakeUsbBlaster : public FakeD2xx {
  public:
    FakeUsbBlaster() {
        libraries = {"usbblstr32.dll"};
        devices = {{"USB-Blaster", "91D28408", 5, 0, kBlasterId}};
    }
};

// Direct bytes written as characters: with TDI high "<" is TCK low, "=" TCK high, both with TMS
// low, and ">" and "?" are the same with TMS high.
inline Bytes Pins(const std::string& states) {
    return {states.begin(), states.end()};
}
