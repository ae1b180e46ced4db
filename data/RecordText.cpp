#include "data/RecordText.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr uint8_t kNoDigit = 0xFF;

constexpr std::array<uint8_t, 256> MakeDigitTable() {
    std::array<uint8_t, 256> table{};
    table.fill(kNoDigit);
    for (uint8_t digit = 0; digit < 16; ++digit) {
        table[static_cast<unsigned char>("0123456789ABCDEF"[digit])] = digit;
        table[static_cast<unsigned char>("0123456789abcdef"[digit])] = digit;
    }
    return table;
}

constexpr std::array<uint8_t, 256> kDigitValues = MakeDigitTable();

constexpr std::array<std::array<char, 2>, 256> MakePairTable() {
    std::array<std::array<char, 2>, 256> table{};
    for (unsigned byte = 0; byte < 256; ++byte)
        table[byte] = {"0123456789ABCDEF"[byte >> 4], "0123456789ABCDEF"[byte & 0xF]};
    return table;
}

constexpr std::array<std::array<char, 2>, 256> kPairs = MakePairTable();

// Mark, digits and line end of the longest record, or one fixed line.
constexpr size_t kLongestText = 4 * kMaxRecordBytes;

} // namespace

OmRecordSource::OmRecordSource(const std::string& path) : file_(std::fopen(path.c_str(), "r")) {
    if (!file_)
        return;
    std::setvbuf(file_.get(), nullptr, _IONBF, 0); // the blocks are ours
    buffer_ = std::make_unique<char[]>(kBlock);
}

// Keeps what has not been taken yet and reads on. False if nothing came.
bool OmRecordSource::Fill() {
    std::copy(buffer_.get() + position_, buffer_.get() + end_, buffer_.get());
    end_ -= position_;
    position_ = 0;
    const size_t wanted = std::min(kBlock - end_, budget_);
    const size_t read = std::fread(buffer_.get() + end_, 1, wanted, file_.get());
    end_ += read;
    if (budget_ != SIZE_MAX)
        budget_ -= read;
    return read > 0;
}

std::string_view OmRecordSource::Take(size_t count) {
    while (end_ - position_ < count && Fill()) {
    }
    const std::string_view text(buffer_.get() + position_, std::min(count, end_ - position_));
    position_ += text.size();
    return text;
}

bool OmRecordSource::FindMarker(char marker) {
    do {
        const void* found = std::memchr(buffer_.get() + position_, marker, end_ - position_);
        if (found) {
            position_ = static_cast<size_t>(static_cast<const char*>(found) - buffer_.get()) + 1;
            return true;
        }
        position_ = end_;
    } while (Fill());
    return false;
}

bool OmRecordSource::FindMarkerOnNextLine(char marker) {
    int character = Next();
    while (character != kEnd && !IsLineEnd(character))
        character = Next();
    while (IsLineEnd(character))
        character = Next();
    return character == marker || (character != kEnd && FindMarker(marker));
}

size_t DecodeHexBytes(std::string_view text, std::span<uint8_t> bytes) {
    const size_t count = std::min(text.size() / 2, bytes.size());
    for (size_t index = 0; index < count; ++index) {
        const uint8_t high = kDigitValues[static_cast<unsigned char>(text[2 * index])];
        const uint8_t low = kDigitValues[static_cast<unsigned char>(text[2 * index + 1])];
        if ((high | low) == kNoDigit)
            return index;
        bytes[index] = static_cast<uint8_t>(high << 4 | low);
    }
    return count;
}

uint8_t SumBytes(std::span<const uint8_t> bytes) {
    unsigned sum = 0;
    for (const uint8_t byte : bytes)
        sum += byte;
    return static_cast<uint8_t>(sum);
}

OmRecordSink::OmRecordSink(const std::string& path)
    : file_(PathFromLocal(path), OmFileReplacement::Mode::Text),
      buffer_(std::make_unique<char[]>(kBlock + kLongestText)) {}

void OmRecordSink::Text(std::string_view text) {
    MakeRoom();
    end_ += text.copy(&buffer_[end_], kLongestText);
}

void OmRecordSink::Record(std::string_view mark, std::span<const uint8_t> bytes) {
    Text(mark);
    char* end = &buffer_[end_];
    for (const uint8_t byte : bytes) {
        std::memcpy(end, kPairs[byte].data(), 2);
        end += 2;
    }
    *end++ = '\n';
    end_ = static_cast<size_t>(end - buffer_.get());
}

bool OmRecordSink::Commit() {
    return file_.Write({buffer_.get(), end_}) && file_.Commit();
}

// A failure stays known to the file until Commit.
void OmRecordSink::MakeRoom() {
    if (end_ < kBlock)
        return;
    file_.Write({buffer_.get(), end_});
    end_ = 0;
}
