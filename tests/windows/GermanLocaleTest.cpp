// A German machine: the texts change with the language, numbers and files do not.
#include "tests/support/GermanLocale.h"
#include "bsdl/BsdlData.h"
#include "bsdl/BsdlReport.h"
#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "flash/FlashInfo.h"
#include "flash/FlashProgrammer.h"
#include "jtag/FrequencyText.h"
#include "platform/Text.h"
#include "setup/SetupFile.h"
#include "tests/windows/MainWindow.h"
#include "tests/windows/support/Languages.h"

#include <wx/fileconf.h>
#include <wx/sstream.h>

namespace {

class GermanMachine : public testing::Test {
  protected:
    TemporaryFolder folder_;
    GermanLocale locale_;
    InLanguage language_{""}; // the one that the environment asks for
};

constexpr char kEmptySetup[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<OmbrineFlash Version="1">
 <Chain IRCapture=""/>
 <Pins/>
 <Flash ChipCount="-1" WordSize="-1" AddrCmdShift="-1"/>
 <Algorithm CmdSet="0" UseBufferedProg="1" DontCheckStatus="0"/>
 <AMD UseUnlockBypass="0"/>
 <Sectors/>
</OmbrineFlash>
)";

} // namespace

TEST_F(GermanMachine, FrequenciesHaveADecimalPoint) {
    EXPECT_EQ(FormatFrequency(7500000), L"7.5 MHz");
    EXPECT_EQ(ParseFrequency(L"3.75 MHz", 0, 30000000), 3750000);
    EXPECT_EQ(ParseFrequency(L"3,75 MHz", 0, 30000000), -1);
}

TEST_F(GermanMachine, FilesAreTheSameAsEverywhere) {
    OmDataImage image;
    const uint8_t bytes[] = {0x11, 0x22};
    image.SetBytes(0x1000, bytes);
    ASSERT_TRUE(WriteSRecordFile(folder_.Path("a.srec"), image));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.srec")), "S0030000FC\nS10510001122B7\nS9030000FC\n");
    ASSERT_TRUE(WriteIntelHexFile(folder_.Path("a.hex"), image));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.hex")), ":021000001122BB\n:00000001FF\n");
    ASSERT_TRUE(SaveSetupXml({}, FromLocal(folder_.Path("a.velflash"))));
    EXPECT_EQ(ReadWholeFile(folder_.Path("a.velflash")), kEmptySetup);
}

TEST_F(GermanMachine, SettingsAreTheSameAsEverywhere) {
    wxFileConfig store("test", "test", folder_.Path("settings"), wxString(),
                       wxCONFIG_USE_LOCAL_FILE);
    wxConfigBase* previous = wxConfigBase::Set(&store);
    OmConnectionSettings settings;
    settings.ftd2xxFrequency = 7500000;
    SaveConnectionSettings(settings);
    OmConnectionSettings loaded;
    LoadConnectionSettings(loaded);
    wxConfigBase::Set(previous);
    EXPECT_EQ(loaded.ftd2xxFrequency, 7500000);
    EXPECT_EQ(store.Read("/ConnFtd2xxFreq", ""), "7500000");
}

TEST_F(GermanMachine, FlashReportIsInGermanWithADecimalPoint) {
    EXPECT_EQ(GetCfiRowLabel(2), L"Minimale Programmier-/Löschspannung Vcc");
    OmCfiBuffer cfi(0x30, 0);
    cfi[11] = 0x27;
    cfi[15] = 4;
    const std::vector<std::wstring> values = FormatCfiRows(cfi);
    ASSERT_GT(values.size(), 6u);
    EXPECT_EQ(values[2], L"2.7 V");
    EXPECT_EQ(values[6], L"16 µs");
    const OmFlashReport report = MakeFlashReport(OmCommandSet::AmdWord, 2, {{0x01, 0x7E, {}}});
    EXPECT_EQ(report.chips.front().label, L"Hersteller");
}

// It is 8-bit text until the window shows it.
TEST_F(GermanMachine, BsdlReportKeepsItsUmlauts) {
    OmBsdlData data;
    data.entity = "chip";
    const std::wstring report = FromLocal(FormatBsdlReport(data));
    EXPECT_NE(report.find(L"Name des Bauteils: chip\n"), std::wstring::npos);
    EXPECT_NE(report.find(L"Länge des Instruktionsregisters: unbekannt\n"), std::wstring::npos);
}
