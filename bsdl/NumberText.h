// Numbers in outside text.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

// The number at the start of `text`, after blanks and with whatever follows it ignored, as scanf
// reads it; none if there is no digit or the number does not fit.
template <typename Number>
std::optional<Number> ReadLeadingNumber(std::string_view text) {
    const size_t start = text.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(start);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc{})
        return std::nullopt;
    return number;
}
