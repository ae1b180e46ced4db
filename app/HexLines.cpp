#include "app/HexLines.h"

#include "data/DataImage.h"

#include <algorithm>
#include <array>
#include <wx/strconv.h>

namespace {

constexpr uint32_t kBytesPerLine = 16;
constexpr uint32_t kLinesBetweenChunks = 2;
constexpr size_t kCellColumns = 3 * kBytesPerLine + 3; // " 3F" each, and three group gaps
constexpr wchar_t kSoftHyphen = 0xAD;
constexpr wchar_t kHexDigits[] = L"0123456789ABCDEF";

uint32_t LineAddress(uint32_t address) {
    return address & ~(kBytesPerLine - 1);
}

uint32_t CountLines(const OmDataChunk& chunk) {
    return (LineAddress(chunk.LastAddress()) - LineAddress(chunk.address)) / kBytesPerLine + 1;
}

unsigned CountHexDigits(uint32_t value) {
    unsigned digits = 1;
    while (value >>= 4)
        ++digits;
    return digits;
}

// What the character column shows for a byte. In a multi-byte encoding such as UTF-8 a byte from
// A0h up is no character by itself; ISO 8859-1 then keeps the bytes apart.
wchar_t ToCharacter(uint8_t byte) {
    if (byte <= 0x1F || (byte >= 0x7F && byte <= 0x9F))
        return L'.';
    const char narrow = static_cast<char>(byte);
    wchar_t wide[4] = {};
    const size_t length = wxConvLibc.ToWChar(wide, 4, &narrow, 1);
    const wchar_t character = length == 1 && wide[0] != 0 ? wide[0] : static_cast<wchar_t>(byte);
    // A soft hyphen is drawn without any width and would shift the rest of the line.
    return character == kSoftHyphen ? L'-' : character;
}

std::array<wchar_t, 256> MakeCharacterTable() {
    std::array<wchar_t, 256> table;
    for (unsigned byte = 0; byte < table.size(); ++byte)
        table[byte] = ToCharacter(static_cast<uint8_t>(byte));
    return table;
}

void AppendHex(std::wstring& text, uint32_t value, unsigned digits) {
    while (digits-- > 0)
        text += kHexDigits[value >> (4 * digits) & 0xF];
}

} // namespace

void OmHexLines::Attach(const OmDataImage* image) {
    sections_.clear();
    lineCount_ = 0;
    addressDigits_ = 0;
    if (!image || image->IsEmpty())
        return;
    sections_.reserve(image->GetChunkCount());
    for (const OmDataChunk& chunk : image->GetChunks()) {
        if (!sections_.empty())
            lineCount_ += kLinesBetweenChunks;
        sections_.push_back({lineCount_, &chunk});
        lineCount_ += CountLines(chunk);
    }
    addressDigits_ = CountHexDigits(image->GetHighestAddress());
}

std::wstring OmHexLines::GetLineText(uint32_t line) const {
    const auto next = std::upper_bound(
        sections_.begin(), sections_.end(), line,
        [](uint32_t wanted, const Section& section) { return wanted < section.firstLine; });
    if (next == sections_.begin())
        return {};
    const Section& section = *std::prev(next);
    const uint32_t lineInChunk = line - section.firstLine;
    if (lineInChunk >= CountLines(*section.chunk))
        return {};
    return FormatLine(LineAddress(section.chunk->address) + lineInChunk * kBytesPerLine,
                      *section.chunk);
}

bool OmHexLines::FindLine(uint32_t address, uint32_t& line) const {
    const auto section = std::partition_point(
        sections_.begin(), sections_.end(),
        [address](const Section& candidate) { return candidate.chunk->LastAddress() < address; });
    if (section == sections_.end()) {
        line = lineCount_;
        return false;
    }
    line = section->firstLine;
    if (address < section->chunk->address)
        return false;
    line += (address - LineAddress(section->chunk->address)) / kBytesPerLine;
    return true;
}

std::wstring OmHexLines::FormatLine(uint32_t lineAddress, const OmDataChunk& chunk) const {
    static const std::array<wchar_t, 256> characters = MakeCharacterTable();
    std::wstring text;
    text.reserve(addressDigits_ + 2 + kCellColumns + 2 + kBytesPerLine);
    AppendHex(text, lineAddress, addressDigits_);
    text += L": ";
    std::array<wchar_t, kBytesPerLine> shown;
    shown.fill(L' ');
    for (uint32_t cell = 0; cell < kBytesPerLine; ++cell) {
        if (cell > 0 && cell % 4 == 0)
            text += L' ';
        const uint64_t index =
            uint64_t{lineAddress} + cell - chunk.address; // wraps below the start
        if (index >= chunk.bytes.size()) {
            text += L"   ";
            continue;
        }
        const uint8_t byte = chunk.bytes[index];
        text += L' ';
        AppendHex(text, byte, 2);
        shown[cell] = characters[byte];
    }
    text += L"  ";
    text.append(shown.begin(), shown.end());
    return text;
}
