#include "jtag/ConnectionSettings.h"

#include "tests/jtag/FakePortDriver.h"

#include <functional>
#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/sstream.h>

namespace {

// The store on a text in memory; remembers which entries were asked for.
class Store : public wxFileConfig {
  public:
    explicit Store(const std::string& content = {})
        : Store(wxStringInputStream(wxString::FromUTF8(content))) {}

    ~Store() override { wxConfigBase::Set(previous_); }

    std::string Content() {
        wxString content;
        wxStringOutputStream stream(&content);
        EXPECT_TRUE(Save(stream, wxConvUTF8));
        return content.utf8_string();
    }

    mutable std::vector<std::string> asked;

  protected:
    // Numbers are asked for as text too.
    bool DoReadString(const wxString& key, wxString* value) const override {
        asked.push_back(key.utf8_string());
        return wxFileConfig::DoReadString(key, value);
    }

  private:
    explicit Store(wxStringInputStream&& stream)
        : wxFileConfig(stream, wxConvUTF8), previous_(wxConfigBase::Set(this)) {}

    wxConfigBase* previous_;
};

OmConnectionSettings Load(const std::string& content) {
    FakePortDriver ports;
    ports->addresses = {0x378, 0x278, 0x3BC};
    Store store(content);
    OmConnectionSettings settings;
    settings.lptPort = 99; // must not survive
    LoadConnectionSettings(settings);
    return settings;
}

struct RangeCase {
    const char* key;
    long lowest;
    long highest;
    int32_t OmConnectionSettings::*member;
};

constexpr RangeCase kRanges[] = {
    {"ConnLptPort", 0, 2, &OmConnectionSettings::lptPort},
    {"ConnLptFreq", 1000, 200000, &OmConnectionSettings::lptFrequency},
    {"ConnFtd2xxFreq", 1000, 30000000, &OmConnectionSettings::ftd2xxFrequency},
    {"ConnJLinkUsbNum", 0, 3, &OmConnectionSettings::jlinkUsbNumber},
    {"ConnJLinkUsbFreq", 1000, 12000000, &OmConnectionSettings::jlinkUsbFrequency},
    {"ConnJLinkIPPort", 0, 65535, &OmConnectionSettings::jlinkIpPort},
    {"ConnJLinkIPFreq", 1000, 12000000, &OmConnectionSettings::jlinkIpFrequency},
};

using Change = std::function<void(OmConnectionSettings&)>;

struct ChangeCase {
    const char* name;
    Change change;
    std::vector<int> matters; // to these cable types
};

struct LptCase {
    int stored;
    std::array<uint16_t, 3> addresses;
    int fixed;
};

} // namespace

TEST(ConnectionSettings, DefaultsAreTheFactoryOnes) {
    OmConnectionSettings settings;
    settings.cableType = OmCableType::JLinkIp;
    settings.jlinkIpHost = "elsewhere";
    settings.ftd2xxIsHighSpeed = true;
    settings.ResetToDefaults();
    EXPECT_EQ(static_cast<int>(settings.cableType), 0);
    EXPECT_EQ(settings.lptPort, 0);
    EXPECT_EQ(settings.lptFrequency, 200000);
    EXPECT_EQ(settings.digilentId, "");
    EXPECT_EQ(settings.ftd2xxDescription, "");
    EXPECT_EQ(settings.ftd2xxSerial, "");
    EXPECT_EQ(settings.ftd2xxFrequency, 6000000);
    EXPECT_FALSE(settings.ftd2xxAdaptiveClocking);
    EXPECT_EQ(settings.ftd2xxGpioDir, 0x051B);
    EXPECT_EQ(settings.ftd2xxGpioValue, 0x010A);
    EXPECT_EQ(settings.ftd2xxGpioSchemeDesc, L"");
    EXPECT_EQ(settings.jlinkUsbNumber, 0);
    EXPECT_EQ(settings.jlinkUsbFrequency, 6000000);
    EXPECT_EQ(settings.jlinkIpHost, "localhost");
    EXPECT_EQ(settings.jlinkIpPort, 19020);
    EXPECT_EQ(settings.jlinkIpFrequency, 6000000);
    EXPECT_EQ(settings.usbBlasterDescription, "");
    EXPECT_EQ(settings.usbBlasterSerial, "");
    EXPECT_FALSE(settings.ftd2xxIsHighSpeed);
    EXPECT_TRUE(settings.IsValid());
}

