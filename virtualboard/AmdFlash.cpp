#include "virtualboard/AmdFlash.h"

#include <algorithm>
#include <utility>

namespace vb {

namespace {

constexpr uint32_t kDq7 = 0x80;
constexpr uint32_t kDq6 = 0x40;
constexpr uint32_t kDq5 = 0x20;
constexpr uint32_t kDq3 = 0x08;
constexpr uint32_t kDq2 = 0x04;
constexpr uint32_t kDq1 = 0x02;

// Unlock addresses are written 555h and 2AAh, or 5555h and 2AAAh: alternating bits, of which the
// decoder looks at 11, 12 or 15.
constexpr uint32_t kFirstUnlock = 0x55555555;
constexpr uint32_t kSecondUnlock = 0xAAAAAAAA;
constexpr uint32_t kQueryEntry = 0x55;

// A failed program of a protected sector is over this soon.
constexpr uint32_t kProtectedMicroseconds = 1;

} // namespace

AmdFlash::AmdFlash(const FlashParameters& parameters, const BoardClock& clock)
    : FlashModel(parameters, clock) {}

bool AmdFlash::AtFirstUnlock(uint32_t address) const {
    const uint32_t mask = (uint32_t{1} << parameters_.decodedBits) - 1;
    return ((CommandAddress(address) ^ kFirstUnlock) & mask) == 0;
}

bool AmdFlash::AtSecondUnlock(uint32_t address) const {
    const uint32_t mask = (uint32_t{1} << parameters_.decodedBits) - 1;
    return ((CommandAddress(address) ^ kSecondUnlock) & mask) == 0;
}

void AmdFlash::ResetToArray() {
    mode_ = Mode::Array;
    step_ = Step::None;
    buffer_.clear();
}

void AmdFlash::HardwareReset() {
    bypass_ = false;
    ResetToArray();
}

void AmdFlash::Write(uint32_t address, uint32_t data) {
    if (faults_.dead)
        return;
    Settle();
    const auto command = static_cast<uint8_t>(data);
    if (mode_ == Mode::Programming)
        return; // nothing interrupts a program operation
    if (mode_ == Mode::Erasing)
        WriteWhileErasing(address, command);
    else if (mode_ == Mode::Exceeded)
        command == 0xF0 ? ResetToArray() : void();
    else if (mode_ == Mode::Aborted)
        WriteWhileAborted(address, command);
    else
        WriteStep(address, data);
}

// A cycle that only leads on: another command or address in its place breaks the sequence off.
AmdFlash::Step AmdFlash::NextUnlock(Step step, uint32_t address, uint8_t command) const {
    if (step == Step::EraseSetup && command == 0xAA && AtFirstUnlock(address))
        return Step::EraseFirstUnlock;
    const bool second = command == 0x55 && AtSecondUnlock(address);
    if (step == Step::FirstUnlock && second)
        return Step::Unlocked;
    return step == Step::EraseFirstUnlock && second ? Step::EraseUnlocked : Step::None;
}

void AmdFlash::WriteStep(uint32_t address, uint32_t data) {
    const auto command = static_cast<uint8_t>(data);
    const Step step = std::exchange(step_, Step::None);
    switch (step) {
    case Step::None:
        return bypass_ ? WriteBypass(command) : WriteIdle(address, command);
    case Step::FirstUnlock:
    case Step::EraseSetup:
    case Step::EraseFirstUnlock:
        step_ = NextUnlock(step, address, command);
        return;
    case Step::Unlocked:
        return WriteUnlocked(address, command);
    case Step::Program:
        return StartProgram(address, data);
    case Step::EraseUnlocked:
        return WriteErase(address, command);
    case Step::BypassReset:
        bypass_ = command != 0x00;
        return;
    case Step::BufferCount:
        return LoadBufferCount(address, data);
    case Step::BufferData:
        return LoadBuffer(address, data);
    case Step::BufferConfirm:
        return ConfirmBuffer(address, command);
    }
}

void AmdFlash::WriteIdle(uint32_t address, uint8_t command) {
    if (command == 0xF0)
        ResetToArray();
    else if (command == 0xAA && AtFirstUnlock(address))
        step_ = Step::FirstUnlock;
    else if (command == 0x98 && (CommandAddress(address) & 0xFF) == kQueryEntry && HasQueryMode())
        mode_ = Mode::Query;
}

void AmdFlash::WriteBypass(uint8_t command) {
    if (command == 0xA0)
        step_ = Step::Program;
    else if (command == 0x90)
        step_ = Step::BypassReset;
}

void AmdFlash::WriteUnlocked(uint32_t address, uint8_t command) {
    // The buffer load is addressed to its sector, every other command to the first unlock address.
    if (command == 0x25 && parameters_.bufferBytes != 0) {
        bufferSector_ = SectorOfWord(address);
        step_ = Step::BufferCount;
        return;
    }
    if (!AtFirstUnlock(address))
        return;
    if (command == 0xA0)
        step_ = Step::Program;
    else if (command == 0x80)
        step_ = Step::EraseSetup;
    else if (command == 0x90)
        mode_ = Mode::Autoselect;
    else if (command == 0x20)
        bypass_ = parameters_.unlockBypass;
    else if (command == 0xF0)
        ResetToArray();
}

void AmdFlash::WriteErase(uint32_t address, uint8_t command) {
    if (command == 0x30) {
        StartErase({SectorOfWord(address)}, false);
    } else if (command == 0x10 && AtFirstUnlock(address)) {
        std::set<uint32_t> all;
        for (uint32_t i = 0; i < parameters_.SectorCount(); ++i)
            all.insert(all.end(), i);
        StartErase(std::move(all), true);
    }
}

// Within the time-out window (DQ3 still 0) further sectors join; anything else but a further
// sector cancels the erase before it has begun.
void AmdFlash::WriteWhileErasing(uint32_t address, uint8_t command) {
    if (windowEnd_ == 0 || Expired(windowEnd_))
        return;
    if (command != 0x30) {
        ResetToArray();
        return;
    }
    std::set<uint32_t> sectors = erasing_;
    sectors.insert(SectorOfWord(address));
    StartErase(std::move(sectors), false);
}

void AmdFlash::WriteWhileAborted(uint32_t address, uint8_t command) {
    const Step step = std::exchange(step_, Step::None);
    if (step == Step::None && command == 0xAA && AtFirstUnlock(address))
        step_ = Step::FirstUnlock;
    else if (step == Step::FirstUnlock && command == 0x55 && AtSecondUnlock(address))
        step_ = Step::Unlocked;
    else if (step == Step::Unlocked && command == 0xF0)
        ResetToArray();
}

void AmdFlash::LoadBufferCount(uint32_t address, uint32_t data) {
    const uint32_t words = (data & WordMask()) + 1;
    if (SectorOfWord(address) != bufferSector_ ||
        words > parameters_.bufferBytes / parameters_.WordBytes()) {
        AbortBuffer();
        return;
    }
    buffer_.clear();
    bufferLeft_ = words;
    step_ = Step::BufferData;
}

void AmdFlash::LoadBuffer(uint32_t address, uint32_t data) {
    const uint32_t pageWords = parameters_.bufferBytes / parameters_.WordBytes();
    const bool samePage =
        buffer_.empty() || buffer_.front().address / pageWords == address / pageWords;
    buffer_.push_back({address, data});
    if (!samePage || SectorOfWord(address) != bufferSector_) {
        AbortBuffer();
        return;
    }
    step_ = --bufferLeft_ == 0 ? Step::BufferConfirm : Step::BufferData;
}

void AmdFlash::ConfirmBuffer(uint32_t address, uint8_t command) {
    if (command != 0x29 || SectorOfWord(address) != bufferSector_ || faults_.bufferAborts > 0) {
        faults_.bufferAborts -= faults_.bufferAborts > 0 ? 1 : 0;
        AbortBuffer();
        return;
    }
    mode_ = Mode::Programming;
    notDq7_ = ~buffer_.back().value & kDq7;
    failed_ = faults_.programFails.contains(bufferSector_);
    deadline_ = After(parameters_.times.bufferMicroseconds);
}

void AmdFlash::AbortBuffer() {
    mode_ = Mode::Aborted;
    step_ = Step::None;
    notDq7_ = buffer_.empty() ? 0 : ~buffer_.back().value & kDq7;
}

void AmdFlash::StartProgram(uint32_t address, uint32_t value) {
    buffer_.assign(1, {address, value});
    mode_ = Mode::Programming;
    notDq7_ = ~value & kDq7;
    const uint32_t sector = SectorOfWord(address);
    failed_ = faults_.programFails.contains(sector);
    deadline_ =
        After(IsProtected(sector) ? kProtectedMicroseconds : parameters_.times.wordMicroseconds);
}

void AmdFlash::StartErase(std::set<uint32_t> sectors, bool wholeChip) {
    const FlashTimes& times = parameters_.times;
    mode_ = Mode::Erasing;
    step_ = Step::None;
    notDq7_ = 0;
    erasing_ = std::move(sectors);
    failed_ = std::ranges::any_of(
        erasing_, [this](uint32_t sector) { return faults_.eraseFails.contains(sector); });
    windowEnd_ = wholeChip ? 0 : After(times.eraseWindowMicroseconds);
    const uint64_t duration =
        wholeChip ? times.chipMicroseconds
                  : times.eraseWindowMicroseconds + erasing_.size() * times.sectorMicroseconds;
    deadline_ = After(failed_ ? duration * times.limitFactor : duration);
}

// A bit that had to become 1, or would not become 0, runs into the time limit of the chip: DQ5.
void AmdFlash::FinishProgram() {
    if (failed_)
        return;
    for (const BufferedWord& word : buffer_)
        if (!IsProtected(SectorOfWord(word.address)) && !ProgramWord(word.address, word.value))
            failed_ = true;
}

void AmdFlash::FinishErase() {
    for (uint32_t sector : erasing_)
        if (!IsProtected(sector) && !faults_.eraseFails.contains(sector))
            EraseSector(sector);
}

void AmdFlash::Settle() {
    if (!Busy() || !Expired(deadline_))
        return;
    if (faults_.earlyDq5 && !earlyDq5Shown_) {
        earlyDq5Shown_ = true; // this one look shows DQ5, the next the end of the operation
        return;
    }
    earlyDq5Shown_ = false;
    if (mode_ == Mode::Programming)
        FinishProgram();
    else
        FinishErase();
    mode_ = failed_ ? Mode::Exceeded : Mode::Array;
}

void AmdFlash::BeginRead() {
    Settle();
    if (Busy() || mode_ == Mode::Exceeded || mode_ == Mode::Aborted)
        toggle_ = !toggle_;
}

uint32_t AmdFlash::Status(uint32_t address) const {
    uint32_t status = notDq7_ | (toggle_ ? kDq6 : 0);
    if (mode_ == Mode::Erasing) {
        status |= windowEnd_ == 0 || Expired(windowEnd_) ? kDq3 : 0;
        status |= toggle_ && erasing_.contains(SectorOfWord(address)) ? kDq2 : 0;
    }
    if (mode_ == Mode::Exceeded || earlyDq5Shown_)
        status |= kDq5;
    if (mode_ == Mode::Aborted)
        status |= kDq1;
    return status;
}

uint32_t AmdFlash::Identifier(uint32_t address) const {
    switch (CommandAddress(address) & 0xFF) {
    case 0:
        return parameters_.manufacturer;
    case 1:
        return parameters_.device;
    case 2:
        return IsProtected(SectorOfWord(address)) ? 1 : 0;
    default:
        return 0;
    }
}

uint32_t AmdFlash::Read(uint32_t address) {
    Settle();
    switch (mode_) {
    case Mode::Array:
        return Word(address);
    case Mode::Autoselect:
        return Identifier(address) & WordMask();
    case Mode::Query:
        return QueryByte(address);
    default:
        return Status(address);
    }
}

} // namespace vb
