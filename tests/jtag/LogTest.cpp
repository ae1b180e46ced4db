#include "jtag/Log.h"

#include "tests/jtag/LogCollector.h"

#include <gtest/gtest.h>

namespace {

struct LinesCase {
    size_t bits;
    const wchar_t* text;
};

} // namespace

TEST(Log, IsSilentWithoutASink) {
    ASSERT_EQ(SetLogSink(nullptr), nullptr);
    OmLog(L"nobody hears %d\n", 1);
    OmLogBits({1, 0});
}

TEST(Log, FormatsIntoOneWrite) {
    LogCollector log;
    OmLog(L"Initializing OmParallelCable (%u LPT, %u Hz)\n", 1U, 200000U);
    EXPECT_EQ(log.Take(), L"Initializing OmParallelCable (1 LPT, 200000 Hz)\n");
    EXPECT_EQ(log.writes, 1);
}

TEST(Log, EmptyTextIsNotWritten) {
    LogCollector log;
    OmLog(L"%ls", L"");
    EXPECT_EQ(log.writes, 0);
}

TEST(Log, TextOf1023CharactersFitsAndOneMoreIsDropped) {
    LogCollector log;
    OmLog(L"%ls", std::wstring(1023, L'a').c_str());
    EXPECT_EQ(log.Take(), std::wstring(1023, L'a'));
    OmLog(L"%ls", std::wstring(1024, L'b').c_str());
    EXPECT_EQ(log.writes, 1);
}

TEST(Log, InstallingASinkReturnsTheOneBefore) {
    LogCollector outer;
    {
        LogCollector inner;
        EXPECT_EQ(SetLogSink(&inner), &inner);
        OmLog(L"to the inner one");
        EXPECT_EQ(inner.text, L"to the inner one");
    }
    OmLog(L"to the outer one");
    EXPECT_EQ(outer.text, L"to the outer one");
}

TEST(Log, BitsAreCutIntoLinesOf32WithAPlusWhereAnotherLineFollows) {
    const LinesCase cases[] = {
        {0, L""},
        {1, L"1\n"},
        {31, L"1000000000000000000000000000000\n"},
        {32, L"10000000000000000000000000000000\n"},
        {33, L"10000000000000000000000000000000+\n0\n"},
        {64, L"10000000000000000000000000000000+\n00000000000000000000000000000000\n"},
        {65, L"10000000000000000000000000000000+\n00000000000000000000000000000000+\n0\n"},
    };
    for (const LinesCase& row : cases) {
        LogCollector log;
        OmBitVector bits(row.bits, 0);
        if (!bits.empty())
            bits[0] = 1;
        OmLogBits(bits);
        EXPECT_EQ(log.text, row.text) << row.bits;
    }
}

TEST(Log, BitsShowUnknownAndReleasedElements) {
    LogCollector log;
    OmLogBits({0, 1, 'X', 'Z'});
    EXPECT_EQ(log.text, L"01XZ\n");
}
