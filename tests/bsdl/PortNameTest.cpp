#include "bsdl/PortName.h"

#include <gtest/gtest.h>

TEST(PortName, SplitTakesAnIndexInParenthesesAtTheEnd) {
    const struct {
        const char* text;
        const char* name;
        int index;
    } cases[] = {{"DATA(3)", "DATA", 3}, {"DATA", "DATA", -1},   {"A(12)", "A", 12},
                 {"A(x)", "A", -1},      {"A(3)B", "A(3)B", -1}, {"A)", "A)", -1},
                 {"A(1)(2)", "A", 1},    {"", "", -1},           {"A()", "A", -1},
                 {"(5)", "", 5}};

    for (const auto& row : cases) {
        std::string name = "before";
        int index = 99;
        SplitPortName(row.text, name, index);
        EXPECT_EQ(name, row.name) << row.text;
        EXPECT_EQ(index, row.index) << row.text;
    }
}