TEST(ConnectionSettings, EmptyStoreGivesTheDefaults) {
    const OmConnectionSettings settings = Load("");
    EXPECT_EQ(settings.lptPort, 0);
    EXPECT_EQ(settings.jlinkIpHost, "localhost");
    EXPECT_EQ(settings.jlinkIpPort, 19020);
}

TEST(ConnectionSettings, SavingWritesEveryKeyAtTheRoot) {
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    settings.lptPort = 1;
    settings.lptFrequency = 150000;
    settings.digilentId = "DigilentUsb";
    settings.ftd2xxDescription = "Dual RS232 A";
    settings.ftd2xxSerial = "FT000001A";
    settings.ftd2xxFrequency = 15000000;
    settings.ftd2xxAdaptiveClocking = true;
    settings.ftd2xxGpioDir = 0xFFFF;
    settings.ftd2xxGpioValue = 0x8001;
    settings.ftd2xxGpioSchemeDesc = L"My pod";
    settings.jlinkUsbNumber = 3;
    settings.jlinkUsbFrequency = 12000000;
    settings.jlinkIpHost = "bench.example";
    settings.jlinkIpPort = 65535;
    settings.jlinkIpFrequency = 1000;
    settings.usbBlasterDescription = "USB-Blaster";
    settings.usbBlasterSerial = "91D28408";
    settings.ftd2xxIsHighSpeed = true;
    Store store;
    store.SetPath("/Elsewhere");
    SaveConnectionSettings(settings);
    EXPECT_EQ(store.Content(), "ConnCableType=6\n"
                               "ConnLptPort=1\n"
                               "ConnLptFreq=150000\n"
                               "ConnFtd2xxDesc=Dual RS232 A\n"
                               "ConnFtd2xxSerial=FT000001A\n"
                               "ConnFtd2xxFreq=15000000\n"
                               "ConnFtd2xxAdaptiveClocking=1\n"
                               "ConnFtd2xxGpioDir=65535\n"
                               "ConnFtd2xxGpioValue=32769\n"
                               "ConnFtd2xxGpioSchemeDesc=My pod\n"
                               "ConnDigilentID=DigilentUsb\n"
                               "ConnJLinkUsbNum=3\n"
                               "ConnJLinkUsbFreq=12000000\n"
                               "ConnJLinkIPHost=bench.example\n"
                               "ConnJLinkIPPort=65535\n"
                               "ConnJLinkIPFreq=1000\n"
                               "ConnUsbBlasterDesc=USB-Blaster\n"
                               "ConnUsbBlasterSerial=91D28408\n");
}

