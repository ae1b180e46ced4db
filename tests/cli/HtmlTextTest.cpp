#include "cli/HtmlText.h"

#include <gtest/gtest.h>

namespace {

TEST(HtmlText, RowsAreLinesAndCellsStandInColumns) {
    EXPECT_EQ(HtmlToText(L"<html><body><center>\n<table border=1>\n"
                         L"<tr bgcolor=#ffffff><td width=270><b>Parameter</b></td>"
                         L"<td>Chip 1</td><td>Chip 2</td></tr>\n"
                         L"<tr><td>Code</td><td>22h</td><td>7Eh</td></tr>\n"
                         L"<tr><td>Sectors</td><td>8 x 8192,<br>4 x 65536</td><td></td></tr>\n"
                         L"</table></center></body></html>"),
              L"Parameter  Chip 1               Chip 2\n"
              L"Code       22h                  7Eh\n"
              L"Sectors    8 x 8192, 4 x 65536  \n");
}

TEST(HtmlText, TextBetweenTablesIsALineOfItsOwn) {
    EXPECT_EQ(HtmlToText(L"<table><tr><td>a</td></tr></table><br><br>Title\n<table>"
                         L"<tr><td colspan=2>b</td></tr></table>"),
              L"a\n\nTitle\nb\n");
}

TEST(HtmlText, EntitiesAndTagsOfStyleAreResolved) {
    EXPECT_EQ(HtmlToText(L"<tr><td><font color=\"#ce0022\">1 &lt; 2 &amp;&amp; 3 &gt; 2</font></td>"
                         L"</tr>"),
              L"1 < 2 && 3 > 2\n");
}

TEST(HtmlText, BrokenTextEnds) {
    EXPECT_EQ(HtmlToText(L""), L"");
    EXPECT_EQ(HtmlToText(L"<"), L"");
    EXPECT_EQ(HtmlToText(L"a<td"), L"a\n");
    EXPECT_EQ(HtmlToText(L"&lt"), L"&lt\n");
}

} // namespace
