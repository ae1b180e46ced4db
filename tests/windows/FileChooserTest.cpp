#include "widgets/FileChooser.h"

#include <gtest/gtest.h>

TEST(FileChooser, NameWithoutExtensionTakesTheFiltersFirst) {
    const wxString filter = "S-record (*.srec;*.mot;*.S19)|*.srec;*.mot;*.S19|"
                            "Intel HEX (*.hex)|*.hex|All Files (*.*)|*.*|Everything|*";

    const struct {
        const char* typed;
        int filter;
        const char* completed;
    } cases[] = {
        {"/home/a/data", 0, "/home/a/data.srec"},    {"/home/a/data", 1, "/home/a/data.hex"},
        {"/home/a/data", 2, "/home/a/data"},         {"/home/a/data", 3, "/home/a/data"},
        {"/home/a/data", 4, "/home/a/data"},         {"/home/a/data", -1, "/home/a/data"},
        {"/home/a/data.bin", 1, "/home/a/data.bin"}, {"/home/a.b/data", 1, "/home/a.b/data.hex"},
    };

    for (const auto& test : cases)
        EXPECT_EQ(AddFilterExtension(test.typed, filter, test.filter), test.completed)
            << test.typed << " " << test.filter;
}
