#include "virtualboard/IntelFlash.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace vb {

namespace {

// Status register.
constexpr uint8_t kReady = 0x80;        // SR7
constexpr uint8_t kEraseError = 0x20;   // SR5
constexpr uint8_t kProgramError = 0x10; // SR4
constexpr uint8_t kBlockLocked = 0x02;  // SR1

// An operation that a lock forbids is over this soon.
constexpr uint32_t kRefusedMicroseconds = 1;

} // namespace

IntelFlash::IntelFlash(const FlashParameters& parameters, const BoardClock& clock)
    : FlashModel(parameters, clock) {
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
    output_ = Output::Array;
    operation_ = Operation::None;
    step_ = Step::Command;
    errors_ = 0;
}

void IntelFlash::Write(uint32_t address, uint32_t data) {
    if (faults_.dead)
        return;
    Settle();
    const auto command = static_cast<uint8_t>(data);
    if (Busy())
        return; // the status register is all that a busy chip answers
    switch (std::exchange(step_, Step::Command)) {
    case Step::Command:
        return WriteCommand(address, command);
    case Step::Program:
        buffer_.assign(1, {address, data});
        return Start(Operation::Program, SectorOfWord(address), parameters_.times.wordMicroseconds);
    case Step::Erase:
        return WriteErase(address, command);
    case Step::Lock:
        return WriteLock(address, command);
    case Step::BufferCount:
        return LoadBufferCount(address, data);
    case Step::BufferData:
        return LoadBuffer(address, data);
    case Step::BufferConfirm:
        return ConfirmBuffer(command);
    }
}

// The first byte of a command: what the outputs show from then on, what the next write is taken
// for, and whether this chip knows the command at all.
void IntelFlash::WriteCommand(uint32_t address, uint8_t command) {
    const bool buffers = parameters_.bufferBytes != 0;
    const bool locks = parameters_.lockScheme != LockScheme::None;

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
        {0x40, Output::Status, Step::Program, true},
        {0x10, Output::Status, Step::Program, true},
        {0x20, Output::Status, Step::Erase, true},
        {0x60, Output::Status, Step::Lock, locks},
        // The status after E8h is the extended one: SR7 says that a buffer is free.
        {0xE8, Output::Status, Step::BufferCount, buffers},
    };

    if (command == 0x50)
        errors_ = 0;
    for (const auto& row : commands) {
        if (row.code != command || !row.known)
            continue;
        output_ = row.output;
        step_ = row.step;
        block_ = SectorOfWord(address);
    }
}

void IntelFlash::SequenceError() {
    errors_ |= kEraseError | kProgramError;
}

void IntelFlash::WriteErase(uint32_t address, uint8_t command) {
    if (command != 0xD0) {
        SequenceError();
        return;
    }
    Start(Operation::Erase, SectorOfWord(address), parameters_.times.sectorMicroseconds);
}

void IntelFlash::WriteLock(uint32_t address, uint8_t command) {
    if (command == 0x01)
        Start(Operation::Lock, SectorOfWord(address), parameters_.times.lockMicroseconds);
    else if (command == 0xD0)
        Start(Operation::Unlock, SectorOfWord(address), parameters_.times.lockMicroseconds);
    else
        SequenceError();
}

void IntelFlash::LoadBufferCount(uint32_t address, uint32_t data) {
    const uint32_t words = (data & WordMask()) + 1;
    if (SectorOfWord(address) != block_ ||
        words > parameters_.bufferBytes / parameters_.WordBytes()) {
        SequenceError();
        return;
    }
    buffer_.clear();
    bufferLeft_ = words;
    step_ = Step::BufferData;
}

// The buffer holds consecutive words from the first one's address on, within one block.
void IntelFlash::LoadBuffer(uint32_t address, uint32_t data) {
    buffer_.push_back({address, data});
    const uint32_t distance = address - buffer_.front().address;
    if (SectorOfWord(address) != block_ ||
        distance >= parameters_.bufferBytes / parameters_.WordBytes()) {
        SequenceError();
        return;
    }
    step_ = --bufferLeft_ == 0 ? Step::BufferConfirm : Step::BufferData;
}

