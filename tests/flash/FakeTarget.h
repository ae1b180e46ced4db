// A board without a wire: a JTAG chain at the level of whole scans, and flash chips on the pins of
// one of its devices. The target outlives the cables that are opened to it, so a test can look at
// it after an operation has closed its cable.
#pragma once

#include "jtag/Cable.h"
#include "setup/DesignSetup.h"
#include "tests/flash/FakeFlashChip.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FakeChainDevice {
    std::optional<uint32_t> idcode; // none: BYPASS after a reset
    unsigned irLength = 4;
    bool idcodeMasksTdi = false; // ATmega: ones instead of TDI while IDCODE is selected
};

class FakeTarget {
  public:
    // One device with the flash pins; `addressPins` of them for the address.
    FakeTarget(int chips, int wordSizeBytes, int addressPins);

    std::unique_ptr<OmCable> MakeCable();

    // A setup that describes this board, with the command set named and the sectors given.
    OmDesignSetup MakeSetup(int cmdSet) const;

    // BSDL data of the device that carries the flash.
    std::unique_ptr<OmBsdlData> MakeBsdl() const;

    // The content as the data image sees it, `count` bytes from 0.
    std::vector<uint8_t> Content(size_t count) const;

    // --- what the cable forwards
    void ResetTap();
    OmBitVector ScanDR(const OmBitVector& in);
    OmBitVector ScanIR(const OmBitVector& in);

    std::vector<FakeChainDevice> devices{{0x0BA00477 | 1, 4}};
    size_t flashDevice = 0;
    std::vector<FakeFlashChip> chips;
    std::optional<uint8_t> tdoStuckAt;
    float vectorsPerTransfer = -1.0F; // answer of the cable to all three questions
    uint32_t frequency = 6000000;
    int callsUntilFailure = -1; // the call after so many throws; negative: none
    std::wstring failureText = L"The pod has gone.";
    std::function<void()> onScan; // called before each boundary scan
    int cablesOpen = 0;
    int resets = 0;
    int boundaryScans = 0;

  private:
    enum class Register { Idcode, Bypass, Boundary };

    struct Pins {
        bool ce = true;
        bool oe = true;
        bool we = true;
        uint32_t address = 0;
        uint32_t data = 0;
    };

    void CountCall();
    size_t BoundaryLength() const;
    size_t FirstDataCell() const;
    OmBitVector CaptureDr();
    void MaskBehindFault(OmBitVector& out) const;
    OmBitVector CaptureBoundary();
    uint32_t ReadChips();
    void WriteChips(uint32_t address, uint32_t data);
    void DrivePins();
    Pins DecodePins() const;

    int wordSize_;
    size_t addressPins_;
    size_t dataPins_;
    Register register_ = Register::Idcode;
    bool driving_ = false; // EXTEST
    OmBitVector latches_;  // boundary register of the flash device
    Pins pins_;
    uint32_t latchedAddress_ = 0; // at the falling edge of WE
};
