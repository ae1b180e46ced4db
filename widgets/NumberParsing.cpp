#include "widgets/NumberParsing.h"

#include <cwchar>
#include <limits>

namespace {

constexpr wchar_t kWhiteSpace[] = L" \t\n\v\f\r";

struct ScannedNumber {
    long long value = 0;
    bool isWhole = false; // nothing stands after it
};

// A number in 64 bits, which saturates: what does not fit is far beyond every limit here.
std::optional<ScannedNumber> Scan(const std::wstring& text, int base) {
    const std::wstring trimmed = TrimText(text);
    wchar_t* end = nullptr;
    const long long value = std::wcstoll(trimmed.c_str(), &end, base);
    if (end == trimmed.c_str())
        return std::nullopt;
    return ScannedNumber{value, end == trimmed.c_str() + trimmed.size()};
}

std::optional<uint32_t> ToAddress(const std::optional<ScannedNumber>& number) {
    if (!number || number->value < 0 || number->value > kMaxAddress)
        return std::nullopt;
    return static_cast<uint32_t>(number->value);
}

} // namespace

std::wstring TrimText(const std::wstring& text) {
    const size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::wstring::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::optional<uint32_t> ParsePlainHex(const std::wstring& text) {
    const std::optional<ScannedNumber> number = Scan(text, 16);
    return number && number->isWhole ? ToAddress(number) : std::nullopt;
}

std::optional<uint32_t> ParseScanningHex(const std::wstring& text) {
    return ToAddress(Scan(text, 16));
}

std::optional<uint32_t> ParseNewStart(const std::wstring& text) {
    const std::optional<uint32_t> address = ParseScanningHex(text);
    return address && *address < kNewStartLimit ? address : std::nullopt;
}

std::optional<uint32_t> ParseDecimal(const std::wstring& text, uint32_t least) {
    const std::optional<ScannedNumber> number = Scan(text, 10);
    if (!number || !number->isWhole || number->value < least ||
        number->value > std::numeric_limits<uint32_t>::max())
        return std::nullopt;
    return static_cast<uint32_t>(number->value);
}
