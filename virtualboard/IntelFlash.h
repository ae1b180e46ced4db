// A flash of the Intel command sets (CFI primary codes 1 and 3): status register, word and buffered
// program, block erase, block locks.
#pragma once

#include "virtualboard/FlashModel.h"

#include <cstdint>
#include <set>
#include <vector>

namespace vb {

class IntelFlash : public FlashModel {
  public:
    IntelFlash(const FlashParameters& parameters, const BoardClock& clock);

    void Write(uint32_t address, uint32_t data) override;
    uint32_t Read(uint32_t address) override;

    void BeginRead() override {}

    void HardwareReset() override;

    void Settle() override;

    bool Busy() const override { return operation_ != Operation::None; }

    std::string State() const override;
    void Restore(const std::string& state) override;

    bool IsLocked(uint32_t block) const { return locked_.contains(block); }

    void SetLocked(uint32_t block, bool locked);

  private:
    enum class Output { Array, Status, Identifier, Query };
    enum class Operation { None, Program, Erase, Lock, Unlock };
    enum class Step { Command, Program, Erase, Lock, BufferCount, BufferData, BufferConfirm };

    struct BufferedWord {
        uint32_t address;
        uint32_t value;
    };

    void WriteCommand(uint32_t address, uint8_t command);
    void WriteLock(uint32_t address, uint8_t command);
    void WriteErase(uint32_t address, uint8_t command);
    void LoadBufferCount(uint32_t address, uint32_t data);
    void LoadBuffer(uint32_t address, uint32_t data);
    void ConfirmBuffer(uint8_t command);
    void Start(Operation operation, uint32_t block, uint32_t microseconds);
    void SequenceError();
    void FinishProgram();
    void FinishErase();
    void FinishLock(bool lock);
    uint32_t Identifier(uint32_t address) const;

    Output output_ = Output::Array;
    Operation operation_ = Operation::None;
    Step step_ = Step::Command;
    uint8_t errors_ = 0; // the status register but for SR7
    uint64_t deadline_ = 0;
    uint32_t block_ = 0; // of the running operation or buffer load
    uint32_t bufferLeft_ = 0;
    std::vector<BufferedWord> buffer_;
    std::set<uint32_t> locked_;
};

} // namespace vb
