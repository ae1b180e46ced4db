#include "widgets/BoxText.h"

#include <gtest/gtest.h>

TEST(BoxText, ShortTextStaysAsItIs) {
    for (const wchar_t* text : {L"", L"Saved.", L"one\ntwo\n\nthree\n", L"a  b "})
        EXPECT_EQ(FitIntoBox(text), text);
    const std::wstring widest(90, L'w');
    EXPECT_EQ(FitIntoBox(widest), widest);
}

TEST(BoxText, LongLineBreaksBetweenWords) {
    const std::wstring words(80, L'a');
    EXPECT_EQ(FitIntoBox(words + L" bbbbbbbbb cc"), words + L" bbbbbbbbb \ncc");
    EXPECT_EQ(FitIntoBox(words + L" bbbbbbbbbb"), words + L" \nbbbbbbbbbb");
}

TEST(BoxText, LongWordBreaksAnywhere) {
    const std::wstring row(90, L'p');
    EXPECT_EQ(FitIntoBox(row + row + L"p'."), row + L"\n" + row + L"\np'.");
}

TEST(BoxText, MiddleOfAnEndlessLineIsLeftOut) {
    const std::wstring fitted = FitIntoBox(L"Cannot load '" + std::wstring(1 << 20, L'7') + L"'.");
    EXPECT_LT(fitted.size(), 1000u);
    EXPECT_EQ(fitted.substr(0, 15), L"Cannot load \n'7");
    EXPECT_NE(fitted.find(L" ... "), std::wstring::npos);
    EXPECT_EQ(fitted.substr(fitted.size() - 3), L"7'.");
}

TEST(BoxText, MiddleOfAnEndlessListIsLeftOut) {
    std::wstring list;
    for (int i = 0; i < 1000; ++i)
        list += L"name\n";
    std::wstring expected;
    for (int i = 0; i < 30; ++i)
        expected += L"name\n";
    expected += L"...\nname\nname\nname\nname\n\nReplace?";
    EXPECT_EQ(FitIntoBox(list + L"\nReplace?"), expected);
}