TEST(ConnectionSettings, LoadingReadsEveryKeyFromTheRoot) {
    const OmConnectionSettings settings = Load("ConnCableType=9\n"
                                               "ConnLptPort=2\n"
                                               "ConnLptFreq=1000\n"
                                               "ConnFtd2xxDesc=Dual RS232 A\n"
                                               "ConnFtd2xxSerial=FT000001A\n"
                                               "ConnFtd2xxFreq=30000000\n"
                                               "ConnFtd2xxAdaptiveClocking=1\n"
                                               "ConnFtd2xxGpioDir=1808\n"
                                               "ConnFtd2xxGpioValue=768\n"
                                               "ConnFtd2xxGpioSchemeDesc=Caf\xC3\xA9 pod\n"
                                               "ConnDigilentID=DigilentUsb\n"
                                               "ConnJLinkUsbNum=3\n"
                                               "ConnJLinkUsbFreq=1000\n"
                                               "ConnJLinkIPHost=bench.example\n"
                                               "ConnJLinkIPPort=0\n"
                                               "ConnJLinkIPFreq=12000000\n"
                                               "ConnUsbBlasterDesc=USB-Blaster\n"
                                               "ConnUsbBlasterSerial=91D28408\n");
    EXPECT_EQ(settings.cableType, OmCableType::AlteraUsbBlaster);
    EXPECT_EQ(settings.lptPort, 2);
    EXPECT_EQ(settings.lptFrequency, 1000);
    EXPECT_EQ(settings.digilentId, "DigilentUsb");
    EXPECT_EQ(settings.ftd2xxDescription, "Dual RS232 A");
    EXPECT_EQ(settings.ftd2xxSerial, "FT000001A");
    EXPECT_EQ(settings.ftd2xxFrequency, 30000000);
    EXPECT_TRUE(settings.ftd2xxAdaptiveClocking);
    EXPECT_EQ(settings.ftd2xxGpioDir, 0x0710);
    EXPECT_EQ(settings.ftd2xxGpioValue, 0x0300);
    EXPECT_EQ(settings.ftd2xxGpioSchemeDesc, L"Caf\u00E9 pod");
    EXPECT_EQ(settings.jlinkUsbNumber, 3);
    EXPECT_EQ(settings.jlinkUsbFrequency, 1000);
    EXPECT_EQ(settings.jlinkIpHost, "bench.example");
    EXPECT_EQ(settings.jlinkIpPort, 0);
    EXPECT_EQ(settings.jlinkIpFrequency, 12000000);
    EXPECT_EQ(settings.usbBlasterDescription, "USB-Blaster");
    EXPECT_EQ(settings.usbBlasterSerial, "91D28408");
    EXPECT_FALSE(settings.ftd2xxIsHighSpeed);
}

TEST(ConnectionSettings, KeysAreReadInOneOrder) {
    FakePortDriver ports;
    Store store;
    OmConnectionSettings settings;
    LoadConnectionSettings(settings);
    EXPECT_EQ(store.asked,
              (std::vector<std::string>{
                  "/ConnCableType", "/ConnLptPort", "/ConnLptFreq", "/ConnFtd2xxFreq",
                  "/ConnFtd2xxAdaptiveClocking", "/ConnFtd2xxGpioDir", "/ConnFtd2xxGpioValue",
                  "/ConnJLinkUsbNum", "/ConnJLinkUsbFreq", "/ConnJLinkIPPort", "/ConnJLinkIPFreq",
                  "/ConnDigilentID", "/ConnFtd2xxID", "/ConnFtd2xxDesc", "/ConnFtd2xxSerial",
                  "/ConnFtd2xxGpioSchemeDesc", "/ConnJLinkIPHost", "/ConnUsbBlasterDesc",
                  "/ConnUsbBlasterSerial"}));
}

TEST(ConnectionSettings, OldNameAloneFillsTheDescription) {
    EXPECT_EQ(Load("ConnFtd2xxID=Old pod\n").ftd2xxDescription, "Old pod");
}

TEST(ConnectionSettings, PresentNameWinsOverTheOldOne) {
    EXPECT_EQ(Load("ConnFtd2xxID=Old pod\nConnFtd2xxDesc=New pod\n").ftd2xxDescription, "New pod");
    EXPECT_EQ(Load("ConnFtd2xxID=Old pod\nConnFtd2xxDesc=\n").ftd2xxDescription, "");
}

TEST(ConnectionSettings, TextIsTakenLiterally) {
    EXPECT_EQ(Load("ConnDigilentID=$HOME ${HOME} %PATH%\n").digilentId, "$HOME ${HOME} %PATH%");
}

