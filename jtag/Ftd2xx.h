// JTAG cables built around a chip of FTDI's FT2232 family, through the D2XX library and the chip's
// MPSSE engine. A scan is one program, one write and one read; a batch of scans as few as fit.
#pragma once

#include "jtag/Cable.h"
#include "jtag/D2xx.h"
#include "jtag/TapPaths.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

class OmMpsseProgram;

// USB identifiers of parts with an MPSSE: FTDI's own, ...
inline constexpr size_t kFtdiOwnUsbIds = 3;
inline constexpr OmUsbId kFtd2xxUsbIds[] = {
    {0x0403, 0x6010}, // FT2232C, FT2232H
    {0x0403, 0x6011}, // FT4232H
    {0x0403, 0x6014}, // FT232H
    // ... and those of devices that are sold under identifiers of their own.
    {0x0403, 0x8A98}, // TIAO USB Multi-Protocol Adapter
    {0x0403, 0x8A99}, // the same, Lite
    {0x0403, 0xA6D0}, // Texas Instruments XDS100v2
    {0x0403, 0xBCA0}, // Xverve Signalyzer Tool
    {0x0403, 0xBCA1}, // Xverve Signalyzer Lite
    {0x0403, 0xBCD9}, // Luminary evaluation boards
    {0x0403, 0xBCDA}, // Luminary In-Circuit Debug Interface
    {0x0403, 0xBDC8}, // egnite Turtelizer 2
    {0x0403, 0xC140}, // Section5 ICEbear
    {0x0403, 0xC141}, // Section5 ICEbear Plus
    {0x0403, 0xCFF8}, // Amontec JTAGkey and JTAGkey-tiny
    {0x0FBB, 0x1000}, // Amontec JTAGkey-HiSpeed
    {0x15BA, 0x0003}, // Olimex ARM-USB-OCD
    {0x15BA, 0x0004}, // Olimex ARM-USB-TINY
    {0x15BA, 0x002A}, // Olimex ARM-USB-TINY-H
    {0x15BA, 0x002B}, // Olimex ARM-USB-OCD-H
};

// A device as the user picks it from a list.
struct OmFtd2xxRecord {
    std::string description;
    std::string serial;
    bool isHighSpeed = false; // 60 MHz engine: 30 MHz TCK and adaptive clocking
};

class OmFtd2xx : public OmCable, public OmJtagHAL {
  public:
    OmFtd2xx();
    ~OmFtd2xx() override;
    OmFtd2xx(const OmFtd2xx&) = delete;
    OmFtd2xx& operator=(const OmFtd2xx&) = delete;

    // Loads the vendor's library. Needed before ListDevices only.
    bool Load();

    // Opens the device of that description (the serial number decides between several; without one
    // the first suitable free part is taken) and sets it up. `frequency` is the wanted TCK in Hz,
    // above 0. Low bytes of `gpioDir` (1 = output) and `gpioValue` belong to ADBUS, high ones to
    // ACBUS; the JTAG pins in them are overridden. `isHighSpeed` tells what was found. False, with
    // the reason in the log, on failure.
    bool Initialize(const std::string& description, const std::string& serial, uint32_t frequency,
                    bool adaptive, uint16_t gpioDir, uint16_t gpioValue, bool& isHighSpeed);

    // Parts that can do JTAG; the two channels of an FT2232C count as one.
    void ListDevices(std::vector<OmFtd2xxRecord>& devices);

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override;
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return frequency_; }

    void GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) override;

  private:
    struct Layout;

    bool IsHighSpeed();
    void ConfigureUsb();
    bool SendSetup(uint32_t& frequency, bool isHighSpeed, bool adaptive, uint16_t gpioDir,
                   uint16_t gpioValue);
    void Scan(OmMpsseProgram& program, OmScanRegister which, const OmBitVector& in,
              OmBitVector& out, int from, int to);
    void ScanRun(std::span<const OmScanVector> run, const Layout& layout, OmCapturedList* captured);

    // How long the engine takes for a program, at most.
    uint64_t MillisecondsOf(const OmMpsseProgram& program) const;

    OmD2xx d2xx_;
    uint32_t frequency_ = 0; // Hz, as applied
};
