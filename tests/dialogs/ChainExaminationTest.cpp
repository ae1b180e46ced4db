// What the chain wizard says, as it stands in its page.
#include "dialogs/ChainExamination.h"

#include "bsdl/Idcode.h"
#include "tests/support/GermanLocale.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/Languages.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kTableHead[] =
    L"<table width=\"100%\" bgcolor=\"#b4ce86\">\n"
    L"<tr bgcolor=\"#5479d3\"><td width=\"8%\"><font color=\"#ffffff\"><b>#</b></font></td>"
    L"<td width=\"62%\"><font color=\"#ffffff\"><b>Manufacturer</b></font></td>"
    L"<td width=\"30%\"><font color=\"#ffffff\"><b>IDCODE</b></font></td></tr>\n";

std::wstring DeviceRow(const std::wstring& number, const std::wstring& manufacturer,
                       const std::wstring& idcode) {
    const auto cell = [](const std::wstring& text) {
        return L"<td><font color=\"#000000\">" + text + L"</font></td>";
    };
    return L"<tr>" + cell(number) + cell(manufacturer) + cell(idcode) + L"</tr>\n";
}

OmBitVector Idcode(uint32_t value) {
    OmBitVector bits;
    for (int bit = 0; bit < 32; ++bit)
        bits.push_back((value >> bit) & 1);
    return bits;
}

} // namespace

TEST(ChainPage, WithoutDevicesSaysThatThereIsNoChain) {
    EXPECT_EQ(MakeChainPage({}, false),
              L"<html><body><center><strong><font size=\"+1\" color=\"#9d2900\"><br><br><br><br>No "
              L"JTAG chain detected</font></strong></center></body></html>");
}

TEST(ChainPage, OfOneDeviceSpeaksOfOne) {
    EXPECT_EQ(
        MakeChainPage({{L"ARM", L"4BA00477"}}, false),
        std::wstring(L"<html><body>\n<center>1 JTAG device was detected:</center><br><br>\n") +
            kTableHead + DeviceRow(L"1", L"ARM", L"4BA00477h") + L"</table></body></html>");
}

TEST(ChainPage, ListsDevicesWithoutIdcodeOrKnownManufacturer) {
    EXPECT_EQ(
        MakeChainPage({{L"ARM", L"4BA00477"}, {L"", L"10000001"}, {L"", L""}}, false),
        std::wstring(L"<html><body>\n<center>3 JTAG devices were detected:</center><br><br>\n") +
            kTableHead + DeviceRow(L"1", L"ARM", L"4BA00477h") +
            DeviceRow(L"2", L"", L"10000001h") + DeviceRow(L"3", L"", L"n/a") +
            L"</table></body></html>");
}

TEST(ChainPage, WithAHiddenBeginningSaysWhyAndAsks) {
    EXPECT_EQ(
        MakeChainPage({{L"Atmel", L"0940303F"}, {L"", L""}}, true),
        std::wstring(
            L"<html><body>\n<center>At least 2 JTAG devices were detected:</center><br><br>\n") +
            kTableHead +
            L"<tr bgcolor=\"#ce0022\"><td colspan=\"3\"><font color=\"#ffffff\">Devices at the "
            L"beginning of the chain cannot be detected due to the ATMEL ATmega "
            L"bug.</font></td></tr>\n" +
            DeviceRow(L"1", L"Atmel", L"0940303Fh") + DeviceRow(L"2", L"", L"n/a") +
            L"</table><br><br><font>The detected JTAG chain contains the ATMEL ATmega device that "
            L"has "
            L"a known bug in its TAP controller implementation*. The bug makes it impossible to "
            L"detect devices located in the JTAG chain before the ATMEL ATmega device. In order to "
            L"continue please manually specify a number of devices in the JTAG chain preceding the "
            L"Atmel 0940303Fh device.</font><br>\n<br>* For more information on this bug, search "
            L"for the 'IDCODE masks data from TDI input' in the ATMEL ATmega datasheet.\n"
            L"</body></html>");
}

TEST(ChainPage, OfOneDeviceBehindAHiddenBeginningSaysAtLeast) {
    EXPECT_NE(MakeChainPage({{L"Atmel", L"0940303F"}}, true)
                  .find(L"<center>At least 1 JTAG device was detected:</center>"),
              std::wstring::npos);
}

TEST(ChainPage, ShowsANameThatLooksLikeMarkup) {
    const std::wstring page = MakeChainPage({{L"A&T <b> Co", L"10000001"}}, true);
    EXPECT_NE(page.find(DeviceRow(L"1", L"A&amp;T &lt;b&gt; Co", L"10000001h")),
              std::wstring::npos);
    EXPECT_NE(page.find(L"preceding the A&amp;T &lt;b&gt; Co 10000001h device."),
              std::wstring::npos);
}

TEST(ChainPage, IsWholeInGerman) {
    const GermanLocale machine;
    const InLanguage german("de");
    const std::wstring page = MakeChainPage({{L"Atmel", L"0940303F"}, {L"", L""}}, true);
    for (const wchar_t* english : {L"At least", L"detected", L"Manufacturer", L"beginning",
                                   L"preceding", L"information on this"})
        EXPECT_EQ(page.find(english), std::wstring::npos) << std::string(english, english + 4);
}

TEST(ChainRows, TellManufacturerAndIdcode) {
    const TemporaryFolder folder;
    SetManufacturerTablePath(folder.Write("names.dat", "00011111 Atmel\n"));
    const std::vector<OmBitVector> devices = {Idcode(0x0940303F), Idcode(0x10000001), {0}, {}};
    const std::vector<OmChainRow> rows = DescribeChain(devices);
    SetManufacturerTablePath("");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].manufacturer, L"Atmel");
    EXPECT_EQ(rows[0].idcode, L"0940303F");
    EXPECT_EQ(rows[1].manufacturer, L"");
    EXPECT_EQ(rows[1].idcode, L"10000001");
    EXPECT_EQ(rows[2].manufacturer + rows[2].idcode, L"");
    EXPECT_EQ(rows[3].manufacturer + rows[3].idcode, L"");
}

TEST(PrecedingDevices, AreAskedForByTheFirstDevice) {
    EXPECT_EQ(MakePrecedingLabel({L"Atmel", L"0940303F"}),
              L"Number of devices preceding Atmel 0940303Fh:");
}

TEST(PrecedingDevices, HaveNoIdcodeAndComeFirst) {
    std::vector<OmBitVector> devices = {Idcode(0x0940303F), {0}};
    InsertPrecedingDevices(devices, 0);
    EXPECT_EQ(devices.size(), 2u);
    InsertPrecedingDevices(devices, 2);
    EXPECT_EQ(devices, (std::vector<OmBitVector>{{}, {}, Idcode(0x0940303F), {0}}));
}
