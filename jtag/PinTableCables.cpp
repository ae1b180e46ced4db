#include "jtag/PinTableCables.h"

#include "jtag/Exception.h"
#include "platform/Translation.h"

namespace {

constexpr OmParallelPins kXilinx{.always = 0x10,
                                 .tck = 0x02,
                                 .tms = 0x04,
                                 .tdi = 0x01,
                                 .tdo = 0x10,
                                 .tdoInverted = false,
                                 .controlClear = 0x00,
                                 .controlSet = 0x00};

constexpr OmParallelPins kByteBlaster{.always = 0x00,
                                      .tck = 0x01,
                                      .tms = 0x02,
                                      .tdi = 0x40,
                                      .tdo = 0x80,
                                      .tdoInverted = true,
                                      .controlClear = 0x30,
                                      .controlSet = 0x02};

constexpr OmParallelPins kLattice{.always = 0x38,
                                  .tck = 0x02,
                                  .tms = 0x04,
                                  .tdi = 0x01,
                                  .tdo = 0x40,
                                  .tdoInverted = false,
                                  .controlClear = 0x00,
                                  .controlSet = 0x00};

constexpr OmParallelPins kWiggler{.always = 0x90,
                                  .tck = 0x04,
                                  .tms = 0x02,
                                  .tdi = 0x08,
                                  .tdo = 0x80,
                                  .tdoInverted = true,
                                  .controlClear = 0x32,
                                  .controlSet = 0x01};

} // namespace

OmXilinxParallelCable3::OmXilinxParallelCable3() : OmPinTableCable(kXilinx) {}

OmAlteraByteBlasterMV::OmAlteraByteBlasterMV() : OmPinTableCable(kByteBlaster) {}

OmLatticeParallelIspDownload::OmLatticeParallelIspDownload() : OmPinTableCable(kLattice) {}

OmWiggler::OmWiggler() : OmPinTableCable(kWiggler) {}

bool OmPinTableCable::EnableJTAG() {
    if (pins_.TouchesControl() && !SetUpControl())
        return false;
    try {
        SetPins(false, true, true);
    } catch (const OmException&) {
        return false;
    }
    return true;
}

bool OmPinTableCable::SetUpControl() {
    uint8_t control = 0;
    if (!ReadPort(kControl, control))
        return false;
    return WritePort(kControl,
                     static_cast<uint8_t>((control & ~pins_.controlClear) | pins_.controlSet));
}

void OmPinTableCable::SetPins(bool tck, bool tms, bool tdi) {
    uint8_t value = pins_.always;
    value |= tck ? pins_.tck : 0;
    value |= tms ? pins_.tms : 0;
    value |= tdi ? pins_.tdi : 0;
    if (!WritePort(kData, value))
        throw OmException(Translated("Failed to write to parallel port."));
}

int OmPinTableCable::GetTdo() {
    uint8_t status = 0;
    if (!ReadPort(kStatus, status))
        throw OmException(Translated("Failed to read from parallel port."));
    return ((status & pins_.tdo) != 0) != pins_.tdoInverted ? 1 : 0;
}
