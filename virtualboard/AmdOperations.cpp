// What takes time in a flash of the AMD command set, and the status bits that tell of it.
#include "virtualboard/AmdFlash.h"

#include <algorithm>
#include <limits>
#include <sstream>
#include <utility>

namespace vb {

namespace {

constexpr uint32_t kDq7 = 0x80;
constexpr uint32_t kDq6 = 0x40;
constexpr uint32_t kDq5 = 0x20;
constexpr uint32_t kDq3 = 0x08;
constexpr uint32_t kDq2 = 0x04;
constexpr uint32_t kDq1 = 0x02;

// An operation on nothing but protected sectors is over this soon, with nothing done and no error.
constexpr uint32_t kProtectedMicroseconds = 1;
constexpr uint32_t kProtectedEraseMicroseconds = 100;
constexpr uint64_t kNever = std::numeric_limits<uint64_t>::max();

} // namespace

void AmdFlash::StartWord(uint32_t address, uint32_t value) {
    buffer_.clear();
    if (parameters_.pageBytes != 0)
        return LoadPage(address, value);
    buffer_.assign(1, {address, value});
    StartProgram(parameters_.times.wordMicroseconds);
}

// Each byte sets the time anew in which the next one must come; those of other pages are lost.
void AmdFlash::LoadPage(uint32_t address, uint32_t value) {
    const uint32_t pageWords = parameters_.pageBytes / parameters_.WordBytes();
    if (buffer_.empty() || buffer_.front().address / pageWords == address / pageWords)
        PutInBuffer(address, value);
    mode_ = Mode::PageLoad;
    running_ = {.mode = mode_, .end = After(parameters_.times.pageLoadMicroseconds)};
}

// The page is erased first: what was not loaded is blank afterwards.
void AmdFlash::StartPage() {
    const uint32_t pageWords = parameters_.pageBytes / parameters_.WordBytes();
    const uint32_t start = buffer_.front().address / pageWords * pageWords;
    for (uint32_t i = 0; i < pageWords; ++i)
        SetWord(start + i, WordMask());
    StartProgram(parameters_.times.wordMicroseconds);
}

std::set<uint32_t> AmdFlash::SectorsOfBlock(uint32_t address) const {
    const uint32_t blockWords = parameters_.blockBytes / parameters_.WordBytes();
    const uint32_t start = address / blockWords * blockWords;
    std::set<uint32_t> sectors;
    for (uint32_t word = start; word - start < blockWords; ++word)
        sectors.insert(SectorOfWord(word));
    return sectors;
}

// What is in the buffer, all of it in one sector.
void AmdFlash::StartProgram(uint32_t microseconds) {
    const uint32_t sector = SectorOfWord(buffer_.front().address);
    if (InPausedErase(buffer_.front().address))
        return ResetToArray(); // nothing can be programmed where an erase is half done
    const bool isProtected = IsProtected(sector);
    const bool fails = faults_.programFails.contains(sector) ||
                       !std::ranges::all_of(buffer_, [this](const BufferedWord& word) {
                           return CanProgram(word.address, word.value);
                       });
    mode_ = Mode::Programming;
    running_ = {
        .mode = mode_, .notDq7 = ~buffer_.back().value & kDq7, .failed = fails && !isProtected};
    const uint32_t factor = running_.failed ? parameters_.times.programLimitFactor : 1;
    running_.end = isProtected ? After(kProtectedMicroseconds) : AfterAtMost(microseconds * factor);
}

void AmdFlash::StartSectorErase(std::set<uint32_t> sectors) {
    const FlashTimes& times = parameters_.times;
    erasing_ = std::move(sectors);
    StartErase(times.eraseWindowMicroseconds, uint64_t{erasing_.size()} * times.sectorMicroseconds);
}

void AmdFlash::StartChipErase() {
    erasing_.clear();
    for (uint32_t i = 0; i < parameters_.SectorCount(); ++i)
        erasing_.insert(erasing_.end(), i);
    StartErase(0, parameters_.ChipEraseMicroseconds());
    running_.wholeChip = true;
}

void AmdFlash::StartErase(uint64_t window, uint64_t microseconds) {
    mode_ = Mode::Erasing;
    step_ = Step::None;
    windowEnd_ = After(window);
    running_ = {.mode = mode_};
    running_.failed = std::ranges::any_of(
        erasing_, [this](uint32_t sector) { return faults_.eraseFails.contains(sector); });
    if (std::ranges::all_of(erasing_, [this](uint32_t sector) { return IsProtected(sector); })) {
        running_.failed = false;
        running_.end = After(window + kProtectedEraseMicroseconds);
        return;
    }
    const uint32_t factor = running_.failed ? parameters_.times.limitFactor : 1;
    running_.end = AfterAtMost((window + microseconds) * factor);
}

// A bit that had to become 1, or would not become 0, runs into the time limit of the chip: DQ5.
void AmdFlash::FinishProgram() {
    for (const BufferedWord& word : buffer_) {
        const uint32_t sector = SectorOfWord(word.address);
        if (!IsProtected(sector) && !faults_.programFails.contains(sector))
            ProgramWord(word.address, word.value);
    }
}

void AmdFlash::FinishErase() {
    for (uint32_t sector : erasing_)
        if (!IsProtected(sector) && !faults_.eraseFails.contains(sector))
            EraseSector(sector);
}

void AmdFlash::Settle() {
    if (!Busy())
        return;
    if (pauseAt_ != 0 && pauseAt_ < running_.end && Expired(pauseAt_))
        return Pause();
    if (!Expired(running_.end))
        return;
    if (faults_.earlyDq5 && !earlyDq5Shown_) {
        earlyDq5Shown_ = true; // this one look shows DQ5, the next the end of the operation
        return;
    }
    earlyDq5Shown_ = false;
    pauseAt_ = 0;
    if (mode_ == Mode::PageLoad)
        return StartPage();
    if (mode_ == Mode::Programming)
        FinishProgram();
    else
        FinishErase();
    mode_ = running_.failed ? Mode::Exceeded : Mode::Array;
}

void AmdFlash::Pause() {
    if (running_.end != kNever)
        running_.end -= pauseAt_;
    paused_.push_back(running_);
    ResetToArray();
}

void AmdFlash::Resume() {
    running_ = paused_.back();
    paused_.pop_back();
    mode_ = running_.mode;
    windowEnd_ = clock_.Now();
    if (running_.end != kNever)
        running_.end += clock_.Now();
}

bool AmdFlash::HasPaused(Mode mode) const {
    return std::ranges::any_of(paused_, [mode](const Operation& row) { return row.mode == mode; });
}

bool AmdFlash::InPausedErase(uint32_t address) const {
    return HasPaused(Mode::Erasing) && erasing_.contains(SectorOfWord(address));
}

void AmdFlash::BeginRead() {
    Settle();
    if (Busy() || mode_ == Mode::Exceeded || mode_ == Mode::Aborted || !paused_.empty())
        toggle_ = !toggle_;
}

uint32_t AmdFlash::Status(uint32_t address) const {
    uint32_t status = (parameters_.statusFill & WordMask() & ~0xFFu) | (toggle_ ? kDq6 : 0);
    if (mode_ == Mode::Aborted)
        return status | abortNotDq7_ | kDq1 | (parameters_.abortShowsDq5 ? kDq5 : 0);
    status |= running_.notDq7;
    if (mode_ == Mode::Erasing) {
        status |= running_.wholeChip || Expired(windowEnd_) ? kDq3 : 0;
        status |= toggle_ && erasing_.contains(SectorOfWord(address)) ? kDq2 : 0;
    }
    return status | (mode_ == Mode::Exceeded || earlyDq5Shown_ ? kDq5 : 0);
}

// Where an erase is suspended DQ7 is 1 and DQ2 alone toggles.
uint32_t AmdFlash::PausedEraseStatus() const {
    return kDq7 | (toggle_ ? kDq2 : 0);
}

// A running operation ends before the next host comes; a suspended one is taken as lost.
std::string AmdFlash::State() const {
    const Mode mode = Busy() ? Mode::Array : mode_;
    return std::to_string(static_cast<int>(mode)) + " " + std::to_string(bypass_);
}

void AmdFlash::Restore(const std::string& state) {
    std::istringstream text(state);
    int mode = 0;
    if (text >> mode >> bypass_)
        mode_ = static_cast<Mode>(mode);
}

} // namespace vb
