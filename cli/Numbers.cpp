#include "cli/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr uint64_t kMax32 = std::numeric_limits<uint32_t>::max();

std::optional<uint64_t> ParseWhole(std::string_view text, int base) {
    uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc{} && stop == end && !text.empty() ? std::optional(number)
                                                                : std::nullopt;
}

bool RemovePrefix0x(std::string_view& text) {
    if (!text.starts_with("0x") && !text.starts_with("0X"))
        return false;
    text.remove_prefix(2);
    return true;
}

// Takes a unit letter off the end; 1 if there is none.
uint64_t TakeBinaryUnit(std::string_view& text) {
    if (text.empty())
        return 1;
    const char letter = text.back();
    const bool kilo = letter == 'K' || letter == 'k';
    const bool mega = letter == 'M' || letter == 'm';
    if (kilo || mega)
        text.remove_suffix(1);
    return kilo ? 1024 : mega ? 1048576 : 1;
}

std::optional<uint32_t> ParseBytes(std::string_view text, int plainBase) {
    if (RemovePrefix0x(text))
        plainBase = 16;
    const uint64_t unit = TakeBinaryUnit(text);
    const auto number = ParseWhole(text, unit == 1 ? plainBase : 10);
    if (!number || *number > kMax32 / unit)
        return std::nullopt;
    return static_cast<uint32_t>(*number * unit);
}

std::optional<OmSectorRun> ParseRun(std::string_view text) {
    const size_t dash = text.find('-');
    const auto first = ParseWhole(text.substr(0, dash), 10);
    const auto last =
        dash == std::string_view::npos ? first : ParseWhole(text.substr(dash + 1), 10);
    if (!first || !last || *first > *last || *last > kMax32)
        return std::nullopt;
    return OmSectorRun{static_cast<uint32_t>(*first), static_cast<uint32_t>(*last)};
}

} // namespace

std::optional<uint32_t> ParseOffset(std::string_view text) {
    return ParseBytes(text, 16);
}

std::optional<uint32_t> ParseSize(std::string_view text) {
    const auto size = ParseBytes(text, 10);
    return size == 0u ? std::nullopt : size;
}

std::optional<int32_t> ParseFrequency(std::string_view text) {
    double unit = 1;
    if (!text.empty() && (text.back() == 'k' || text.back() == 'K' || text.back() == 'M')) {
        unit = text.back() == 'M' ? 1e6 : 1e3;
        text.remove_suffix(1);
    }
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    const double hertz = std::round(number * unit);
    if (error != std::errc{} || stop != end || !(hertz >= 1 && hertz <= 1e9))
        return std::nullopt;
    return static_cast<int32_t>(hertz);
}

std::optional<std::vector<OmSectorRun>> ParseSectorList(std::string_view text) {
    std::vector<OmSectorRun> runs;
    for (;;) {
        const size_t comma = text.find(',');
        const auto run = ParseRun(text.substr(0, comma));
        if (!run)
            return std::nullopt;
        runs.push_back(*run);
        if (comma == std::string_view::npos)
            return runs;
        text.remove_prefix(comma + 1);
    }
}
