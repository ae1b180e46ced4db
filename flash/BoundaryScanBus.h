// The flash pins of one action, resolved to boundary cells. Turns wanted levels into DR images of
// the whole chain and captured images back into data words; knows the shape of the flash bus but no
// flash command. Built anew for each action: BuildFromSetup, set `analyzer`, EnterExtest, then any
// number of batches. It never takes the chain out of EXTEST.
//
// A bus word is one word of every chip: chip c owns the data bits from c * wordSize * 8 up. Bus
// addresses count bus words.
#pragma once

#include "flash/ChainLayout.h"
#include "flash/CommandSet.h"
#include "flash/PinCells.h"
#include "flash/ProgramTimes.h"
#include "platform/Translation.h"

#include <cstdint>
#include <string>
#include <vector>

class OmBusCycleBatch;
class OmChainAnalyzer;
class OmDataImage;
class OmProgressCallback;

// Signals to write into an image; a mask.
enum PinStateMask : unsigned {
    PinStateAddress = 1,
    PinStateData = 2,
    PinStateStatic = 4,
    PinStateCE = 8,
    PinStateOE = 16,
    PinStateWE = 32,
};

// What the bus is wanted to show: logical levels at the flash pins, 0, 1 or 'Z'.
struct OmBusPinState {
    OmBitVector addressBits; // element n is A<n>
    OmBitVector dataBits;    // element n is D<n>
    uint8_t ceLevel = 0;
    uint8_t oeLevel = 0;
    uint8_t weLevel = 0;
};

// For translation: message for captures that cannot come from a working chain.
inline constexpr const char* kInvalidBitSequence =
    ForTranslation("ERROR: invalid bit sequence received from the JTAG chain. Check power and JTAG "
                   "adapter connections.");

// What a batch is for: cables take differently many vectors in one transfer.
enum class OmTransferKind { Reading = 0, Blind = 1, Status = 2 };

class OmBoundaryScanBus {
  public:
    // False if the setup cannot be driven; then `errors` says why. `chain` must outlive the bus.
    bool BuildFromSetup(const OmFlashPins& setup, const std::vector<OmChainDevice>& chain,
                        std::wstring& errors);

    // Brings the used devices to EXTEST, the bus preloaded to idle. Throws OmException if the
    // connection breaks or the chain's instructions cannot be loaded.
    void EnterExtest();

    // Writes the levels selected by `mask` (of PinStateMask) into `image`.
    void ApplyPinState(const OmBusPinState& state, OmBitVector& image, unsigned mask) const;

    // Reads the data bus of a captured image. A bit that nothing senses throws OmException: that is
    // the guard against a dead or unpowered chain, on every word read. Unconnected bits read as 0.
    void DecodeDataPins(const OmBitVector& image, OmBusPinState& state) const;

    // The same as a number; bits above 31 fall away.
    uint32_t DecodeDataWord(const OmBitVector& image) const;

    // --- shape of the bus
    unsigned BusWordBytes() const;

    // `value` cut to the width of a chip and moved to the lane of that chip.
    uint32_t ChipLaneValue(int chip, uint32_t value) const;

    // `value` on the lane of every chip.
    uint32_t EveryLaneValue(uint32_t value) const;

    // The low byte of a chip's lane of a bus word: its status register, its identifier.
    uint8_t ChipLaneByte(int chip, uint32_t word) const;

    // The inverse of ChipLaneValue.
    uint32_t ChipLane(int chip, uint32_t word) const;

    // Sector offsets are bytes of one chip.
    uint32_t ChipOffsetToWord(uint32_t chipOffset) const;

    // --- scans
    // The number of full scans that take 5 ms at the cable's speed, 1 to 10000.
    int MaxWaitScans() const;

    // The wait ahead of a status read that is this long in all, at most 10000.
    int WaitScansFor(uint32_t microseconds) const;

    // How many items of `scansPerItem` scans to put in one batch that ends in `extraScans` closing
    // scans; 1 where batching gains nothing.
    int ItemsPerTransfer(int scansPerItem, int extraScans, OmTransferKind kind) const;

    // CE, OE, WE high, address 0, data released: the state in which the flash is left. Returns when
    // the cable is done.
    void DriveBusIdle();

    // One more scan of `batch`, captured so that everything queued has left the cable when the 60
    // ms sleep starts in which a last internal operation of the flash ends.
    void FlushAndSettle(OmBusCycleBatch& batch);

    // Reads `count` bus words from word `start` into `image` (at their byte addresses). What lies
    // beyond the reach of the address pins is left out; `done`, which may be null, says how many
    // words were read. `callback` may be null. Done or Stopped.
    OmFlashResult ReadWords(OmProgressCallback* callback, uint32_t start, uint32_t count,
                            OmDataImage& image, uint32_t* done);

    // --- from the setup
    SignalPin ce;
    SignalPin oe;
    SignalPin we;
    std::vector<SignalPin> address; // element n is A<n>, up to the highest connected pin
    std::vector<SignalPin> data;    // element n is D<n>, exactly as wide as the flash array
    std::vector<StaticPin> statics;
    int32_t chipCount = -1;
    int32_t wordSize = -1; // bytes of one chip's word
    int32_t addrCmdShift = -1;

    // --- from the flash
    OmProgramTimes programTimes; // as far as it has been asked

    // --- resolved
    std::vector<OmPinCellList> addressCells;
    std::vector<OmPinCellList> dataCells;
    OmPinCellList ceCells;
    OmPinCellList oeCells;
    OmPinCellList weCells;
    std::vector<OmPinCellList> staticCells;
    OmChainLayout layout;

    OmChainAnalyzer* analyzer = nullptr; // not owned; set before the first scan

  private:
    void CopySetup(const OmFlashPins& setup);
    void NormalizePins();
    std::vector<bool> CollectUsedDevices(size_t deviceCount) const;
    bool MapPinsToCells(const std::vector<OmChainDevice>& chain, std::wstring& errors);
    void LoadInstructions(int usedDeviceKind);

    uint32_t Base(const OmDevicePin& pin) const { return layout.offsets[pin.Device]; }

    uint8_t SenseDataBit(size_t bit, const OmBitVector& image) const;
    void ApplyControl(const OmPinCellList& cells, const SignalPin& pin, uint8_t level,
                      OmBitVector& image) const;
};
