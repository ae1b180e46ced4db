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

    OmD2xx d2xx_;
    uint32_t frequency_ = 0; // Hz, as applied
};
