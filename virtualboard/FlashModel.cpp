#include "virtualboard/FlashModel.h"

#include "virtualboard/CfiTable.h"

#include <algorithm>
#include <limits>

namespace vb {

FlashModel::FlashModel(const FlashParameters& parameters, const BoardClock& clock)
    : parameters_(parameters), clock_(clock), cfi_(MakeCfiTable(parameters)),
      bytes_(parameters.SizeBytes(), 0xFF), random_(parameters.seed) {}

uint32_t FlashModel::WordMask() const {
    return static_cast<uint32_t>((uint64_t{1} << parameters_.widthBits) - 1);
}

uint32_t FlashModel::Word(uint32_t address) const {
    const uint32_t size = parameters_.WordBytes();
    const size_t offset = size_t{address % parameters_.SizeWords()} * size;
    uint32_t value = 0;
    for (uint32_t i = 0; i < size; ++i)
        value |= uint32_t{bytes_[offset + i]} << (8 * i);
    return value;
}

void FlashModel::SetWord(uint32_t address, uint32_t value) {
    const uint32_t size = parameters_.WordBytes();
    const size_t offset = size_t{address % parameters_.SizeWords()} * size;
    for (uint32_t i = 0; i < size; ++i)
        bytes_[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

uint32_t FlashModel::SectorOfWord(uint32_t address) const {
    return parameters_.SectorOf(address % parameters_.SizeWords() * parameters_.WordBytes());
}

// In a narrower mode each query byte shows at several addresses, so the low bits do not count.
uint32_t FlashModel::QueryByte(uint32_t address) const {
    const uint32_t query = address >> parameters_.commandShift;
    const auto wrong = faults_.queryBytes.find(query);
    if (wrong != faults_.queryBytes.end())
        return wrong->second;
    return query < cfi_.size() ? cfi_[query] : 0;
}

// The write protect pin guards the outermost sector: the first one, or the last one of a chip whose
// small sectors are at the top.
bool FlashModel::IsProtected(uint32_t sector) const {
    const auto& groups = parameters_.sectors;
    const bool top = groups.size() > 1 && groups.back().bytes < groups.front().bytes;
    const uint32_t guarded = top ? parameters_.SectorCount() - 1 : 0;
    return (writeProtect_ && sector == guarded) || protectedSectors_.contains(sector);
}

uint32_t FlashModel::StuckBits(uint32_t address) const {
    const auto stuck = faults_.stuckHigh.find(address % parameters_.SizeWords());
    return stuck == faults_.stuckHigh.end() ? 0 : stuck->second;
}

void FlashModel::ProgramWord(uint32_t address, uint32_t value) {
    SetWord(address, Word(address) & (value | StuckBits(address)));
}

bool FlashModel::CanProgram(uint32_t address, uint32_t value) const {
    const uint32_t before = Word(address);
    const bool raises = (value & ~before & WordMask()) != 0;
    const bool resists = (before & ~value & StuckBits(address)) != 0;
    return !resists && !(raises && parameters_.raisedBitFails);
}

void FlashModel::EraseSector(uint32_t sector) {
    const auto start = bytes_.begin() + parameters_.SectorStart(sector);
    std::fill(start, start + parameters_.SectorBytes(sector), uint8_t{0xFF});
}

uint64_t FlashModel::After(uint64_t microseconds) const {
    if (faults_.neverReady)
        return std::numeric_limits<uint64_t>::max();
    return clock_.Now() + microseconds * faults_.slowFactor * kPicosecondsPerMicrosecond;
}

// splitmix64: a sequence of its own for each seed, the same in every run.
uint64_t FlashModel::Random() {
    random_ += 0x9E3779B97F4A7C15;
    uint64_t value = random_;
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9;
    value = (value ^ value >> 27) * 0x94D049BB133111EB;
    return value ^ value >> 31;
}

uint64_t FlashModel::AfterAtMost(uint64_t microseconds) {
    const uint64_t least = parameters_.times.leastPercent;
    if (least >= 100 || faults_.neverReady)
        return After(microseconds);
    constexpr uint64_t kParts = 10'000;
    const uint64_t parts = least * 100 + Random() % (kParts - least * 100 + 1);
    return clock_.Now() +
           microseconds * faults_.slowFactor * parts * (kPicosecondsPerMicrosecond / kParts);
}

} // namespace vb
