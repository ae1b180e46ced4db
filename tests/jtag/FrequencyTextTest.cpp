#include "jtag/FrequencyText.h"

#include <gtest/gtest.h>

TEST(FrequencyText, FormatsKilohertzAndMegahertz) {
    const struct {
        int32_t hertz;
        const wchar_t* text;
    } cases[] = {
        {1000, L"1 KHz"},      {750000, L"750 KHz"},   {999999, L"999.999 KHz"},
        {1000000, L"1 MHz"},   {3750000, L"3.75 MHz"}, {7500000, L"7.5 MHz"},
        {30000000, L"30 MHz"}, {500, L"0.5 KHz"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(FormatFrequency(c.hertz), c.text);
}

TEST(FrequencyText, ParsesWithinItsRange) {
    const struct {
        const wchar_t* text;
        int32_t hertz;
    } cases[] = {
        {L"9.6 MHz", 9600000},
        {L"3.75 MHz", 3750000},
        {L"750 KHz", 750000},
        {L"6000000", 6000000},
        {L"1.5", -1},
        {L"1000.9", 1000},
        {L"1 KHz", 1000},
        {L"0.999 KHz", -1},
        {L"12 MHz", 12000000},
        {L"12.1 MHz", -1},
        {L"6MHz", -1},
        {L"6 mhz", -1},
        {L"", -1},
        {L" MHz", -1},
        {L"fast", -1},
        {L"nan MHz", -1},
        {L"1e300 MHz", -1},
        {L"-6 MHz", -1},
    };

    for (const auto& c : cases)
        EXPECT_EQ(ParseFrequency(c.text, 1000, 12000000), c.hertz)
            << testing::PrintToString(std::wstring(c.text));
}
