// One device of the chain: instruction register, bypass, IDCODE and boundary register with their
// capture and update stages. It knows no nets: pin levels are put in, update latches are looked at.
#pragma once

#include "virtualboard/BitQueue.h"
#include "virtualboard/DeviceDescription.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vb {

enum class Instruction { Bypass, Idcode, Usercode, Sample, Extest, HighZ, Clamp };

// Who moves the pins under an instruction.
enum class PinOwner { Core, BoundaryRegister, Nobody };

// Deviations of a device from what it should do.
struct DeviceFaults {
    bool idcodeMasksTdi = false;         // ATmega: while IDCODE is selected, ones replace TDI
    bool controlCapturesEnabled = false; // control cells capture as if the core drove its pins
};

class ChainDevice {
  public:
    ChainDevice(std::string name, DeviceDescription description);

    const std::string& Name() const { return name_; }

    const DeviceDescription& Description() const { return description_; }

    void SetFaults(const DeviceFaults& faults);
    bool BlocksTdi() const;

    void EnterTestLogicReset();

    unsigned InstructionLength() const { return description_.instructionLength; }

    void CaptureInstruction(BitQueue& path) const;
    void UpdateInstruction(BitQueue& path);

    Instruction CurrentInstruction() const { return instruction_; }

    PinOwner Owner() const;

    size_t DataLength() const;
    void CaptureData(BitQueue& path) const;
    // Takes this device's register out of `path`. Cells whose latch changed, and which somebody
    // watches, are appended to `changedCells`.
    void UpdateData(BitQueue& path, std::vector<uint32_t>& changedCells);

    // Board side: only cells that are watched are reported as changed.
    void WatchCell(uint32_t cell);

    bool LatchOf(uint32_t cell) const { return latch_[cell / 64] >> (cell % 64) & 1; }

    void SetPinLevel(uint32_t cell, bool level);

  private:
    bool UsesBoundary() const;
    void BuildMasks();
    void ClassifyCell(uint32_t cell);
    uint64_t CapturedWord(size_t word) const;

    std::string name_;
    DeviceDescription description_;
    DeviceFaults faults_;
    Instruction instruction_ = Instruction::Bypass;
    std::vector<uint64_t> latch_;     // the update stage
    std::vector<uint64_t> pins_;      // levels at the inputs of the cells that watch a pin
    std::vector<uint64_t> senseMask_; // cells that capture a pin
    std::vector<uint64_t> holdMask_;  // cells that capture their own latch under EXTEST
    std::vector<uint64_t> core_;      // what the core logic shows to all other cells
    std::vector<uint64_t> watched_;
};

} // namespace vb
