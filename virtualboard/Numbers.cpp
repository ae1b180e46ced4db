#include "virtualboard/Numbers.h"

#include <cstdlib>
#include <stdexcept>

namespace vb {

uint32_t ParseNumber(const std::string& text) {
    char* end = nullptr;
    const int base = text.starts_with("0x") || text.starts_with("0X") ? 16 : 10;
    unsigned long long value = std::strtoull(text.c_str(), &end, base);
    if (*end == 'K')
        value <<= 10;
    else if (*end == 'M')
        value <<= 20;
    if (*end == 'K' || *end == 'M')
        ++end;
    if (text.empty() || end == text.c_str() || *end != '\0' || value > UINT32_MAX)
        throw std::runtime_error("'" + text + "' is not a number");
    return static_cast<uint32_t>(value);
}

std::string FormatHex(uint32_t value) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    do
        text.insert(text.begin(), kDigits[value & 15]);
    while ((value >>= 4) != 0);
    return "0x" + text;
}

} // namespace vb