void IntelFlash::ConfirmBuffer(uint8_t command) {
    if (command != 0xD0 || faults_.bufferAborts > 0) {
        faults_.bufferAborts -= faults_.bufferAborts > 0 ? 1 : 0;
        SequenceError();
        return;
    }
    Start(Operation::Program, block_, parameters_.times.bufferMicroseconds);
}

void IntelFlash::Start(Operation operation, uint32_t block, uint32_t microseconds) {
    const bool changes = operation == Operation::Program || operation == Operation::Erase;
    const bool refused = changes && (locked_.contains(block) || IsProtected(block));
    operation_ = operation;
    output_ = Output::Status;
    block_ = block;
    deadline_ = refused ? After(kRefusedMicroseconds) : AfterAtMost(microseconds);
}

void IntelFlash::Settle() {
    if (!Busy() || !Expired(deadline_))
        return;
    const Operation operation = std::exchange(operation_, Operation::None);
    if (operation == Operation::Program)
        FinishProgram();
    else if (operation == Operation::Erase)
        FinishErase();
    else
        FinishLock(operation == Operation::Lock);
}

void IntelFlash::FinishProgram() {
    if (locked_.contains(block_) || IsProtected(block_)) {
        errors_ |= kProgramError | kBlockLocked;
        return;
    }
    bool good = !faults_.programFails.contains(block_);
    for (const BufferedWord& word : buffer_) {
        if (!good)
            break;
        good = CanProgram(word.address, word.value);
        ProgramWord(word.address, word.value);
    }
    errors_ |= good ? 0 : kProgramError;
}

void IntelFlash::FinishErase() {
    if (locked_.contains(block_) || IsProtected(block_))
        errors_ |= kEraseError | kBlockLocked;
    else if (faults_.eraseFails.contains(block_))
        errors_ |= kEraseError;
    else
        EraseSector(block_);
}

void IntelFlash::FinishLock(bool lock) {
    if (faults_.lockFails.contains(block_))
        errors_ |= lock ? kProgramError : kEraseError;
    else if (lock || parameters_.lockScheme == LockScheme::Single)
        SetLocked(block_, lock);
    else
        locked_.clear();
}

// Word 2 of each block tells whether the block is locked.
uint32_t IntelFlash::Identifier(uint32_t address) const {
    const uint32_t blockStart =
        parameters_.SectorStart(SectorOfWord(address)) / parameters_.WordBytes();
    const uint32_t offset =
        (address % parameters_.SizeWords() - blockStart) >> parameters_.commandShift;
    if (offset == 2)
        return IsLocked(SectorOfWord(address)) ? 1 : 0;
    const uint32_t place = address >> parameters_.commandShift;
    return place == 0 ? parameters_.manufacturer : place == 1 ? parameters_.device : 0;
}

uint32_t IntelFlash::Read(uint32_t address) {
    Settle();
    if (Busy())
        return errors_;
    switch (output_) {
    case Output::Array:
        return Word(address);
    case Output::Identifier:
        return Identifier(address) & WordMask();
    case Output::Query:
        return QueryByte(address);
    default:
        return kReady | errors_;
    }
}

std::string IntelFlash::State() const {
    std::string text = std::to_string(static_cast<int>(output_)) + " " + std::to_string(errors_);
    for (const uint32_t block : locked_)
        text += " " + std::to_string(block);
    return text;
}

void IntelFlash::Restore(const std::string& state) {
    std::istringstream text(state);
    int output = 0;
    unsigned errors = 0;
    if (!(text >> output >> errors))
        return;
    output_ = static_cast<Output>(output);
    errors_ = static_cast<uint8_t>(errors);
    locked_.clear();
    for (uint32_t block = 0; text >> block;)
        locked_.insert(block);
}

} // namespace vb
