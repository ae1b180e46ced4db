// A flash of the AMD command set (CFI primary code 2): unlock cycles, autoselect, word program,
// unlock bypass, write buffer, sector and chip erase, and the DQ status bits of the datasheets.
#pragma once

#include "virtualboard/FlashModel.h"

#include <cstdint>
#include <set>
#include <string>
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

    bool Busy() const override {
        return mode_ == Mode::Programming || mode_ == Mode::Erasing || mode_ == Mode::PageLoad;
    }

    std::string State() const override;
    void Restore(const std::string& state) override;

  private:
    enum class Mode {
        Array,
        Autoselect,
        Query,
        PageLoad, // of a chip that writes whole pages: more bytes may come
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

    // What takes time, running or suspended.
    struct Operation {
        Mode mode = Mode::Programming;
        uint64_t end = 0;    // suspended: the time that it still needs
        uint32_t notDq7 = 0; // what DQ7 shows meanwhile
        bool failed = false; // will end in DQ5
        bool wholeChip = false;
    };

    bool AtFirstUnlock(uint32_t address) const;
    bool AtSecondUnlock(uint32_t address) const;
    bool AtQueryEntry(uint32_t address) const;
    std::set<uint32_t> SectorsOfBlock(uint32_t address) const;

    uint32_t CommandAddress(uint32_t address) const { return address >> parameters_.commandShift; }

    Step NextUnlock(Step step, uint32_t address, uint8_t command) const;
    void WriteIdle(uint32_t address, uint8_t command);
    void WriteUnlocked(uint32_t address, uint8_t command);
    void WriteBypass(uint32_t address, uint8_t command);
    void WriteErase(uint32_t address, uint8_t command);
    void WriteWhileProgramming(uint8_t command);
    void WriteWhileErasing(uint32_t address, uint8_t command);
    void WriteWhileAborted(uint32_t address, uint8_t command);
    void WriteStep(uint32_t address, uint32_t data);
    void BeginBuffer(uint32_t address);
    void LoadBufferCount(uint32_t address, uint32_t data);
    void PutInBuffer(uint32_t address, uint32_t value);
    void LoadBuffer(uint32_t address, uint32_t data);
    void ConfirmBuffer(uint32_t address, uint8_t command);
    void AbortBuffer();

    void LoadPage(uint32_t address, uint32_t value);
    void StartPage();
    void StartWord(uint32_t address, uint32_t value);
    void StartProgram(uint32_t microseconds);
    void StartSectorErase(std::set<uint32_t> sectors);
    void StartChipErase();
    void StartErase(uint64_t window, uint64_t microseconds);
    void FinishProgram();
    void FinishErase();
    void Pause();
    void Resume();
    bool HasPaused(Mode mode) const;
    bool InPausedErase(uint32_t address) const;
    void ResetToArray();
    uint32_t Status(uint32_t address) const;
    uint32_t PausedEraseStatus() const;
    uint32_t Identifier(uint32_t address) const;

    Mode mode_ = Mode::Array;
    Step step_ = Step::None;
    bool bypass_ = false;
    bool toggle_ = false; // DQ6, and DQ2 in erasing sectors
    bool earlyDq5Shown_ = false;
    Operation running_;
    std::vector<Operation> paused_; // by B0h, the last one first to go on
    uint64_t pauseAt_ = 0;          // B0h has been written and is obeyed then; 0 for none
    uint64_t windowEnd_ = 0;        // end of the time for further sectors; 0 for a chip erase
    uint32_t abortNotDq7_ = 0;
    std::set<uint32_t> erasing_; // sectors
    std::vector<BufferedWord> buffer_;
    uint32_t bufferSector_ = 0;
    uint32_t bufferLeft_ = 0;
};

} // namespace vb