TEST(ConnectionSettings, WithoutAStoreLoadingGivesDefaultsAndSavingDoesNothing) {
    FakePortDriver ports;
    wxConfigBase* previous = wxConfigBase::Set(nullptr);
    wxConfigBase::DontCreateOnDemand();
    OmConnectionSettings settings;
    settings.jlinkIpPort = 1;
    LoadConnectionSettings(settings);
    SaveConnectionSettings(settings);
    EXPECT_EQ(settings.jlinkIpPort, 19020);
    wxConfigBase::Set(previous);
}

TEST(ConnectionSettings, EachNumberIsValidUpToTheEndsOfItsRange) {
    for (const RangeCase& row : kRanges) {
        for (const long value : {row.lowest, row.highest}) {
            const auto text = std::string(row.key) + "=" + std::to_string(value) + "\n";
            EXPECT_EQ(Load(text).*row.member, value) << text;
        }
    }
}

TEST(ConnectionSettings, AnyNumberOutOfRangeResetsTheWholeRecord) {
    for (const RangeCase& row : kRanges) {
        const long outside[] = {row.lowest - 1, row.highest + 1, 4294967296 + row.lowest};
        for (const long value : outside) {
            const auto text = std::string(row.key) + "=" + std::to_string(value) +
                              "\nConnDigilentID=lost\nConnCableType=5\n";
            const OmConnectionSettings settings = Load(text);
            EXPECT_EQ(settings.digilentId, "") << text;
            EXPECT_EQ(settings.cableType, OmCableType::XilinxParallelCable3) << text;
            EXPECT_EQ(settings.*row.member, OmConnectionSettings().*row.member) << text;
        }
    }
}

TEST(ConnectionSettings, CableTypeIsValidFrom0To9) {
    EXPECT_EQ(static_cast<int>(Load("ConnCableType=9\n").cableType), 9);
    EXPECT_EQ(Load("ConnCableType=10\nConnLptFreq=1000\n").lptFrequency, 200000);
    EXPECT_EQ(Load("ConnCableType=-1\nConnLptFreq=1000\n").lptFrequency, 200000);
}

TEST(ConnectionSettings, Ft2232WithoutADeviceNameIsValid) {
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    EXPECT_TRUE(settings.IsValid());
}

TEST(ConnectionSettings, EmbestEasyIceIsStoredAsItWasChosen) {
    Store store;
    OmConnectionSettings settings;
    settings.cableType = OmCableType::EmbestEasyIce;
    SaveConnectionSettings(settings);
    EXPECT_TRUE(store.Content().starts_with("ConnCableType=4\n"));
    EXPECT_EQ(Load("ConnCableType=4\n").cableType, OmCableType::EmbestEasyIce);
}

TEST(ConnectionSettings, ConnectionIsTheSameWhileNothingThatMattersToItsCableChanges) {
    using S = OmConnectionSettings;
    const ChangeCase cases[] = {
        {"lptPort", [](S& s) { s.lptPort = 1; }, {0, 1, 2, 3, 4}},
        {"lptFrequency", [](S& s) { s.lptFrequency = 1000; }, {0, 1, 2, 3, 4}},
        {"digilentId", [](S& s) { s.digilentId = "x"; }, {5}},
        {"ftd2xxDescription", [](S& s) { s.ftd2xxDescription = "x"; }, {6}},
        {"ftd2xxSerial", [](S& s) { s.ftd2xxSerial = "x"; }, {6}},
        {"ftd2xxFrequency", [](S& s) { s.ftd2xxFrequency = 1000; }, {6}},
        {"ftd2xxAdaptiveClocking", [](S& s) { s.ftd2xxAdaptiveClocking = true; }, {6}},
        {"ftd2xxGpioDir", [](S& s) { s.ftd2xxGpioDir = 1; }, {6}},
        {"ftd2xxGpioValue", [](S& s) { s.ftd2xxGpioValue = 1; }, {6}},
        {"ftd2xxGpioSchemeDesc", [](S& s) { s.ftd2xxGpioSchemeDesc = L"x"; }, {6}},
        {"jlinkUsbNumber", [](S& s) { s.jlinkUsbNumber = 1; }, {7}},
        {"jlinkUsbFrequency", [](S& s) { s.jlinkUsbFrequency = 1000; }, {7}},
        {"jlinkIpHost", [](S& s) { s.jlinkIpHost = "x"; }, {8}},
        {"jlinkIpPort", [](S& s) { s.jlinkIpPort = 1; }, {8}},
        {"jlinkIpFrequency", [](S& s) { s.jlinkIpFrequency = 1000; }, {8}},
        {"usbBlasterDescription", [](S& s) { s.usbBlasterDescription = "x"; }, {9}},
        {"usbBlasterSerial", [](S& s) { s.usbBlasterSerial = "x"; }, {9}},
        {"ftd2xxIsHighSpeed", [](S& s) { s.ftd2xxIsHighSpeed = true; }, {}},
    };
    for (const ChangeCase& row : cases) {
        for (int type = 0; type < 10; ++type) {
            S before;
            before.cableType = static_cast<OmCableType>(type);
            S after = before;
            row.change(after);
            const bool same =
                std::find(row.matters.begin(), row.matters.end(), type) == row.matters.end();
            EXPECT_EQ(before.SameConnection(after), same) << row.name << " of type " << type;
            EXPECT_EQ(after.SameConnection(before), same) << row.name << " of type " << type;
        }
    }
}

