#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/MemoryGuard.h"
#include "data/RecordText.h"

#include <algorithm>

namespace {

constexpr char kMarker = ':';
constexpr size_t kHeaderBytes = 4; // count, address, type
constexpr uint64_t kSegmentSize = 0x10000;
constexpr uint64_t kAddressSpace = uint64_t{1} << 32;

enum RecordType : uint8_t { Data = 0, EndOfFile = 1, SegmentBase = 2, LinearBase = 4 };

enum class Outcome { Failed, Skipped, Done, Ended };

class IntelHexReader {
  public:
    IntelHexReader(OmRecordSource& source, OmDataImage& image, int& records, std::string& error)
        : source_(source), image_(image), records_(records), error_(error) {}

    bool Read();

  private:
    Outcome ReadRecord();
    Outcome Take(RecordType type, std::span<const uint8_t> bytes);
    void Store(uint16_t address, std::span<const uint8_t> data);
    void StoreInRing(uint32_t base, uint64_t offset, uint64_t size, std::span<const uint8_t> data);
    Outcome Fail(const char* text);

    OmRecordSource& source_;
    OmDataImage& image_;
    int& records_;
    std::string& error_;
    uint32_t base_ = 0;
    bool wrapsInSegment_ = true;
};

// After the first data record only the start of a line is looked at, before it any place.
bool IntelHexReader::Read() {
    bool found = source_.FindMarker(kMarker);
    while (found) {
        const Outcome outcome = ReadRecord();
        if (outcome == Outcome::Failed)
            return false;
        if (outcome == Outcome::Ended)
            break;
        const bool atNextLine = outcome == Outcome::Skipped || records_ > 0;
        found = atNextLine ? source_.FindMarkerOnNextLine(kMarker) : source_.FindMarker(kMarker);
    }
    return records_ > 0 || Fail(ForTranslation("No data records found.")) != Outcome::Failed;
}

Outcome IntelHexReader::ReadRecord() {
    uint8_t header[kHeaderBytes];
    if (DecodeHexBytes(source_.Take(2 * kHeaderBytes), header) < kHeaderBytes)
        return Fail(kFormatError);
    const uint8_t count = header[0];
    const auto address = static_cast<uint16_t>(header[1] << 8 | header[2]);
    const uint8_t type = header[3];
    if (type != Data && type != EndOfFile && type != SegmentBase && type != LinearBase)
        return Outcome::Skipped; // start addresses and the like mean nothing to a flash
    if ((type == SegmentBase || type == LinearBase) && count != 2)
        return Fail(ForTranslation("Invalid Intel Hex file format."));
    uint8_t buffer[kMaxRecordBytes];
    const size_t size = count + 1u; // with the checksum
    const std::span<const uint8_t> bytes(buffer,
                                         DecodeHexBytes(source_.Take(2 * size), {buffer, size}));
    // The data counts even if the record turns out to be bad, as with S-records.
    if (type == Data)
        Store(address, bytes.first(std::min<size_t>(bytes.size(), count)));
    if (bytes.size() < size)
        return Fail(kFormatError);
    if (static_cast<uint8_t>(SumBytes(header) + SumBytes(bytes)) != 0)
        return Fail(ForTranslation("Intel Hex record checksum error."));
    return Take(static_cast<RecordType>(type), bytes);
}

// What a whole and correct record means beyond its data.
Outcome IntelHexReader::Take(RecordType type, std::span<const uint8_t> bytes) {
    if (type == EndOfFile)
        return Outcome::Ended;
    if (type == Data) {
        ++records_;
        source_.LiftBudget();
        return Outcome::Done;
    }
    const uint32_t value = static_cast<uint32_t>(bytes[0]) << 8 | bytes[1];
    wrapsInSegment_ = type == SegmentBase;
    base_ = wrapsInSegment_ ? value << 4 : value << 16;
    return Outcome::Done;
}

void IntelHexReader::Store(uint16_t address, std::span<const uint8_t> data) {
    if (wrapsInSegment_)
        StoreInRing(base_, address, kSegmentSize, data);
    else
        StoreInRing(0, uint64_t{base_} + address, kAddressSpace, data);
}

// Bytes at `offset` of a ring of `size` addresses that begins at `base`.
void IntelHexReader::StoreInRing(uint32_t base, uint64_t offset, uint64_t size,
                                 std::span<const uint8_t> data) {
    const auto room = static_cast<size_t>(std::min<uint64_t>(data.size(), size - offset));
    image_.SetBytes(base + static_cast<uint32_t>(offset), data.first(room));
    image_.SetBytes(base, data.subspan(room));
}

Outcome IntelHexReader::Fail(const char* text) {
    error_ = source_.HasFailed() ? kOpenError : text;
    return Outcome::Failed;
}

} // namespace

bool ReadIntelHexFile(const std::string& path, OmDataImage& image, int& records,
                      std::string& error) {
    records = 0;
    OmRecordSource source(path);
    if (!source.IsOpen()) {
        error = kOpenError;
        return false;
    }
    return GuardMemory(error, [&] { return IntelHexReader(source, image, records, error).Read(); });
}
