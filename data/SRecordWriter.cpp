#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/RecordText.h"

#include <algorithm>

namespace {

constexpr size_t kBytesPerRecord = 16;
constexpr char kHeader[] = "S0030000FC\n";

// One file uses one kind of record, the shortest that reaches its highest address.
struct RecordKind {
    uint32_t highestAddress;
    unsigned addressSize; // in bytes
    const char* mark;
    const char* terminator;
};

constexpr RecordKind kKinds[] = {
    {0xFFFF, 2, "S1", "S9030000FC\n"},
    {0xFFFFFF, 3, "S2", "S804000000FB\n"},
    {0xFFFFFFFF, 4, "S3", "S70500000000FA\n"},
};

const RecordKind& SelectKind(uint32_t highestAddress) {
    return *std::find_if(std::begin(kKinds), std::end(kKinds), [&](const RecordKind& kind) {
        return highestAddress <= kind.highestAddress;
    });
}

void WriteRecord(OmRecordSink& sink, const RecordKind& kind, uint32_t address,
                 std::span<const uint8_t> data) {
    uint8_t record[1 + 4 + kBytesPerRecord + 1];
    uint8_t* end = record;
    *end++ = static_cast<uint8_t>(kind.addressSize + data.size() + 1);
    for (unsigned shift = 8 * kind.addressSize; shift > 0; shift -= 8)
        *end++ = static_cast<uint8_t>(address >> (shift - 8));
    end = std::copy(data.begin(), data.end(), end);
    *end = static_cast<uint8_t>(0xFF - SumBytes({record, end}));
    sink.Record(kind.mark, {record, end + 1});
}

void WriteChunk(OmRecordSink& sink, const RecordKind& kind, const OmDataChunk& chunk) {
    sink.Text(kHeader);
    const std::span<const uint8_t> bytes = chunk.bytes;
    for (size_t offset = 0; offset < bytes.size(); offset += kBytesPerRecord)
        WriteRecord(sink, kind, chunk.address + static_cast<uint32_t>(offset),
                    bytes.subspan(offset, std::min(kBytesPerRecord, bytes.size() - offset)));
    sink.Text(kind.terminator);
}

} // namespace

bool WriteSRecordFile(const std::string& path, const OmDataImage& image) {
    if (image.IsEmpty())
        return false;
    const RecordKind& kind = SelectKind(image.GetHighestAddress());
    OmRecordSink sink(path);
    for (const OmDataChunk& chunk : image.GetChunks())
        WriteChunk(sink, kind, chunk);
    return sink.Commit();
}
