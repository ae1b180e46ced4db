#include "virtualboard/IntelFlash.h"

#include <utility>

namespace vb {

IntelFlash::IntelFlash(const FlashParameters& parameters, const BoardClock& clock)
    : FlashModel(parameters, clock), partitions_(parameters.partitions) {
    if (parameters.lockScheme == LockScheme::Single) // locked at power-up
        for (uint32_t block = 0; block < parameters.SectorCount(); ++block)
            locked_.insert(locked_.end(), block);
}

void IntelFlash::SetLocked(uint32_t block, bool locked) {
    if (locked)
        locked_.insert(block);
    else
        locked_.erase(block);
}

void IntelFlash::HardwareReset() {
    partitions_.assign(partitions_.size(), {});
    running_ = {};
    paused_.clear();
    pauseAt_ = 0;
    step_ = Step::Command;
}

size_t IntelFlash::PartitionOf(uint32_t address) const {
    const uint64_t word = address % parameters_.SizeWords();
    return static_cast<size_t>(word * partitions_.size() / parameters_.SizeWords());
}

// Identifiers and query table are counted from the partition's first word.
uint32_t IntelFlash::InPartition(uint32_t address) const {
    return address % (parameters_.SizeWords() / parameters_.partitions);
}

size_t IntelFlash::PartitionOfBlock(uint32_t block) const {
    return PartitionOf(parameters_.SectorStart(block) / parameters_.WordBytes());
}

void IntelFlash::Write(uint32_t address, uint32_t data) {
    if (faults_.dead)
        return;
    Settle();
    const auto command = static_cast<uint8_t>(data);
    if (Busy())
        return WriteWhileBusy(address, command);
    switch (std::exchange(step_, Step::Command)) {
    case Step::Command:
        return WriteCommand(address, command);
    case Step::Program:
        return StartWord(address, data);
    case Step::Erase:
        return WriteErase(address, command);
    case Step::Lock:
        return WriteLock(address, command);
    case Step::BufferCount:
        return LoadBufferCount(address, data);
    case Step::BufferData:
        return LoadBuffer(address, data);
    case Step::BufferConfirm:
        return ConfirmBuffer(address, command);
    case Step::Protection:
        ++protectionWrites_;
        return Start(OperationKind::Protection, SectorOfWord(address),
                     parameters_.times.wordMicroseconds);
    case Step::FactoryProgram:
        return WriteFactoryProgram(address, command);
    }
}

// The first byte of a command: what the partition shows from then on, what the next write is taken
// for, and whether this chip takes the command at all.
void IntelFlash::WriteCommand(uint32_t address, uint8_t command) {
    const bool buffers = parameters_.bufferBytes != 0;
    const bool locks = parameters_.lockScheme != LockScheme::None;
    const bool single = parameters_.lockScheme == LockScheme::Single;
    const bool programs = !HasPaused(OperationKind::Program);
    const bool erases = paused_.empty();

    const struct {
        uint8_t code;
        Output output;
        Step step;
        bool known;
    } commands[] = {
        {0xFF, Output::Array, Step::Command, true},
        {0x70, Output::Status, Step::Command, true},
        {0x90, Output::Identifier, Step::Command, true},
        {0x98, Output::Query, Step::Command, HasQueryMode()},
        {0x40, Output::Status, Step::Program, programs},
        {0x10, Output::Status, Step::Program, programs},
        {0x20, Output::Status, Step::Erase, erases},
        {0x60, Output::Status, Step::Lock, locks},
        {0xC0, Output::Status, Step::Protection, locks && erases},
        {0x80, Output::Status, Step::FactoryProgram, single && erases},
        // The status after E8h is the extended one: SR7 says that a buffer is free.
        {0xE8, Output::Status, Step::BufferCount, buffers && programs},
    };

    if (command == 0x50)
        At(address).errors = 0;
    if (command == 0xD0 && !paused_.empty())
        return Resume(address);
    for (const auto& row : commands) {
        if (row.code != command || !row.known)
            continue;
        At(address).output = row.output;
        step_ = row.step;
        block_ = SectorOfWord(address);
    }
}

void IntelFlash::WriteErase(uint32_t address, uint8_t command) {
    if (command != 0xD0)
        return SequenceError(address);
    Start(OperationKind::Erase, SectorOfWord(address), parameters_.times.sectorMicroseconds);
}

void IntelFlash::WriteLock(uint32_t address, uint8_t command) {
    const uint32_t block = SectorOfWord(address);
    const uint32_t time = parameters_.times.lockMicroseconds;
    if (command == 0x01)
        return Start(OperationKind::Lock, block, time);
    if (command == 0xD0)
        return Start(OperationKind::Unlock, block, time);
    if (command == 0x03) {
        ++configurationWrites_;
    } else if (command == 0x2F && parameters_.lockScheme == LockScheme::Single) {
        lockedDown_.insert(block);
        locked_.insert(block);
    } else {
        SequenceError(address);
    }
}

// Factory programming needs a voltage at VPP that no board has.
void IntelFlash::WriteFactoryProgram(uint32_t address, uint8_t command) {
    constexpr uint8_t kVoltageError = 0x18; // SR4, SR3
    if (command != 0xD0)
        return SequenceError(address);
    At(address).errors |= kVoltageError;
}

void IntelFlash::LoadBufferCount(uint32_t address, uint32_t data) {
    const uint32_t words = (data & WordMask()) + 1;
    if (SectorOfWord(address) != block_ ||
        words > parameters_.bufferBytes / parameters_.WordBytes())
        return SequenceError(address);
    buffer_.clear();
    bufferLeft_ = words;
    step_ = Step::BufferData;
}

// The buffer holds consecutive words from the first one's address on, within one block.
void IntelFlash::LoadBuffer(uint32_t address, uint32_t data) {
    buffer_.push_back({address, data});
    const uint32_t distance = address - buffer_.front().address;
    if (SectorOfWord(address) != block_ ||
        distance >= parameters_.bufferBytes / parameters_.WordBytes())
        return SequenceError(address);
    step_ = --bufferLeft_ == 0 ? Step::BufferConfirm : Step::BufferData;
}

void IntelFlash::ConfirmBuffer(uint32_t address, uint8_t command) {
    if (command != 0xD0 || faults_.bufferAborts > 0) {
        faults_.bufferAborts -= faults_.bufferAborts > 0 ? 1 : 0;
        return SequenceError(address);
    }
    Start(OperationKind::Program, block_, parameters_.times.bufferMicroseconds);
}

// Word 2 of each block tells whether the block is locked, and locked down.
uint32_t IntelFlash::Identifier(uint32_t address) const {
    const uint32_t block = SectorOfWord(address);
    const uint32_t blockStart = parameters_.SectorStart(block) / parameters_.WordBytes();
    const uint32_t offset =
        (address % parameters_.SizeWords() - blockStart) >> parameters_.commandShift;
    if (offset == 2)
        return (IsLocked(block) ? 1 : 0) | (lockedDown_.contains(block) ? 2 : 0);
    const uint32_t place = InPartition(address) >> parameters_.commandShift;
    return place == 0 ? parameters_.manufacturer : place == 1 ? parameters_.device : 0;
}

} // namespace vb
