#include "dialogs/FlashReportPage.h"

#include "bsdl/Idcode.h"

#include <gtest/gtest.h>

namespace {

// A CFI table that ends at query address `end` and tells 2.7 V.
OmCfiBuffer TableUpTo(uint8_t end, uint8_t primarySet) {
    OmCfiBuffer table(kCfiRegions);
    table[kCfiPrimarySet] = primarySet;
    table[kCfiPrimaryTable] = end;
    table[kCfiVoltages] = 0x27;
    return table;
}

} // namespace

TEST(FlashReportPage, FlashThatAnswersNothingStillGetsAPage) {
    SetManufacturerTablePath("");
    EXPECT_EQ(MakeFlashReportPage(MakeFlashReport(OmCommandSet::Unknown, 2, {{}})),
              L"<html><body><center>\n"
              L"<table border=0 cellspacing=1 cellpadding=4 bgcolor=#d0cdbc>\n"
              L"<tr bgcolor=#ffffff><td width=270 align=center><b>Parameter</b></td>"
              L"<td width=120 align=center><b>Chip 1 / D15-D0</b></td></tr>\n"
              L"<tr bgcolor=#f0f0f0><td width=270>Detected Command Set</td>"
              L"<td colspan=1 align=center><font color=\"#ce0022\">Unknown</font></td></tr>\n"
              L"<tr bgcolor=#ffffff><td width=270>Manufacturer</td>"
              L"<td width=120 align=center>00h (Unknown)</td></tr>\n"
              L"<tr bgcolor=#f0f0f0><td width=270>Device Code</td>"
              L"<td width=120 align=center>00h</td></tr>\n"
              L"<tr bgcolor=#ffffff><td width=270>Common Flash Interface (CFI) Compliant</td>"
              L"<td width=120 align=center>No</td></tr>\n"
              L"</table>\n"
              L"</center></body></html>");
}

TEST(FlashReportPage, ChipsWithDifferentTablesHaveDifferentColumns) {
    const std::wstring page = MakeFlashReportPage(
        MakeFlashReport(OmCommandSet::AmdWord, 1,
                        {{0x01, 0x7E, TableUpTo(28, 2)}, {0x01, 0x7F, TableUpTo(27, 3)}}));
    EXPECT_NE(
        page.find(L"<b>Chip 1 / D7-D0</b></td><td width=120 align=center><b>Chip 2 / D15-D8</b>"),
        std::wstring::npos);
    EXPECT_NE(page.find(L"<td colspan=2 align=center>AMD (Word-by-Word Prog.)</td>"),
              std::wstring::npos);
    EXPECT_NE(page.find(L"<td width=120 align=center>7Eh</td><td width=120 align=center>7Fh</td>"),
              std::wstring::npos);
    const size_t second = page.find(L"<br><br>Common");
    ASSERT_NE(second, std::wstring::npos);
    EXPECT_EQ(page.substr(second),
              L"<br><br>Common Flash Interface (CFI) Information\n"
              L"<table border=0 cellspacing=1 cellpadding=4 bgcolor=#d0cdbc>\n"
              L"<tr bgcolor=#f0f0f0><td width=270>Primary Command Set</td>"
              L"<td width=120 align=center>AMD/Fujitsu Std</td>"
              L"<td width=120 align=center>Intel Std</td></tr>\n"
              L"<tr bgcolor=#ffffff><td width=270>Alternative Command Set</td>"
              L"<td width=120 align=center>N/A</td><td width=120 align=center>N/A</td></tr>\n"
              L"<tr bgcolor=#f0f0f0><td width=270>Vcc Min Program/Erase Voltage</td>"
              L"<td width=120 align=center>2.7 V</td><td width=120 align=center></td></tr>\n"
              L"</table>\n</center></body></html>");
}

TEST(FlashReportPage, LinesOfAValueAreBroken) {
    OmFlashReport report = MakeFlashReport(OmCommandSet::AmdWord, 1, {{}});
    report.cfi = {{L"Sectors", {L"8 x 8192 Bytes,\n127 x 65536 Bytes"}}};
    EXPECT_NE(MakeFlashReportPage(report).find(
                  L"<td width=270>Sectors</td>"
                  L"<td width=120 align=center>8 x 8192 Bytes,<br>127 x 65536 Bytes</td></tr>\n"),
              std::wstring::npos);
}
