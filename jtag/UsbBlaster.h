// Altera USB-Blaster: an FTDI USB chip in front of a CPLD with a byte protocol of its own. A byte
// is either a state of the pins or the head of a run of bytes to be shifted.
#pragma once

#include "jtag/Cable.h"
#include "jtag/D2xx.h"
#include "jtag/TapPaths.h"

#include <cstdint>
#include <string>
#include <vector>

class OmUsbBlasterProgram;

inline constexpr uint16_t kAlteraUsbVendor = 0x09FB;

// The cable, and boards that have it built in.
inline constexpr OmUsbId kUsbBlasterUsbIds[] = {
    {kAlteraUsbVendor, 0x6001}, {kAlteraUsbVendor, 0x6002}, {kAlteraUsbVendor, 0x6003}};

// A device as the user picks it from a list.
struct OmUsbBlasterRecord {
    std::string description;
    std::string serial;
};

class OmUsbBlaster : public OmCable, public OmJtagHAL {
  public:
    OmUsbBlaster();
    ~OmUsbBlaster() override;
    OmUsbBlaster(const OmUsbBlaster&) = delete;
    OmUsbBlaster& operator=(const OmUsbBlaster&) = delete;

    // Loads the vendor's library. Needed before ListDevices only.
    bool Load();

    // Opens the device of that description (the serial number decides between several; without one
    // the first free USB-Blaster is taken) and brings it to a known state. False, with the reason
    // in the log, on failure.
    bool Initialize(const std::string& description, const std::string& serial);

    void ListDevices(std::vector<OmUsbBlasterRecord>& devices);

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override;
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    // `out` may be null: then TDO is not read.
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return 12000000; } // fixed by the hardware

  private:
    void ResyncCPLD();
    void Scan(OmUsbBlasterProgram& program, OmScanRegister which, const OmBitVector& in,
              OmBitVector* out, int from, int to);

    OmD2xx d2xx_;
};
