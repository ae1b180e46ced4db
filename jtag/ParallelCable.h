// JTAG cables on a PC parallel port, one write of the data register a clock edge. The classes
// differ only in which port bits carry TCK, TMS, TDI and TDO.
#pragma once

#include "jtag/Cable.h"
#include "jtag/CableTiming.h"
#include "jtag/LptPorts.h"
#include "jtag/TapPaths.h"
#include "platform/PortDriver.h"

#include <cstdint>
#include <memory>

class OmParallelCable : public OmCable, public OmJtagHAL {
  public:
    OmParallelCable();
    ~OmParallelCable() override;
    OmParallelCable(const OmParallelCable&) = delete;
    OmParallelCable& operator=(const OmParallelCable&) = delete;

    // `port` is 0 to 2 for LPT1 to LPT3, `frequency` the wanted TCK in Hz. False on failure, which
    // may leave the driver open until the cable is destroyed.
    bool Initialize(uint32_t port, uint32_t frequency);

    const char* GetDriverName() override { return kPortDriverName; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    // Makes the cable drive its JTAG pins.
    virtual bool EnableJTAG() = 0;
    // Both throw OmException if the port cannot be reached.
    virtual void SetPins(bool tck, bool tms, bool tdi) = 0;
    virtual int GetTdo() = 0;

    void ResetTap() override;
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    // `out` may be null: then TDO is not read.
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return frequency; }

    std::unique_ptr<OmPortDriver> driver; // null until opened
    uint16_t baseAddress = 0;             // of the data register
    uint32_t portIndex = 0;
    uint32_t frequency = 0;   // Hz, as requested
    double halfPeriod = -1.0; // microseconds, negative until initialized
    OmCableTiming timing;

  protected:
    // Registers of the port, as offsets from the base address.
    static constexpr uint16_t kData = 0;
    static constexpr uint16_t kStatus = 1;
    static constexpr uint16_t kControl = 2;

    bool ReadPort(uint16_t offset, uint8_t& value);
    bool WritePort(uint16_t offset, uint8_t value);

  private:
    bool OpenDriver();
    bool InitParallelPort();
    void LogRefusal();
    void Drive(bool tck, bool tms, bool tdi);
    bool DriveAndRead(bool tck, bool tms, bool tdi);
    void Cycle(bool tms, bool tdi);
    void WalkToShift(OmScanRegister which, int from);
    void ShiftBit(bool tms, uint8_t bit, OmBitVector* out);
    void Scan(OmScanRegister which, const OmBitVector& in, OmBitVector* out, int from, int to);
};
