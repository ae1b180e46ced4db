#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "data/MemoryGuard.h"
#include "data/RecordText.h"

#include <algorithm>

namespace {

constexpr char kMarker = 'S';

// Address bytes of a data record by its type digit; 0 for every other record.
size_t GetAddressSize(int type) {
    return type >= '1' && type <= '3' ? type - '1' + 2u : 0;
}

class SRecordReader {
  public:
    SRecordReader(OmRecordSource& source, OmDataImage& image, int& records, std::string& error)
        : source_(source), image_(image), records_(records), error_(error) {}

    bool Read();

  private:
    bool ReadRecord(size_t addressSize);
    bool Fail(const char* text);
    void Store(uint32_t address, std::span<const uint8_t> data);

    OmRecordSource& source_;
    OmDataImage& image_;
    int& records_;
    std::string& error_;
};

bool SRecordReader::Read() {
    bool found = source_.FindMarker(kMarker);
    while (found) {
        const int type = source_.Next();
        if (IsLineEnd(type)) {
            found = source_.FindMarker(kMarker);
            continue;
        }
        const size_t addressSize = GetAddressSize(type);
        if (addressSize > 0 && !ReadRecord(addressSize))
            return false;
        found = source_.FindMarkerOnNextLine(kMarker);
    }
    return records_ > 0 || Fail(ForTranslation("No S-records found."));
}

// Count, then address, data and checksum, which the count covers. The data counts even if the
// record turns out to be bad: the caller decides what becomes of a damaged image.
bool SRecordReader::ReadRecord(size_t addressSize) {
    uint8_t count = 0;
    if (DecodeHexBytes(source_.Take(2), {&count, 1}) < 1)
        return Fail(kFormatError);
    if (count < addressSize + 1)
        return Fail(ForTranslation("Invalid S-record file format."));
    uint8_t buffer[kMaxRecordBytes];
    const std::span<const uint8_t> bytes(
        buffer, DecodeHexBytes(source_.Take(size_t{count} * 2), {buffer, count}));
    if (bytes.size() < addressSize)
        return Fail(kFormatError);
    uint32_t address = 0;
    for (const uint8_t byte : bytes.first(addressSize))
        address = address << 8 | byte;
    const size_t dataEnd = std::min<size_t>(bytes.size(), count - 1u);
    Store(address, bytes.subspan(addressSize, dataEnd - addressSize));
    if (bytes.size() < count)
        return Fail(kFormatError);
    if (static_cast<uint8_t>(count + SumBytes(bytes)) != 0xFF)
        return Fail(ForTranslation("S-record checksum error."));
    ++records_;
    source_.LiftBudget();
    return true;
}

// Addresses of one record count on from FFFFFFFFh to 0.
void SRecordReader::Store(uint32_t address, std::span<const uint8_t> data) {
    const auto room =
        static_cast<size_t>(std::min<uint64_t>(data.size(), (uint64_t{1} << 32) - address));
    image_.SetBytes(address, data.first(room));
    image_.SetBytes(0, data.subspan(room));
}

bool SRecordReader::Fail(const char* text) {
    error_ = source_.HasFailed() ? kOpenError : text;
    return false;
}

} // namespace

bool ReadSRecordFile(const std::string& path, OmDataImage& image, int& records,
                     std::string& error) {
    records = 0;
    OmRecordSource source(path);
    if (!source.IsOpen()) {
        error = kOpenError;
        return false;
    }
    return GuardMemory(error, [&] { return SRecordReader(source, image, records, error).Read(); });
}
