// What takes time in a flash of the Intel command sets, and the status register that tells of it.
#include "virtualboard/IntelFlash.h"

#include <algorithm>
#include <limits>
#include <sstream>
#include <utility>

namespace vb {

namespace {

// Status register.
constexpr uint8_t kReady = 0x80;            // SR7, of the whole device
constexpr uint8_t kEraseSuspended = 0x40;   // SR6
constexpr uint8_t kEraseError = 0x20;       // SR5
constexpr uint8_t kProgramError = 0x10;     // SR4
constexpr uint8_t kProgramSuspended = 0x04; // SR2
constexpr uint8_t kBlockLocked = 0x02;      // SR1
constexpr uint8_t kOtherPartition = 0x01;   // SR0: it is another partition that is busy

// An operation that a lock forbids is over this soon.
constexpr uint32_t kRefusedMicroseconds = 1;
constexpr uint64_t kNever = std::numeric_limits<uint64_t>::max();

} // namespace

void IntelFlash::SequenceError(uint32_t address) {
    At(address).errors |= kEraseError | kProgramError;
}

bool IntelFlash::HasPaused(OperationKind kind) const {
    return std::ranges::any_of(paused_, [kind](const Operation& row) { return row.kind == kind; });
}

bool IntelFlash::CanSuspend() const {
    const Suspends suspends = parameters_.suspends;
    return (running_.kind == OperationKind::Program && suspends == Suspends::All) ||
           (running_.kind == OperationKind::Erase && suspends != Suspends::None);
}

// Suspend and Read Status are heard everywhere; what else the read mode sets only where nothing is
// busy, unless the chip takes it there too and shows nothing sensible until it is ready.
void IntelFlash::WriteWhileBusy(uint32_t address, uint8_t command) {
    if (command == 0xB0 && CanSuspend() && pauseAt_ == 0)
        pauseAt_ = After(parameters_.times.suspendMicroseconds);
    if (command == 0x70)
        At(address).output = Output::Status;
    const bool elsewhere = PartitionOf(address) != PartitionOfBlock(running_.block);
    if (!elsewhere && !parameters_.busyReadModes)
        return;
    if (command == 0xFF)
        At(address).output = Output::Array;
    else if (command == 0x90)
        At(address).output = Output::Identifier;
    else if (command == 0x98 && HasQueryMode())
        At(address).output = Output::Query;
}

void IntelFlash::StartWord(uint32_t address, uint32_t value) {
    // The suspended erase would undo it.
    if (HasPaused(OperationKind::Erase) && paused_.front().block == SectorOfWord(address))
        return SequenceError(address);
    buffer_.assign(1, {address, value});
    Start(OperationKind::Program, SectorOfWord(address), parameters_.times.wordMicroseconds);
}

void IntelFlash::Start(OperationKind kind, uint32_t block, uint32_t microseconds) {
    const bool changes = kind == OperationKind::Program || kind == OperationKind::Erase;
    const bool refused = changes && (locked_.contains(block) || IsProtected(block));
    running_ = {kind, block, refused ? After(kRefusedMicroseconds) : AfterAtMost(microseconds)};
    partitions_[PartitionOfBlock(block)].output = Output::Status;
}

void IntelFlash::Settle() {
    if (!Busy())
        return;
    if (pauseAt_ != 0 && pauseAt_ < running_.end && Expired(pauseAt_))
        return Pause();
    if (!Expired(running_.end))
        return;
    pauseAt_ = 0;
    const Operation ended = std::exchange(running_, {});
    partitions_[PartitionOfBlock(ended.block)].errors |= Finish(ended);
}

void IntelFlash::Pause() {
    if (running_.end != kNever)
        running_.end -= pauseAt_;
    paused_.push_back(std::exchange(running_, {}));
    pauseAt_ = 0;
}

void IntelFlash::Resume(uint32_t address) {
    running_ = paused_.back();
    paused_.pop_back();
    if (running_.end != kNever)
        running_.end += clock_.Now();
    At(address).output = Output::Status;
}

// What the operation adds to the errors.
uint8_t IntelFlash::Finish(const Operation& operation) {
    switch (operation.kind) {
    case OperationKind::Program:
        return FinishProgram(operation.block);
    case OperationKind::Erase:
        return FinishErase(operation.block);
    case OperationKind::Lock:
    case OperationKind::Unlock:
        return FinishLock(operation.block, operation.kind == OperationKind::Lock);
    default:
        return 0;
    }
}

uint8_t IntelFlash::FinishProgram(uint32_t block) {
    if (locked_.contains(block) || IsProtected(block))
        return kProgramError | kBlockLocked;
    bool good = !faults_.programFails.contains(block);
    for (const BufferedWord& word : buffer_) {
        if (!good)
            break;
        good = CanProgram(word.address, word.value);
        ProgramWord(word.address, word.value);
    }
    return good ? 0 : kProgramError;
}

uint8_t IntelFlash::FinishErase(uint32_t block) {
    if (locked_.contains(block) || IsProtected(block))
        return kEraseError | kBlockLocked;
    if (faults_.eraseFails.contains(block))
        return kEraseError;
    EraseSector(block);
    return 0;
}

// What is locked down stays locked while WP is low, and no bit tells it.
uint8_t IntelFlash::FinishLock(uint32_t block, bool lock) {
    if (faults_.lockFails.contains(block))
        return lock ? kProgramError : kEraseError;
    const bool held = lockedDown_.contains(block) && WriteProtected();
    if (lock || parameters_.lockScheme == LockScheme::Single)
        SetLocked(block, lock || held);
    else
        locked_.clear();
    return 0;
}

uint8_t IntelFlash::Status(size_t partition) const {
    uint8_t status = partitions_[partition].errors;
    for (const Operation& operation : paused_)
        if (PartitionOfBlock(operation.block) == partition)
            status |= operation.kind == OperationKind::Erase ? kEraseSuspended : kProgramSuspended;
    if (!Busy())
        return status | kReady;
    return PartitionOfBlock(running_.block) == partition ? status : status | kOtherPartition;
}

uint32_t IntelFlash::Read(uint32_t address) {
    Settle();
    const size_t partition = PartitionOf(address);
    const Output output = partitions_[partition].output;
    const bool busyHere = Busy() && PartitionOfBlock(running_.block) == partition;
    if (output == Output::Status || (busyHere && partitions_.size() == 1))
        return Status(partition);
    if (output == Output::Identifier)
        return Identifier(address) & WordMask();
    if (output == Output::Query)
        return QueryByte(InPartition(address));
    return busyHere ? ~Word(address) & WordMask() : Word(address); // indeterminate while busy
}

std::string IntelFlash::State() const {
    std::string text;
    for (const Partition& partition : partitions_)
        text += std::to_string(static_cast<int>(partition.output)) + " " +
                std::to_string(partition.errors) + " ";
    for (const uint32_t block : locked_)
        text += std::to_string(block) + " ";
    return text;
}

void IntelFlash::Restore(const std::string& state) {
    std::istringstream text(state);
    for (Partition& partition : partitions_) {
        int output = 0;
        unsigned errors = 0;
        if (!(text >> output >> errors))
            return;
        partition = {static_cast<Output>(output), static_cast<uint8_t>(errors)};
    }
    locked_.clear();
    for (uint32_t block = 0; text >> block;)
        locked_.insert(block);
}

} // namespace vb
