// Several pods on one machine: which of them a cable opens.
#include "tests/cables/CableBench.h"
#include "virtualboard/CurrentBoard.h"
#include "virtualboard/UsbHost.h"

namespace {

constexpr const char* kPods = "pod FT232R description=Serial serial=R1\n"                    // 0
                              "pod USB-Blaster description=USB-Blaster serial=B1 open=yes\n" // 1
                              "pod FT2232C description=\"Dual B\" serial=D1B\n"              // 2
                              "pod FT2232H description=Held serial=H1 open=yes\n"            // 3
                              "pod FT2232C description=\"Dual A\" serial=D1A\n"              // 4
                              "pod FT2232H description=Twin serial=T1\n"                     // 5
                              "pod FT2232H description=Twin serial=T2\n"                     // 6
                              "pod USB-Blaster description=Second serial=B2\n"               // 7
                              "pod USB-Blaster description=Third serial=B3\n"                // 8
                              "pod USB-Blaster description=Third serial=B4";                 // 9

constexpr int kNone = -1;

struct ChoiceCase {
    const char* description;
    const char* serial;
    int opened;
};

// The device that is open now, or kNone.
int OpenDevice() {
    vb::UsbHost& host = *vb::CurrentUsbHost();
    int open = kNone;
    for (size_t i = 0; i < host.DeviceCount(); ++i)
        if (host.Device(i).open) {
            EXPECT_EQ(open, kNone) << "two are open";
            open = static_cast<int>(i);
        }
    return open;
}

int OpenedBy(OmConnectionSettings settings) {
    const auto cable = CreateCable(settings);
    const int open = OpenDevice();
    EXPECT_EQ(cable != nullptr, open != kNone);
    return open;
}

class DeviceChoice : public ::testing::Test {
  protected:
    static void Plug(const char* pods) { ThreeDevices().Line(pods).Build().Install(); }

    ~DeviceChoice() override { vb::InstallBoard(nullptr); }

    BoardTime time;
};

} // namespace

TEST_F(DeviceChoice, Ft2232IsTheStoredOneOrTheFirstFreeOneWithAnMpsse) {
    const ChoiceCase cases[] = {
        {"Dual B", "", 2},     // the stored one, whatever it can do
        {"Twin", "T2", 6},     // the serial number decides between two
        {"Twin", "T1", 5},     //
        {"Twin", "gone", 5},   // the library's first
        {"Twin", "D1A", 4},    // two of that description, and one of the serial number
        {"Dual A", "T2", 4},   // one of that description: the serial number is not looked at
        {"Gone", "T2", 4},     // free, and channel A of its part
        {"", "", 4},           //
        {"Held", "H1", kNone}, // another program has it
    };
    for (const ChoiceCase& row : cases) {
        Plug(kPods);
        OmConnectionSettings settings;
        settings.cableType = OmCableType::Ftd2xx;
        settings.ftd2xxDescription = row.description;
        settings.ftd2xxSerial = row.serial;
        EXPECT_EQ(OpenedBy(settings), row.opened) << row.description << ", " << row.serial;
    }
}

TEST_F(DeviceChoice, UsbBlasterIsTheStoredOneOrTheFirstFreeOne) {
    const ChoiceCase cases[] = {
        {"Second", "B2", 7}, {"Third", "B3", 8},           {"Third", "B4", 9},
        {"Third", "", 8},    {"Second", "B4", 7},          {"Gone", "B4", 7},
        {"", "", 7},         {"USB-Blaster", "B1", kNone}, // another program has it
    };
    for (const ChoiceCase& row : cases) {
        Plug(kPods);
        OmConnectionSettings settings;
        settings.cableType = OmCableType::AlteraUsbBlaster;
        settings.usbBlasterDescription = row.description;
        settings.usbBlasterSerial = row.serial;
        EXPECT_EQ(OpenedBy(settings), row.opened) << row.description << ", " << row.serial;
    }
}

