#include "flash/Cfi.h"

#include "flash/BusCycleBatch.h"
#include "flash/CommandAddresses.h"
#include "flash/CommandSets.h"

#include <algorithm>
#include <limits>

namespace {

constexpr uint8_t kQuery = 0x98;
constexpr uint32_t kFirstByte = 0x10;
constexpr uint32_t kLastByte = 0x2C; // number of erase block regions
constexpr uint32_t kFirstRegionByte = 0x2D;
constexpr size_t kRegionBytes = 4;

// Query addresses. An extended table cannot begin inside the fixed part of the query structure.
constexpr uint32_t kLowestTable = 27;
constexpr uint32_t kBufferSizeEnd = 44; // first address behind the buffer size
constexpr uint32_t kRegionsStart = 45;

constexpr uint32_t kSmallestBuffer = 2; // one byte is no buffer

constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();

// One chip in query mode, read through a pipeline: each scan sets the address of one byte and
// captures the byte before it.
class QueryReader {
  public:
    QueryReader(OmBoundaryScanBus& bus, int chip)
        : bus_(bus), chip_(chip), addresses_(GetCommandAddresses(bus.addrCmdShift)), batch_(bus) {}

    void ReadFixedPart(OmCfiBuffer& out) {
        AppendEntry();
        for (uint32_t n = kFirstByte + 1; n <= kLastByte; ++n)
            AppendByte(n, true);
        Finish(out);
    }

    void ReadRegions(OmCfiBuffer& out) {
        const uint32_t count = static_cast<uint32_t>(out[kCfiRegionCount] * kRegionBytes);
        if (count == 0)
            return;
        batch_.Clear();
        for (uint32_t i = 0; i < count; ++i)
            AppendByte(kFirstRegionByte + i, i > 0);
        Finish(out);
    }

  private:
    // The other chips see 0 on their lanes, so that only one answers.
    void AppendEntry() {
        batch_.SelectForWriting();
        batch_.AppendWrite(addresses_.cfiEntry, bus_.ChipLaneValue(chip_, kQuery));
        batch_.SetWE(1);
        AppendByte(kFirstByte, false);
        batch_.AppendRelease();
        batch_.SetOE(0);
        batch_.AppendScan(false);
    }

    void AppendByte(uint32_t queryAddress, bool capture) {
        batch_.SetAddress(queryAddress << addresses_.shift);
        batch_.AppendScan(capture);
    }

    void Finish(OmCfiBuffer& out) {
        batch_.AppendScan(true);
        OmCapturedList captured;
        batch_.RunForCapture(captured);
        for (const OmBitVector& scan : captured)
            out.push_back(bus_.ChipLaneByte(chip_, bus_.DecodeDataWord(scan)));
    }