TEST(ConnectionSettings, AnotherCableTypeIsAnotherConnection) {
    OmConnectionSettings wiggler;
    wiggler.cableType = OmCableType::Wiggler;
    OmConnectionSettings easyIce;
    easyIce.cableType = OmCableType::EmbestEasyIce;
    EXPECT_FALSE(wiggler.SameConnection(easyIce));
}

TEST(ConnectionSettings, MissingPortIsReplacedByTheLowestThatExists) {
    const LptCase cases[] = {
        {0, {0x378, 0x278, 0x3BC}, 0},
        {1, {0x378, 0x278, 0}, 1},
        {2, {0x378, 0x278, 0x3BC}, 2},
        {2, {0, 0x278, 0}, 1},
        {0, {0, 0, 0x3BC}, 2},
        {0, {0, 0x278, 0x3BC}, 1},
        {1, {0x378, 0, 0x3BC}, 0},
        {2, {0x378, 0x278, 0}, 0},
        {1, {0, 0, 0}, 0},
        {2, {0, 0, 0}, 0},
    };
    for (const LptCase& row : cases) {
        for (int type = 0; type < 5; ++type) {
            FakePortDriver ports;
            ports->addresses = row.addresses;
            OmConnectionSettings settings;
            settings.cableType = static_cast<OmCableType>(type);
            settings.lptPort = row.stored;
            settings.FixLptPort();
            EXPECT_EQ(settings.lptPort, row.fixed) << row.stored << " of type " << type;
        }
    }
}

TEST(ConnectionSettings, WithoutAPortDriverThePortBecomesTheFirst) {
    FakePortDriver ports;
    ports->absent = true;
    OmConnectionSettings settings;
    settings.lptPort = 2;
    settings.FixLptPort();
    EXPECT_EQ(settings.lptPort, 0);
}

TEST(ConnectionSettings, PortOfAnotherKindOfCableIsLeftAlone) {
    for (int type = 5; type < 10; ++type) {
        FakePortDriver ports;
        OmConnectionSettings settings;
        settings.cableType = static_cast<OmCableType>(type);
        settings.lptPort = 2;
        settings.FixLptPort();
        EXPECT_EQ(settings.lptPort, 2) << type;
        EXPECT_TRUE(ports->opened.empty()) << type;
    }
}

TEST(ConnectionSettings, LoadingFixesThePort) {
    FakePortDriver ports;
    ports->addresses = {0, 0x278, 0};
    Store store("ConnLptPort=2\n");
    OmConnectionSettings settings;
    LoadConnectionSettings(settings);
    EXPECT_EQ(settings.lptPort, 1);
}
