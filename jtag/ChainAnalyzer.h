// Finds out, with no prior knowledge of the board, how many devices sit in the JTAG chain and what
// their IDCODEs are, captures the chain's instruction-register bits, and loads instructions. The
// only door from the rest of the program to OmJtagHAL.
#pragma once

#include "jtag/Cable.h"

#include <cstdint>
#include <span>
#include <vector>

inline constexpr uint32_t kUnknownIrLength = 0xFFFFFFFF;

// What LoadInstructions shifts into a device.
inline constexpr int kInstructionBypass = 0;
inline constexpr int kInstructionPreload = 2; // or SAMPLE where the device has no PRELOAD
inline constexpr int kInstructionExtest = 4;

// The instructions of one device; index 0 of the table is the device nearest TDI.
struct OmChainDeviceIr {
    uint32_t irLength = kUnknownIrLength;
    int32_t second = -1;
    OmBitVector codes[4]; // instruction codes 1 to 4; code n is codes[n - 1]
};

class OmChainAnalyzer {
  public:
    // `cable` is not owned; null gives an analyzer without a HAL, on which no scan may be run.
    explicit OmChainAnalyzer(OmCable* cable);

    // Goes on with another cable (null allowed); keeps the instruction table.
    void SetCable(OmCable* cable);

    // Detects the chain: resets the TAPs and pushes a marker through the data registers, at most
    // 4096 bits long in all. On true `chain` holds one entry a device, entry 0 nearest TDI: 32
    // elements for an IDCODE (element 0 is bit 0), one element 0 for a device in BYPASS. `atmelBug`
    // tells that the chain ends at an ATmega that masks TDI while IDCODE is selected, and that
    // devices ahead of it stay unknown. Exceptions of the cable pass through.
    bool AnalyzeChain(std::vector<OmBitVector>& chain, bool& atmelBug);

    // Captures the instruction-register bits of the whole chain, nearest TDO first. False if the
    // marker does not come back.
    bool CaptureChainIr(OmBitVector& captured);

    // Shifts one instruction into each device: `kinds[i]` for device i, 0 for BYPASS (all ones), 1
    // to 4 for that instruction code. False, and no scan, if the table is empty, a length is
    // unknown or beyond all measure, or `kinds` has another size.
    bool LoadInstructions(std::span<const int> kinds);

    // Forwards to the HAL.
    void ResetTap();
    void ScanDR(const OmBitVector& in, OmBitVector& out);
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured);
    uint32_t GetFrequency();
    void GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status);

    OmJtagHAL* hal = nullptr; // not owned, null without a cable
    std::vector<OmChainDeviceIr> devices;
};
