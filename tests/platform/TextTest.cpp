#include "platform/Text.h"

#include <gtest/gtest.h>

TEST(Text, FormatsTextOfAnyLength) {
    const std::string longText(5000, 'x');
    EXPECT_EQ(OmFormat("<%s>", longText.c_str()), "<" + longText + ">");
    const std::wstring longWide(5000, L'x');
    EXPECT_EQ(OmFormat(L"<%ls>", longWide.c_str()), L"<" + longWide + L">");
}

TEST(Text, FormatsNumbersAsPrintfDoes) {
    EXPECT_EQ(OmFormat("%05Xh", 0x1234), "01234h");
    EXPECT_EQ(OmFormat(L"%02u:%02u", 1, 5), L"01:05");
}

TEST(Text, AsciiGoesThroughTheLocalEncodingUnchanged) {
    EXPECT_EQ(ToLocal(L"boot loader.srec"), "boot loader.srec");
    EXPECT_EQ(FromLocal("boot loader.srec"), L"boot loader.srec");
    EXPECT_EQ(ToLocal(L""), "");
    EXPECT_EQ(FromLocal(""), L"");
}

TEST(Text, BytesThatAreNoTextKeepTheReadablePart) {
    EXPECT_EQ(FromLocal("a\xff\xfe.bin").front(), L'a');
    EXPECT_NE(FromLocal("a\xff\xfe.bin").find(L".bin"), std::wstring::npos);
}
