#include "jtag/FrequencyText.h"

#include <charconv>
#include <iterator>
#include <wx/string.h>

namespace {

constexpr double kKilohertz = 1000;
constexpr double kMegahertz = 1000000;

} // namespace

// A decimal point in every locale: the texts are compared with those of fixed lists. The toolkit
// knows only of a locale that it has set itself.
std::wstring FormatFrequency(int32_t hertz) {
    constexpr int kDigits = 6;
    const bool isLow = hertz < kMegahertz;
    char number[32];
    const std::to_chars_result end = std::to_chars(std::begin(number), std::end(number),
                                                   hertz / (isLow ? kKilohertz : kMegahertz),
                                                   std::chars_format::general, kDigits);
    return std::wstring(number, end.ptr) + (isLow ? L" KHz" : L" MHz");
}

int32_t ParseFrequency(const std::wstring& text, int32_t lowest, int32_t highest) {
    wxString number = text;
    double unit = 1;
    if (number.EndsWith(" MHz", &number))
        unit = kMegahertz;
    else if (number.EndsWith(" KHz", &number))
        unit = kKilohertz;
    double value = 0;
    if (!number.ToCDouble(&value))
        return -1;
    value *= unit;
    // Written so that a NaN fails.
    if (!(value >= lowest && value < highest + 1.0))
        return -1;
    return static_cast<int32_t>(value);
}
