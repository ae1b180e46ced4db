// What S-record and Intel HEX have in common: a text of records in hexadecimal digits, read in big
// blocks and written line by line.
#pragma once

#include "platform/FileReplacement.h"
#include "platform/Translation.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>

class OmDataImage;

inline constexpr const char* kOpenError = ForTranslation("Error opening file.");
inline constexpr const char* kFormatError = ForTranslation("Invalid file format.");

// No record is longer: its byte count has two digits.
inline constexpr size_t kMaxRecordBytes = 255 + 1;

constexpr bool IsLineEnd(int character) {
    return character == '\n' || character == '\r';
}

// The characters of a file of records. A budget ends it early while no record has been found, so
// that a large binary file is soon known not to be one.
class OmRecordSource {
  public:
    static constexpr int kEnd = -1;

    explicit OmRecordSource(const std::string& path);

    bool IsOpen() const { return file_ != nullptr; }

    // Whether reading broke off with an error; to be asked at the end.
    bool HasFailed() const { return std::ferror(file_.get()) != 0; }

    void LiftBudget() { budget_ = SIZE_MAX; }

    // The next character, or kEnd.
    int Next() {
        return position_ < end_ || Fill() ? static_cast<unsigned char>(buffer_[position_++]) : kEnd;
    }

    // The next `count` characters, fewer only at the end. Valid until the next call.
    std::string_view Take(size_t count);

    // Reads up to and with the next `marker`; false at the end.
    bool FindMarker(char marker);

    // The same, but from the start of the next line that is not empty.
    bool FindMarkerOnNextLine(char marker);

  private:
    bool Fill();

    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    static constexpr size_t kBlock = size_t{256} * 1024;
    static constexpr size_t kBudget = 50000; // bytes in which the first good record must end

    std::unique_ptr<std::FILE, Closer> file_;
    std::unique_ptr<char[]> buffer_;
    size_t position_ = 0;
    size_t end_ = 0;
    size_t budget_ = kBudget;
};

// Decodes pairs of hexadecimal digits up to the first that is none; answers the number of bytes.
size_t DecodeHexBytes(std::string_view text, std::span<uint8_t> bytes);

// Low byte of the sum of all bytes.
uint8_t SumBytes(std::span<const uint8_t> bytes);

// Collects lines of records for a file that is put in place when it is whole.
class OmRecordSink {
  public:
    explicit OmRecordSink(const std::string& path);

    void Text(std::string_view text);

    // The bytes of one record as hexadecimal digits, between its mark and a line end.
    void Record(std::string_view mark, std::span<const uint8_t> bytes);

    // False if anything could not be written.
    bool Commit();

  private:
    void MakeRoom();

    static constexpr size_t kBlock = size_t{64} * 1024;

    OmFileReplacement file_;
    std::unique_ptr<char[]> buffer_;
    size_t end_ = 0;
};
