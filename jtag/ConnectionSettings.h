// How the user reaches the JTAG chain: the chosen cable and, at the same time, every other cable's
// parameters, so that switching back and forth loses nothing. Belongs to the machine and the user,
// and is stored in the settings store, never in a setup file.
#pragma once

#include <cstdint>
#include <string>

// The values are stored in the settings and must not change.
enum class OmCableType : int32_t {
    XilinxParallelCable3 = 0,
    AlteraByteBlasterMV = 1,
    LatticeParallelIspDownload = 2,
    Wiggler = 3,
    EmbestEasyIce = 4,
    DigilentAdept = 5,
    Ftd2xx = 6,
    JLinkUsb = 7,
    JLinkIp = 8,
    AlteraUsbBlaster = 9,
};

inline constexpr int kCableTypeCount = 10;

struct OmConnectionSettings {
    OmCableType cableType = OmCableType::XilinxParallelCable3;
    int32_t lptPort = 0;           // 0 to 2 for LPT1 to LPT3
    int32_t lptFrequency = 200000; // Hz, 1000 to 200000
    std::string digilentId;
    std::string ftd2xxDescription;
    std::string ftd2xxSerial;
    int32_t ftd2xxFrequency = 6000000; // Hz, 1000 to 30000000
    bool ftd2xxAdaptiveClocking = false;
    uint16_t ftd2xxGpioDir = 0x051B;   // low byte ADBUS, high byte ACBUS; 1 = output
    uint16_t ftd2xxGpioValue = 0x010A; // likewise
    std::wstring ftd2xxGpioSchemeDesc;
    int32_t jlinkUsbNumber = 0;          // 0 to 3
    int32_t jlinkUsbFrequency = 6000000; // Hz, 1000 to 12000000
    std::string jlinkIpHost = "localhost";
    int32_t jlinkIpPort = 19020;        // 0 to 65535
    int32_t jlinkIpFrequency = 6000000; // Hz, 1000 to 12000000
    std::string usbBlasterDescription;
    std::string usbBlasterSerial;
    bool ftd2xxIsHighSpeed = false; // set by the FT2232 cable when it opens; not stored

    void ResetToDefaults();

    // All numbers are within their ranges.
    bool IsValid() const;

    // Both lead to the same connection: equal cable types and equal values of what matters to that
    // type.
    bool SameConnection(const OmConnectionSettings& other) const;

    // For parallel-port cables: replaces a port that the machine does not have by the lowest that
    // it has.
    void FixLptPort();
};

// Read from and written to the current wxConfigBase at its root path. Loading never fails: missing
// values keep their defaults, and a record with any value out of range is replaced by the defaults
// as a whole.
void LoadConnectionSettings(OmConnectionSettings& settings);
void SaveConnectionSettings(const OmConnectionSettings& settings);
