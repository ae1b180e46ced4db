#include "widgets/NumberParsing.h"

#include <gtest/gtest.h>

namespace {

using Parser = std::optional<uint32_t> (*)(const std::wstring&);

struct Case {
    const wchar_t* text;
    std::optional<uint32_t> value;
};

template <size_t N>
void ExpectParsed(Parser parse, const Case (&cases)[N]) {
    for (const Case& c : cases)
        EXPECT_EQ(parse(c.text), c.value) << testing::PrintToString(std::wstring(c.text));
}

} // namespace

TEST(NumberParsing, TrimsBothEndsOnly) {
    EXPECT_EQ(TrimText(L" \t1 2\n "), L"1 2");
    EXPECT_EQ(TrimText(L"  "), L"");
    EXPECT_EQ(TrimText(L""), L"");
}

TEST(NumberParsing, PlainHexFillsTheWholeText) {
    const Case cases[] = {
        {L"0", 0u},
        {L"10", 16u},
        {L"  aBc  ", 0xABCu},
        {L"0x1F", 0x1Fu},
        {L"7FFFFFFF", 0x7FFFFFFFu},
        {L"80000000", std::nullopt},
        {L"FFFFFFFF", std::nullopt},
        {L"100000000", std::nullopt},
        {L"FFFFFFFFFFFFFFFFFFFFFF", std::nullopt},
        {L"-1", std::nullopt},
        {L"10xyz", std::nullopt},
        {L"1 0", std::nullopt},
        {L"xyz", std::nullopt},
        {L"0x", std::nullopt},
        {L"  ", std::nullopt},
        {L"", std::nullopt},
    };
    ExpectParsed(ParsePlainHex, cases);
}

TEST(NumberParsing, ScanningHexIgnoresWhatStandsBehind) {
    const Case cases[] = {
        {L"10xyz", 16u},
        {L" 10 20 ", 16u},
        {L"1000h", 0x1000u},
        {L"7FFFFFFF", 0x7FFFFFFFu},
        {L"80000000", std::nullopt},
        {L"100000010", std::nullopt}, // must not lose its ninth digit
        {L"-1", std::nullopt},
        {L"-FFFFFFFF", std::nullopt}, // must not wrap to 1
        {L"xyz", std::nullopt},
        {L"", std::nullopt},
    };
    ExpectParsed(ParseScanningHex, cases);
}

TEST(NumberParsing, NewStartStaysBelowItsLimit) {
    const Case cases[] = {
        {L"3FFFFFFF", 0x3FFFFFFFu},
        {L"40000000", std::nullopt},
        {L"10xyz", 16u},
        {L" ", std::nullopt},
    };
    ExpectParsed(ParseNewStart, cases);
}

TEST(NumberParsing, DecimalHasNeitherFractionNorUnit) {
    const Case cases[] = {
        {L"4194304", 4194304u},
        {L" 7 ", 7u},
        {L"010", 10u}, // not octal
        {L"0", 0u},
        {L"4294967295", 0xFFFFFFFFu},
        {L"4294967296", std::nullopt},
        {L"99999999999999999999", std::nullopt},
        {L"-1", std::nullopt},
        {L"1.5", std::nullopt},
        {L"10KB", std::nullopt},
        {L"0x10", std::nullopt},
        {L"", std::nullopt},
    };
    ExpectParsed([](const std::wstring& text) { return ParseDecimal(text); }, cases);
}

TEST(NumberParsing, DecimalKeepsItsLeastValue) {
    EXPECT_EQ(ParseDecimal(L"0", 1), std::nullopt);
    EXPECT_EQ(ParseDecimal(L"1", 1), 1u);
}
