#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/RecordText.h"

#include <algorithm>

namespace {

constexpr size_t kBytesPerRecord = 16;
constexpr uint32_t kWindow = 0x10000; // bytes that 16-bit offsets reach from one base
constexpr char kEndRecord[] = ":00000001FF\n";

// How addresses of more than 16 bits are told; one way for the whole file.
struct Addressing {
    uint32_t highestAddress;
    uint32_t baseMask;  // bits of an address that its base takes
    unsigned baseShift; // of the base in the record that tells it
    uint8_t recordType;
};

constexpr Addressing kAddressings[] = {
    {0xFFFF, 0, 0, 0},              // base 0 throughout
    {0xFFFFF, 0xFFFFFFF0, 4, 2},    // extended segment address
    {0xFFFFFFFF, 0xFFFF0000, 16, 4} // extended linear address
};

const Addressing& SelectAddressing(uint32_t highestAddress) {
    return *std::find_if(
        std::begin(kAddressings), std::end(kAddressings),
        [&](const Addressing& addressing) { return highestAddress <= addressing.highestAddress; });
}

void WriteRecord(OmRecordSink& sink, uint8_t type, uint16_t offset, std::span<const uint8_t> data) {
    uint8_t record[4 + kBytesPerRecord + 1] = {static_cast<uint8_t>(data.size()),
                                               static_cast<uint8_t>(offset >> 8),
                                               static_cast<uint8_t>(offset), type};
    uint8_t* end = std::copy(data.begin(), data.end(), record + 4);
    *end = static_cast<uint8_t>(-SumBytes({record, end}));
    sink.Record(":", {record, end + 1});
}

class IntelHexWriter {
  public:
    IntelHexWriter(OmRecordSink& sink, const Addressing& addressing)
        : sink_(sink), addressing_(addressing) {}

    void WriteChunk(const OmDataChunk& chunk) {
        std::span<const uint8_t> rest = chunk.bytes;
        uint32_t address = chunk.address;
        while (!rest.empty()) {
            SelectBase(address & addressing_.baseMask);
            const size_t room = kWindow - (address - base_);
            const size_t size = std::min(rest.size(), room);
            WritePiece(static_cast<uint16_t>(address - base_), rest.first(size));
            rest = rest.subspan(size);
            address += static_cast<uint32_t>(size);
        }
    }

  private:
    void SelectBase(uint32_t base) {
        if (base == base_)
            return;
        base_ = base;
        const uint32_t value = base >> addressing_.baseShift;
        const uint8_t data[] = {static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
        WriteRecord(sink_, addressing_.recordType, 0, data);
    }

    // Bytes that 16-bit offsets from the base reach.
    void WritePiece(uint16_t offset, std::span<const uint8_t> bytes) {
        for (size_t done = 0; done < bytes.size(); done += kBytesPerRecord)
            WriteRecord(sink_, 0, static_cast<uint16_t>(offset + done),
                        bytes.subspan(done, std::min(kBytesPerRecord, bytes.size() - done)));
    }

    OmRecordSink& sink_;
    const Addressing& addressing_;
    uint32_t base_ = 0;
};

} // namespace

bool WriteIntelHexFile(const std::string& path, const OmDataImage& image) {
    if (image.IsEmpty())
        return false;
    OmRecordSink sink(path);
    IntelHexWriter writer(sink, SelectAddressing(image.GetHighestAddress()));
    for (const OmDataChunk& chunk : image.GetChunks())
        writer.WriteChunk(chunk);
    sink.Text(kEndRecord);
    return sink.Commit();
}
