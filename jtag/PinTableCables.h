// The cables on the parallel port.
#pragma once

#include "jtag/ParallelCable.h"

#include <cstdint>

// Bits of the port's registers; the table is the whole difference between them.
struct OmParallelPins {
    uint8_t always; // of the data register, set in every write
    uint8_t tck;
    uint8_t tms;
    uint8_t tdi;
    uint8_t tdo; // of the status register
    bool tdoInverted;
    uint8_t controlClear; // of the control register, when JTAG is enabled
    uint8_t controlSet;

    constexpr bool TouchesControl() const { return (controlClear | controlSet) != 0; }
};

class OmPinTableCable : public OmParallelCable {
  public:
    bool EnableJTAG() override;
    void SetPins(bool tck, bool tms, bool tdi) override;
    int GetTdo() override;

  protected:
    explicit OmPinTableCable(const OmParallelPins& pins) : pins_(pins) {}

  private:
    bool SetUpControl();

    const OmParallelPins& pins_;
};

class OmXilinxParallelCable3 : public OmPinTableCable {
  public:
    OmXilinxParallelCable3();
};

class OmAlteraByteBlasterMV : public OmPinTableCable {
  public:
    OmAlteraByteBlasterMV();
};

class OmLatticeParallelIspDownload : public OmPinTableCable {
  public:
    OmLatticeParallelIspDownload();
};

// Also the Embest EasyICE, which has the same pinout.
class OmWiggler : public OmPinTableCable {
  public:
    OmWiggler();
};
