#include "virtualboard/AmdFlash.h"

#include <utility>

namespace vb {

namespace {

constexpr uint32_t kDq7 = 0x80;

// Unlock addresses are written 555h and 2AAh, or 5555h and 2AAAh: alternating bits, of which the
// decoder looks at 11, 12 or 15.
constexpr uint32_t kFirstUnlock = 0x55555555;
constexpr uint32_t kSecondUnlock = 0xAAAAAAAA;
constexpr uint32_t kExactFirstUnlock = 0x555;
constexpr uint32_t kExactSecondUnlock = 0x2AA;
constexpr uint8_t kContinuationCode = 0x7F; // JEDEC: the maker is in a later bank

} // namespace

AmdFlash::AmdFlash(const FlashParameters& parameters, const BoardClock& clock)
    : FlashModel(parameters, clock) {}

bool AmdFlash::AtFirstUnlock(uint32_t address) const {
    const uint32_t mask = (uint32_t{1} << parameters_.decodedBits) - 1;
    const uint32_t wanted = parameters_.exactUnlock ? kExactFirstUnlock : kFirstUnlock;
    return ((CommandAddress(address) ^ wanted) & mask) == 0;
}

bool AmdFlash::AtSecondUnlock(uint32_t address) const {
    const uint32_t mask = (uint32_t{1} << parameters_.decodedBits) - 1;
    const uint32_t wanted = parameters_.exactUnlock ? kExactSecondUnlock : kSecondUnlock;
    return ((CommandAddress(address) ^ wanted) & mask) == 0;
}

bool AmdFlash::AtQueryEntry(uint32_t address) const {
    const QueryEntry entry = parameters_.queryEntry;
    const bool here = (entry == QueryEntry::At55 && (CommandAddress(address) & 0xFF) == 0x55) ||
                      (entry == QueryEntry::At555 && (CommandAddress(address) & 0x7FF) == 0x555);
    return here && HasQueryMode();
}

void AmdFlash::ResetToArray() {
    mode_ = Mode::Array;
    step_ = Step::None;
    pauseAt_ = 0;
}

void AmdFlash::HardwareReset() {
    bypass_ = false;
    paused_.clear();
    ResetToArray();
}

void AmdFlash::Write(uint32_t address, uint32_t data) {
    if (faults_.dead)
        return;
    Settle();
    const auto command = static_cast<uint8_t>(data);
    if (mode_ == Mode::Programming)
        WriteWhileProgramming(command);
    else if (mode_ == Mode::Erasing)
        WriteWhileErasing(address, command);
    else if (mode_ == Mode::PageLoad)
        LoadPage(address, data);
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
        return bypass_ ? WriteBypass(address, command) : WriteIdle(address, command);
    case Step::FirstUnlock:
    case Step::EraseSetup:
    case Step::EraseFirstUnlock:
        step_ = NextUnlock(step, address, command);
        return;
    case Step::Unlocked:
        return WriteUnlocked(address, command);
    case Step::Program:
        return StartWord(address, data);
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
    else if (command == 0x30 && !paused_.empty())
        Resume();
    else if (command == 0xAA && AtFirstUnlock(address))
        step_ = Step::FirstUnlock;
    else if (command == 0x98 && AtQueryEntry(address))
        mode_ = Mode::Query;
}

// F0h ends an autoselect or a query, but not the bypass.
void AmdFlash::WriteBypass(uint32_t address, uint8_t command) {
    const bool all = parameters_.bypassCommands == BypassCommands::All;
    if (command == 0xA0 && !HasPaused(Mode::Programming))
        step_ = Step::Program;
    else if (command == 0x90)
        step_ = Step::BypassReset;
    else if (command == 0x30 && !paused_.empty())
        Resume();
    else if (command == 0x80 && all && paused_.empty())
        step_ = Step::EraseUnlocked;
    else if (command == 0x25 && all)
        BeginBuffer(address);
}

// The buffer load is addressed to its sector, every other command to the first unlock address.
void AmdFlash::BeginBuffer(uint32_t address) {
    if (parameters_.bufferBytes == 0 || HasPaused(Mode::Programming))
        return;
    bufferSector_ = SectorOfWord(address);
    step_ = Step::BufferCount;
}

void AmdFlash::WriteUnlocked(uint32_t address, uint8_t command) {
    if (command == 0x25)
        return BeginBuffer(address);
    if (!AtFirstUnlock(address))
        return;
    if (command == 0xA0 && !HasPaused(Mode::Programming))
        step_ = Step::Program;
    else if (command == 0x80 && paused_.empty())
        step_ = Step::EraseSetup;
    else if (command == 0x90)
        mode_ = Mode::Autoselect;
    else if (command == 0x98 && parameters_.queryEntry == QueryEntry::Unlocked && HasQueryMode())
        mode_ = Mode::Query;
    else if (command == 0x20)
        bypass_ = parameters_.unlockBypass;
    else if (command == 0xF0)
        ResetToArray();
}

void AmdFlash::WriteErase(uint32_t address, uint8_t command) {
    if (command == parameters_.sectorErase)
        StartSectorErase({SectorOfWord(address)});
    else if (command == parameters_.blockErase && parameters_.blockBytes != 0)
        StartSectorErase(SectorsOfBlock(address));
    else if (command == 0x10 && (bypass_ || AtFirstUnlock(address)))
        StartChipErase();
}

// A busy chip hears nothing but B0h, at whatever address, and that only if it can suspend.
void AmdFlash::WriteWhileProgramming(uint8_t command) {
    if (command == 0xB0 && parameters_.suspends == Suspends::All && pauseAt_ == 0)
        pauseAt_ = After(parameters_.times.suspendMicroseconds);
}

// Within the time-out window (DQ3 still 0) further sectors join; anything else but a further
// sector or a suspend, which ends the window at once, cancels the erase before it has begun.
void AmdFlash::WriteWhileErasing(uint32_t address, uint8_t command) {
    const bool window = !running_.wholeChip && !Expired(windowEnd_);
    const bool suspends = command == 0xB0 && parameters_.suspends != Suspends::None;
    if (suspends && !running_.wholeChip && pauseAt_ == 0)
        pauseAt_ = window ? clock_.Now() : After(parameters_.times.suspendMicroseconds);
    if (suspends || !window)
        return;
    if (command != parameters_.sectorErase) {
        ResetToArray();
        return;
    }
    std::set<uint32_t> sectors = erasing_;
    sectors.insert(SectorOfWord(address));
    StartSectorErase(std::move(sectors));
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

// Of two loads to one address the later one holds, though both count.
void AmdFlash::PutInBuffer(uint32_t address, uint32_t value) {
    std::erase_if(buffer_, [address](const BufferedWord& word) { return word.address == address; });
    buffer_.push_back({address, value});
}

void AmdFlash::LoadBuffer(uint32_t address, uint32_t data) {
    const uint32_t pageWords = parameters_.bufferBytes / parameters_.WordBytes();
    const bool samePage =
        buffer_.empty() || buffer_.front().address / pageWords == address / pageWords;
    PutInBuffer(address, data);
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
    StartProgram(parameters_.times.bufferMicroseconds);
}

void AmdFlash::AbortBuffer() {
    mode_ = Mode::Aborted;
    step_ = Step::None;
    abortNotDq7_ = buffer_.empty() ? 0 : ~buffer_.back().value & kDq7;
}

uint32_t AmdFlash::Read(uint32_t address) {
    Settle();
    switch (mode_) {
    case Mode::Array:
    case Mode::PageLoad:
        return InPausedErase(address) ? PausedEraseStatus() : Word(address);
    case Mode::Autoselect:
        return Identifier(address) & WordMask();
    case Mode::Query:
        return QueryByte(address);
    default:
        return Status(address);
    }
}

uint32_t AmdFlash::Identifier(uint32_t address) const {
    switch (CommandAddress(address) & 0xFF) {
    case 0:
        return parameters_.continuation == Continuation::AtManufacturer &&
                       !(CommandAddress(address) & 0x100)
                   ? kContinuationCode
                   : parameters_.manufacturer;
    case 1:
        return parameters_.device;
    case 2:
        return (parameters_.statusFill & ~0xFFu) | (IsProtected(SectorOfWord(address)) ? 1 : 0);
    case 3:
        return parameters_.continuation == Continuation::AtThree ? kContinuationCode : 0;
    case 0x0E:
        return parameters_.device2;
    case 0x0F:
        return parameters_.device3;
    default:
        return 0;
    }
}

} // namespace vb