TEST_F(DeviceChoice, DevicesWithIdentifiersOfTheirOwnAreFound) {
    Plug("pod FT2232H description=\"Olimex OpenOCD JTAG\" serial=OL1 usb-id=0x15BA002A\n" // 0
         "pod FT2232C description=\"Amontec JTAGkey A\" serial=AM1 usb-id=0x0403CFF8\n"   // 1
         "pod USB-Blaster description=USB-Blaster serial=B1 usb-id=0x09FB6003\n"          // 2
         "pod FT2232H description=Unknown serial=U1 usb-id=0x12345678");                  // 3
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    EXPECT_EQ(OpenedBy(settings), 1); // by the order of the identifiers
    settings.ftd2xxDescription = "Olimex OpenOCD JTAG";
    EXPECT_EQ(OpenedBy(settings), 0);
    settings.cableType = OmCableType::AlteraUsbBlaster;
    EXPECT_EQ(OpenedBy(settings), 2);
}

TEST_F(DeviceChoice, NothingIsOpenedWhereNothingSuits) {
    Plug("pod FT232R description=Serial serial=R1\n"
         "pod FT2232C description=\"Dual B\" serial=D1B\n"
         "pod FT2232H description=Held serial=H1 open=yes");
    for (const OmCableType type : {OmCableType::Ftd2xx, OmCableType::AlteraUsbBlaster}) {
        OmConnectionSettings settings;
        settings.cableType = type;
        EXPECT_EQ(OpenedBy(settings), kNone);
    }
}

TEST_F(DeviceChoice, HighSpeedFlagTellsWhatWasOpened) {
    Plug(kPods);
    OmConnectionSettings settings;
    settings.cableType = OmCableType::Ftd2xx;
    settings.ftd2xxFrequency = 30000000;
    for (const auto& [description, highSpeed, frequency] :
         {std::tuple{"Twin", true, 30000000u}, std::tuple{"Dual A", false, 6000000u}}) {
        settings.ftd2xxDescription = description;
        const auto cable = CreateCable(settings);
        ASSERT_NE(cable, nullptr);
        EXPECT_EQ(settings.ftd2xxIsHighSpeed, highSpeed) << description;
        EXPECT_EQ(cable->GetJtagHAL()->GetFrequency(), frequency) << description;
        EXPECT_EQ(vb::CurrentBoard()->Clock().Frequency(), frequency) << description;
    }
}

TEST_F(DeviceChoice, JLinkIsTheOneOfTheNumberOrOfTheHost) {
    Plug("pod J-Link serial=1 description=bench\n"
         "pod J-Link serial=3 description=lab");
    OmConnectionSettings settings;
    settings.cableType = OmCableType::JLinkUsb;
    for (const auto& [number, found] :
         {std::pair{0, false}, std::pair{1, true}, std::pair{2, false}, std::pair{3, true}}) {
        settings.jlinkUsbNumber = number;
        EXPECT_EQ(CreateCable(settings) != nullptr, found) << number;
    }
    settings.cableType = OmCableType::JLinkIp;
    for (const auto& [host, found] :
         {std::pair{"bench", true}, std::pair{"lab", true}, std::pair{"elsewhere", false}}) {
        settings.jlinkIpHost = host;
        EXPECT_EQ(CreateCable(settings) != nullptr, found) << host;
    }
}

TEST_F(DeviceChoice, DigilentIsTheOneOfTheName) {
    Plug("pod Digilent description=Held open=yes\n"
         "pod Digilent description=Onboard\n"
         "pod Digilent description=Spare");
    OmConnectionSettings settings;
    settings.cableType = OmCableType::DigilentAdept;
    for (const auto& [name, found] : {std::pair{"Held", false}, std::pair{"Onboard", true},
                                      std::pair{"Spare", true}, std::pair{"", false}}) {
        settings.digilentId = name;
        EXPECT_EQ(CreateCable(settings) != nullptr, found) << name;
    }
}