    OmBoundaryScanBus& bus_;
    int chip_;
    const OmCommandAddresses& addresses_;
    OmBusCycleBatch batch_;
};

bool IsQueryStructure(const OmCfiBuffer& buffer) {
    return buffer.size() > kCfiRegionCount && buffer[0] == 'Q' && buffer[1] == 'R' &&
           buffer[2] == 'Y';
}

uint32_t GetBufferBytes(const OmCfiBuffer& buffer) {
    const uint32_t exponent = GetCfiValue(buffer, kCfiBufferSize);
    const bool tableHoldsIt = GetCfiTableEnd(buffer) >= kBufferSizeEnd;
    return tableHoldsIt && exponent < 32 ? uint32_t{1} << exponent : 0;
}

bool NamesOneOf(const OmCfiBuffer& buffer, std::span<const uint16_t> codes) {
    const auto isNamed = [&](uint16_t code) {
        return GetCfiValue(buffer, kCfiPrimarySet) == code ||
               GetCfiValue(buffer, kCfiAlternativeSet) == code;
    };
    return !buffer.empty() && std::ranges::any_of(codes, isNamed);
}

uint32_t GetSmallestBuffer(std::span<const OmCfiBuffer> chips) {
    uint32_t smallest = kNone;
    for (const OmCfiBuffer& chip : chips)
        smallest = std::min(smallest, GetBufferBytes(chip));
    return smallest;
}

// The first form that every chip names, of those that `member` selects from each row.
OmCommandSet FindFormOf(std::span<const OmCfiBuffer> chips,
                        OmProgramForm OmCommandSetRow::*member) {
    for (const OmCommandSetRow* row : GetCommandSets()) {
        const OmProgramForm& form = row->*member;
        if (std::ranges::all_of(
                chips, [&](const OmCfiBuffer& chip) { return NamesOneOf(chip, form.cfiCodes); }))
            return form.set;
    }
    return OmCommandSet::Unknown;
}

struct ChipSectors {
    OmFlashSectorLayout layout;
    bool noRegions = false; // the table says that the chip erases as a whole only
};

void AppendRegion(const OmCfiBuffer& buffer, size_t index, OmFlashSectorLayout& layout) {
    constexpr uint32_t kSizeUnit = 256;
    constexpr uint32_t kSizeOfZero = 128; // JESD68: a size field of 0
    const uint32_t size = GetCfiValue(buffer, index + 2) * kSizeUnit;
    layout.Insert(GetCfiValue(buffer, index) + 1, size != 0 ? size : kSizeOfZero, -1);
}

// False if the table does not tell.
bool FindChipSectors(const OmCfiBuffer& buffer, ChipSectors& found) {
    if (buffer.empty() || GetCfiTableEnd(buffer) < kRegionsStart)
        return false;
    const uint32_t regions = buffer[kCfiRegionCount];
    found.noRegions = regions == 0;
    if (GetCfiTableEnd(buffer) < kRegionsStart + regions * kRegionBytes)
        return false;
    for (uint32_t region = 0; region < regions; ++region)
        AppendRegion(buffer, kCfiRegions + region * kRegionBytes, found.layout);
    return true;
}

} // namespace

uint32_t GetCfiValue(const OmCfiBuffer& buffer, size_t index) {
    if (index + 1 >= buffer.size())
        return 0;
    return buffer[index] | uint32_t{buffer[index + 1]} << 8;
}

uint32_t GetCfiTableEnd(const OmCfiBuffer& buffer) {
    const auto table = [&buffer](size_t index) {
        const uint32_t address = GetCfiValue(buffer, index);
        return address < kLowestTable ? kNone : address;
    };
    return std::min(table(kCfiPrimaryTable), table(kCfiAlternativeTable));
}

void ReadCfi(OmBoundaryScanBus& bus, int chip, OmCfiBuffer& out) {
    out.clear();
    QueryReader reader(bus, chip);
    reader.ReadFixedPart(out);
    if (IsQueryStructure(out))
        reader.ReadRegions(out);
    else
        out.clear();
    ResetInEverySet(bus);
    bus.DriveBusIdle();
}

// A buffer goes before the order of the sets.
OmCfiFindings FindCommandSetInCfi(std::span<const OmCfiBuffer> chips) {
    const uint32_t bufferBytes = GetSmallestBuffer(chips);
    if (bufferBytes >= kSmallestBuffer) {
        const OmCommandSet set = FindFormOf(chips, &OmCommandSetRow::buffers);
        if (set != OmCommandSet::Unknown)
            return {set, bufferBytes};
    }
    return {FindFormOf(chips, &OmCommandSetRow::words), 0};
}

bool FindSectorsInCfi(std::span<const OmCfiBuffer> chips, OmFlashSectorLayout& sectors) {
    std::vector<ChipSectors> found(chips.size());
    for (size_t chip = 0; chip < chips.size(); ++chip)
        if (!FindChipSectors(chips[chip], found[chip]))
            break;
    const auto allAre = [&found](auto condition) {
        return std::all_of(found.begin(), found.end(), condition);
    };
    if (!allAre([&](const ChipSectors& chip) { return chip.layout == found.front().layout; }))
        return false;
    if (found.front().layout.IsEmpty() &&
        !allAre([](const ChipSectors& chip) { return chip.noRegions; }))
        return false;
    if (!found.front().layout.FitsAChip())
        return false;
    sectors = found.front().layout;
    return true;
}
