// A flash of the AMD command set (CFI primary code 2): unlock cycles, autoselect, word program,
// unlock bypass, write buffer, sector and chip erase, and the DQ status bits of the datasheets.
#pragma once

#include "virtualboard/FlashModel.h"

#include <cstdint>
#include <set>
#include <vector>

namespace vb {

class AmdFlash : public FlashModel {
  public:
    AmdFlash(const FlashParameters& parameters, const BoardClock& clock);

    void Write(uint32_t address, uint32_t data) override;
    uint32_t Read(uint32_t address) override;
    void BeginRead() override;
    void HardwareReset() override;

    void Settle() override;

    bool Busy() const override { return mode_ == Mode::Programming || mode_ == Mode::Erasing; }

  private:
    enum class Mode {
        Array,
        Autoselect,
        Query,
        Programming,
        Erasing,
        Exceeded, // DQ5: the operation failed, only a reset helps
        Aborted,  // DQ1: a write-buffer load failed, only the abort reset helps
    };
    // How far a command sequence has come.
    enum class Step {
        None,
        FirstUnlock,
        Unlocked,
        Program,
        EraseSetup,
        EraseFirstUnlock,
        EraseUnlocked,
        BypassReset,
        BufferCount,
        BufferData,
        BufferConfirm,
    };

    struct BufferedWord {
        uint32_t address;
        uint32_t value;
    };

    bool AtFirstUnlock(uint32_t address) const;
    bool AtSecondUnlock(uint32_t address) const;

    uint32_t CommandAddress(uint32_t address) const { return address >> parameters_.commandShift; }

    Step NextUnlock(Step step, uint32_t address, uint8_t command) const;
    void WriteIdle(uint32_t address, uint8_t command);
    void WriteUnlocked(uint32_t address, uint8_t command);
    void WriteBypass(uint8_t command);
    void WriteErase(uint32_t address, uint8_t command);
    void WriteWhileErasing(uint32_t address, uint8_t command);
    void WriteWhileAborted(uint32_t address, uint8_t command);
    void WriteStep(uint32_t address, uint32_t data);
    void LoadBufferCount(uint32_t address, uint32_t data);
    void LoadBuffer(uint32_t address, uint32_t data);
    void ConfirmBuffer(uint32_t address, uint8_t command);
    void AbortBuffer();

    void StartProgram(uint32_t address, uint32_t value);
    void StartErase(std::set<uint32_t> sectors, bool wholeChip);
    void FinishProgram();
    void FinishErase();
    void ResetToArray();
    uint32_t Status(uint32_t address) const;
    uint32_t Identifier(uint32_t address) const;

    Mode mode_ = Mode::Array;
    Step step_ = Step::None;
    bool bypass_ = false;
    bool toggle_ = false; // DQ6, and DQ2 in erasing sectors
    bool failed_ = false; // the running operation will end in DQ5
    bool earlyDq5Shown_ = false;
    uint64_t deadline_ = 0;      // end of the running operation
    uint64_t windowEnd_ = 0;     // end of the time for further sectors; 0 for a chip erase
    uint32_t notDq7_ = 0;        // what DQ7 shows while busy
    std::set<uint32_t> erasing_; // sectors
    std::vector<BufferedWord> buffer_;
    uint32_t bufferSector_ = 0;
    uint32_t bufferLeft_ = 0;
};

} // namespace vb
