// A flash of the Intel command sets (CFI primary codes 1 and 3): status register, word and buffered
// program, block erase, block locks, suspend, and partitions that are read while another is busy.
#pragma once

#include "virtualboard/FlashModel.h"

#include <cstdint>
#include <set>
#include <string>
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

    bool Busy() const override { return running_.kind != OperationKind::None; }

    std::string State() const override;
    void Restore(const std::string& state) override;

    bool IsLocked(uint32_t block) const { return locked_.contains(block); }

    void SetLocked(uint32_t block, bool locked);

    std::set<uint32_t>& LockedDownBlocks() { return lockedDown_; }

    // Writes to what no command takes back: the protection register (C0h), and the read
    // configuration (60h, 03h), with which the chip would go over to another bus protocol.
    unsigned ProtectionWrites() const { return protectionWrites_; }

    unsigned ConfigurationWrites() const { return configurationWrites_; }

  private:
    enum class Output { Array, Status, Identifier, Query };
    enum class OperationKind { None, Program, Erase, Lock, Unlock, Protection };
    enum class Step {
        Command,
        Program,
        Erase,
        Lock,
        BufferCount,
        BufferData,
        BufferConfirm,
        Protection,
        FactoryProgram,
    };

    struct BufferedWord {
        uint32_t address;
        uint32_t value;
    };

    // What takes time, running or suspended.
    struct Operation {
        OperationKind kind = OperationKind::None;
        uint32_t block = 0;
        uint64_t end = 0; // suspended: the time that it still needs
    };

    // A part of the array with read mode and error bits of its own.
    struct Partition {
        Output output = Output::Array;
        uint8_t errors = 0; // the status register but for SR7, SR6, SR2 and SR0
    };

    size_t PartitionOf(uint32_t address) const;
    uint32_t InPartition(uint32_t address) const;
    size_t PartitionOfBlock(uint32_t block) const;

    Partition& At(uint32_t address) { return partitions_[PartitionOf(address)]; }

    void WriteCommand(uint32_t address, uint8_t command);
    void WriteWhileBusy(uint32_t address, uint8_t command);
    void WriteLock(uint32_t address, uint8_t command);
    void WriteErase(uint32_t address, uint8_t command);
    void WriteFactoryProgram(uint32_t address, uint8_t command);
    void LoadBufferCount(uint32_t address, uint32_t data);
    void LoadBuffer(uint32_t address, uint32_t data);
    void ConfirmBuffer(uint32_t address, uint8_t command);
    void StartWord(uint32_t address, uint32_t value);
    void Start(OperationKind kind, uint32_t block, uint32_t microseconds);
    void SequenceError(uint32_t address);
    bool CanSuspend() const;
    bool HasPaused(OperationKind kind) const;
    void Pause();
    void Resume(uint32_t address);
    uint8_t Finish(const Operation& operation);
    uint8_t FinishProgram(uint32_t block);
    uint8_t FinishErase(uint32_t block);
    uint8_t FinishLock(uint32_t block, bool lock);
    uint8_t Status(size_t partition) const;
    uint32_t Identifier(uint32_t address) const;

    std::vector<Partition> partitions_;
    Operation running_;
    std::vector<Operation> paused_; // by B0h, the last one first to go on
    uint64_t pauseAt_ = 0;          // B0h has been written and is obeyed then; 0 for none
    Step step_ = Step::Command;
    uint32_t block_ = 0; // of the buffer load
    uint32_t bufferLeft_ = 0;
    std::vector<BufferedWord> buffer_;
    std::set<uint32_t> locked_;
    std::set<uint32_t> lockedDown_;
    unsigned protectionWrites_ = 0;
    unsigned configurationWrites_ = 0;
};

} // namespace vb
