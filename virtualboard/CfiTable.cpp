#include "virtualboard/CfiTable.h"

#include <algorithm>
#include <bit>

namespace vb {

namespace {

// Query addresses of JESD68.
constexpr size_t kQuery = 0x10;
constexpr size_t kPrimaryCode = 0x13;
constexpr size_t kPrimaryTable = 0x15;
constexpr size_t kAlternativeCode = 0x17;
constexpr size_t kAlternativeTable = 0x19;
constexpr size_t kVoltages = 0x1B;
constexpr size_t kTypicalTimes = 0x1F;
constexpr size_t kMaximumTimes = 0x23;
constexpr size_t kDeviceSize = 0x27;
constexpr size_t kInterface = 0x28;
constexpr size_t kBufferSize = 0x2A;
constexpr size_t kRegionCount = 0x2C;
constexpr size_t kRegions = 0x2D;
constexpr size_t kBytesPerRegion = 4;

// Where a short table lets its primary table begin: in place of the region list.
constexpr uint16_t kShortTable = 0x2D;
constexpr uint16_t kUnknownVendorCode = 0x0100;

class TableWriter {
  public:
    explicit TableWriter(size_t size) : bytes_(size, 0) {}

    void Byte(size_t address, uint32_t value) { bytes_[address] = static_cast<uint8_t>(value); }

    void Word(size_t address, uint32_t value) {
        Byte(address, value);
        Byte(address + 1, value >> 8);
    }

    void Text(size_t address, const char* text) {
        for (; *text; ++text)
            Byte(address++, static_cast<uint8_t>(*text));
    }

    std::vector<uint8_t> Take() { return std::move(bytes_); }

  private:
    std::vector<uint8_t> bytes_;
};

// Times and sizes are held as powers of two.
uint32_t Exponent(uint32_t value) {
    return value <= 1 ? 0 : static_cast<uint32_t>(std::bit_width(value - 1));
}

uint16_t KnownCode(const FlashParameters& flash) {
    if (flash.primaryCode != 0)
        return flash.primaryCode;
    if (flash.commandSet == CommandSet::Amd)
        return 2;
    return flash.bufferBytes != 0 ? 1 : 3;
}

uint32_t InterfaceCode(const FlashParameters& flash) {
    if (flash.widthBits == 32)
        return 3;
    if (flash.commandShift != 0)
        return 2; // x8/x16
    return flash.widthBits == 16 ? 1 : 0;
}

void WriteCodes(TableWriter& table, const FlashParameters& flash, uint16_t extended) {
    const bool swapped = flash.cfi == CfiKind::Alternative;
    table.Text(kQuery, "QRY");
    table.Word(swapped ? kAlternativeCode : kPrimaryCode, KnownCode(flash));
    table.Word(swapped ? kAlternativeTable : kPrimaryTable, extended);
    if (swapped)
        table.Word(kPrimaryCode, kUnknownVendorCode);
}

void WriteTimes(TableWriter& table, const FlashParameters& flash) {
    const FlashTimes& times = flash.times;
    table.Byte(kTypicalTimes, Exponent(times.wordMicroseconds));
    table.Byte(kTypicalTimes + 1, flash.bufferBytes ? Exponent(times.bufferMicroseconds) : 0);
    table.Byte(kTypicalTimes + 2, Exponent(times.sectorMicroseconds / 1000));
    table.Byte(kTypicalTimes + 3,
               Exponent(static_cast<uint32_t>(flash.ChipEraseMicroseconds() / 1000)));
    for (size_t i = 0; i < 4; ++i)
        table.Byte(kMaximumTimes + i, Exponent(times.limitFactor));
    for (size_t i = 0; i < flash.cfiTimes.size(); ++i)
        table.Byte(kTypicalTimes + i, flash.cfiTimes[i]);
}

const std::vector<SectorGroup>& Regions(const FlashParameters& flash) {
    return flash.cfiSectors.empty() ? flash.sectors : flash.cfiSectors;
}

void WriteRegions(TableWriter& table, const FlashParameters& flash) {
    table.Byte(kRegionCount, static_cast<uint32_t>(Regions(flash).size()));
    size_t address = kRegions;
    for (const SectorGroup& group : Regions(flash)) {
        table.Word(address, group.count - 1);
        table.Word(address + 2, group.bytes / 256); // 0 for sectors of 128 bytes
        address += kBytesPerRegion;
    }
}

void WritePrimary(TableWriter& table, const FlashParameters& flash, size_t primary) {
    table.Text(primary, ("PRI" + std::to_string(flash.primaryVersion)).c_str());
    for (size_t i = 0; i + 1 < flash.primaryBytes.size(); i += 2)
        table.Byte(primary + flash.primaryBytes[i], flash.primaryBytes[i + 1]);
}

uint32_t BufferExponent(const FlashParameters& flash) {
    return Exponent(flash.cfiBufferBytes != 0 ? flash.cfiBufferBytes : flash.bufferBytes);
}

} // namespace

std::vector<uint8_t> MakeCfiTable(const FlashParameters& flash) {
    if (flash.cfi == CfiKind::None)
        return {};
    const size_t regionsEnd = kRegions + kBytesPerRegion * Regions(flash).size();
    const size_t extended = std::max<size_t>(0x40, regionsEnd);
    TableWriter table(std::max<size_t>(0x80, extended + 32));
    const bool isShort = flash.cfi == CfiKind::Short;
    WriteCodes(table, flash, isShort ? kShortTable : static_cast<uint16_t>(extended));
    table.Byte(kVoltages, 0x27); // 2.7 V
    table.Byte(kVoltages + 1, 0x36);
    WriteTimes(table, flash);
    table.Byte(kDeviceSize, Exponent(flash.SizeBytes()));
    table.Word(kInterface, InterfaceCode(flash));
    table.Word(kBufferSize, BufferExponent(flash));
    if (flash.cfi != CfiKind::NoRegions)
        WriteRegions(table, flash);
    const size_t primary = isShort ? kShortTable : extended;
    WritePrimary(table, flash, primary);
    return table.Take();
}

} // namespace vb
