#include "setup/ChainItemText.h"

#include "bsdl/Idcode.h"
#include "tests/setup/PinDevice.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

const std::wstring kHead =
    L"<font size=\"2\"><table cellspacing=\"0\" cellpadding=\"0\"><tr><td nowrap>";
const std::wstring kMiddle =
    L"</td></tr></table><table cellspacing=\"2\" cellpadding=\"0\" width=\"100%\"><tr><td "
    L"width=\"20\">&nbsp;</td><td><table cellspacing=\"2\" cellpadding=\"0\">";
const std::wstring kTail = L"</table></td></tr></table></font>";

OmBitVector MakeIdcode(uint32_t code) {
    OmBitVector bits;
    for (int bit = 0; bit < 32; ++bit)
        bits.push_back((code >> bit) & 1);
    return bits;
}

bool Has(const std::wstring& text, const std::wstring& piece) {
    return text.find(piece) != std::wstring::npos;
}

} // namespace

TEST(ChainItemText, DeviceOfWhichNothingIsKnown) {
    EXPECT_EQ(FormatChainItem(OmChainDevice(), 0),
              kHead + L"1. (idcode is n/a)" + kMiddle +
                  L"<tr><td nowrap>BSDL file</td><td nowrap>: <a href=\"bsdl_0\">CLICK HERE TO "
                  L"SET</a></td></tr>\n"
                  L"<tr><td nowrap>BSDL pin map</td><td nowrap>: <font color=\"grey\">(set the "
                  L"BSDL file first)</font></td></tr>\n"
                  L"<tr><td nowrap>IR length</td><td nowrap>: <a href=\"irlen_0\">CLICK HERE TO "
                  L"SET</a></td></tr>\n" +
                  kTail);
}

TEST(ChainItemText, DeviceOfWhichEverythingIsKnown) {
    const TemporaryFolder folder;
    SetManufacturerTablePath(folder.Write("mfrid.dat", "[Bank 1]\n00011111 Atmel\n"));
    OmChainDevice device = MakePinDevice();
    device.Idcode = MakeIdcode(0x0940303F);
    EXPECT_EQ(FormatChainItem(device, 2),
              kHead + L"3. Atmel (0940303Fh)" + kMiddle +
                  L"<tr><td nowrap>BSDL file</td><td nowrap>: <a href=\"bsdl_2\">chip "
                  L"(chip.bsd)</a></td></tr>\n"
                  L"<tr><td nowrap>BSDL pin map</td><td nowrap>: <a "
                  L"href=\"pinmap_2\">BGA</a></td></tr>\n"
                  L"<tr><td nowrap>IR length</td><td nowrap>: <font "
                  L"color=\"grey\">4</font></td></tr>\n" +
                  kTail);
    SetManufacturerTablePath("");
}

TEST(ChainItemText, PinMapThatIsNotChosen) {
    OmChainDevice device = MakePinDevice();
    device.PinMapping.clear();
    EXPECT_TRUE(
        Has(FormatChainItem(device, 0), L": <a href=\"pinmap_0\">CLICK HERE TO CHOOSE</a>"));
}

TEST(ChainItemText, IrLengthThatWasEnteredCanBeChanged) {
    OmChainDevice device;
    device.IRLen = 5;
    EXPECT_TRUE(Has(FormatChainItem(device, 0), L": <a href=\"irlen_0\">5</a>"));
    EXPECT_TRUE(CanEnterIrLength(device));
}

TEST(ChainItemText, IrLengthThatWasDetectedCannot) {
    OmChainDevice device;
    device.resolvedIRLen = 8;
    EXPECT_TRUE(Has(FormatChainItem(device, 0), L": <font color=\"grey\">8</font>"));
    EXPECT_FALSE(CanEnterIrLength(device));
}

TEST(ChainItemText, NamesFromFilesAreNoMarkup) {
    OmChainDevice device = MakePinDevice();
    device.BsdlFile = "/boards/<b>&.bsd";
    device.PinMapping = "<i>";
    const std::wstring item = FormatChainItem(device, 0);
    EXPECT_TRUE(Has(item, L"chip (&lt;b&gt;&amp;.bsd)"));
    EXPECT_TRUE(Has(item, L"&lt;i&gt;"));
}

TEST(ChainItemText, LinksLeadToActions) {
    const struct {
        const wchar_t* href;
        OmChainAction action;
        int device;
    } cases[] = {{L"bsdl_0", OmChainAction::Bsdl, 0},
                 {L"pinmap_12", OmChainAction::PinMap, 12},
                 {L"irlen_199", OmChainAction::IrLength, 199}};

    for (const auto& c : cases) {
        const std::optional<OmChainLink> link = ParseChainLink(c.href);
        ASSERT_TRUE(link) << c.href;
        EXPECT_EQ(link->action, c.action);
        EXPECT_EQ(link->device, c.device);
    }
    for (const wchar_t* other :
         {L"", L"bsdl_", L"bsdl_x", L"bsdl_-1", L"bsdl_99999999999", L"http://x", L"irlen1"})
        EXPECT_FALSE(ParseChainLink(other)) << other;
}
