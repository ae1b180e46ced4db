#include "jtag/FrequencyText.h"

#include <wx/string.h>

namespace {

constexpr double kKilohertz = 1000;
constexpr double kMegahertz = 1000000;

} // namespace

// A decimal point in every locale: the texts are compared with those of fixed lists.
std::wstring FormatFrequency(int32_t hertz) {
    const bool isLow = hertz < kMegahertz;
    const wxString number = wxString::FromCDouble(hertz / (isLow ? kKilohertz : kMegahertz));
    return (number + (isLow ? " KHz" : " MHz")).ToStdWstring();
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
