// The lines of a hex view over a data image: how many there are, what each says, and which one
// holds an address. Knows no window. Two empty lines stand between chunks, whatever the size of the
// gap.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class OmDataImage;
struct OmDataChunk;

class OmHexLines {
  public:
    // `image` is not owned and may be null. To be called again whenever the contents of the image
    // have changed; until then the image must not change.
    void Attach(const OmDataImage* image);

    uint32_t GetLineCount() const { return lineCount_; }

    // Empty for the lines between chunks and past the last one.
    std::wstring GetLineText(uint32_t line) const;

    // True with the line that shows `address`; false with the first line of the next data above it,
    // or the line count if there is none.
    bool FindLine(uint32_t address, uint32_t& line) const;

    // Hexadecimal digits of every line's address; 0 without data.
    unsigned GetAddressDigits() const { return addressDigits_; }

  private:
    // One row a chunk, ascending in both fields' order, so that a line or an address is found by
    // bisection.
    struct Section {
        uint32_t firstLine;
        const OmDataChunk* chunk;
    };

    std::wstring FormatLine(uint32_t lineAddress, const OmDataChunk& chunk) const;

    std::vector<Section> sections_;
    uint32_t lineCount_ = 0;
    unsigned addressDigits_ = 0;
};
