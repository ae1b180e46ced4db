#include "jtag/CableTable.h"

#include "jtag/DigilentAdept.h"
#include "jtag/Ftd2xx.h"
#include "jtag/JLink.h"
#include "jtag/PinTableCables.h"
#include "jtag/UsbBlaster.h"
#include "platform/Translation.h"

#include <algorithm>
#include <utility>

namespace {

using Settings = OmConnectionSettings;
using Role = OmSettingRole;
using Type = OmCableType;

constexpr OmSetting kParallelSettings[] = {
    {"/ConnLptPort", &Settings::lptPort, Role::ParallelPort, 0, 2},
    {"/ConnLptFreq", &Settings::lptFrequency, Role::Frequency, 1000, 200000},
};

constexpr OmSetting kFtd2xxSettings[] = {
    {.key = "/ConnFtd2xxDesc",
     .member = &Settings::ftd2xxDescription,
     .role = Role::Description,
     .oldKey = "/ConnFtd2xxID"},
    {"/ConnFtd2xxSerial", &Settings::ftd2xxSerial, Role::Serial},
    {"/ConnFtd2xxFreq", &Settings::ftd2xxFrequency, Role::Frequency, 1000, 30000000},
    {"/ConnFtd2xxAdaptiveClocking", &Settings::ftd2xxAdaptiveClocking, Role::AdaptiveClocking},
    {"/ConnFtd2xxGpioDir", &Settings::ftd2xxGpioDir},
    {"/ConnFtd2xxGpioValue", &Settings::ftd2xxGpioValue},
    {"/ConnFtd2xxGpioSchemeDesc", &Settings::ftd2xxGpioSchemeDesc},
};

// The name under which a device is configured stands for its serial number.
constexpr OmSetting kDigilentSettings[] = {
    {"/ConnDigilentID", &Settings::digilentId, Role::Serial},
};

constexpr OmSetting kJLinkUsbSettings[] = {
    {"/ConnJLinkUsbNum", &Settings::jlinkUsbNumber, Role::Number, 0, 3},
    {"/ConnJLinkUsbFreq", &Settings::jlinkUsbFrequency, Role::Frequency, 1000, 12000000},
};

constexpr OmSetting kJLinkIpSettings[] = {
    {"/ConnJLinkIPHost", &Settings::jlinkIpHost, Role::Host},
    {"/ConnJLinkIPPort", &Settings::jlinkIpPort, Role::TcpPort, 0, 65535},
    {"/ConnJLinkIPFreq", &Settings::jlinkIpFrequency, Role::Frequency, 1000, 12000000},
};

constexpr OmSetting kUsbBlasterSettings[] = {
    {"/ConnUsbBlasterDesc", &Settings::usbBlasterDescription, Role::Description},
    {"/ConnUsbBlasterSerial", &Settings::usbBlasterSerial, Role::Serial},
};

// A new cable of that class, initialized; null, with the cable deleted, if that fails.
template <typename Cable, typename... Arguments>
std::unique_ptr<OmCable> Open(Arguments&&... arguments) {
    auto cable = std::make_unique<Cable>();
    if (!cable->Initialize(std::forward<Arguments>(arguments)...))
        return nullptr;
    return cable;
}

template <typename Cable>
std::unique_ptr<OmCable> OpenParallel(Settings& settings) {
    return Open<Cable>(static_cast<uint32_t>(settings.lptPort),
                       static_cast<uint32_t>(settings.lptFrequency));
}

std::unique_ptr<OmCable> OpenDigilent(Settings& settings) {
    return Open<OmDigilentAdept>(settings.digilentId);
}

std::unique_ptr<OmCable> OpenFtd2xx(Settings& settings) {
    return Open<OmFtd2xx>(settings.ftd2xxDescription, settings.ftd2xxSerial,
                          static_cast<uint32_t>(settings.ftd2xxFrequency),
                          settings.ftd2xxAdaptiveClocking, settings.ftd2xxGpioDir,
                          settings.ftd2xxGpioValue, settings.ftd2xxIsHighSpeed);
}

std::unique_ptr<OmCable> OpenJLinkUsb(Settings& settings) {
    return Open<OmJLink>(settings.jlinkUsbNumber, std::string(), 0,
                         static_cast<uint32_t>(settings.jlinkUsbFrequency));
}

std::unique_ptr<OmCable> OpenJLinkIp(Settings& settings) {
    return Open<OmJLink>(OmJLink::kOverIp, settings.jlinkIpHost, settings.jlinkIpPort,
                         static_cast<uint32_t>(settings.jlinkIpFrequency));
}

std::unique_ptr<OmCable> OpenUsbBlaster(Settings& settings) {
    return Open<OmUsbBlaster>(settings.usbBlasterDescription, settings.usbBlasterSerial);
}

template <typename Cable, typename Record>
OmListedDevices ListD2xx() {
    Cable cable;
    if (!cable.Load())
        return std::nullopt;
    std::vector<Record> records;
    cable.ListDevices(records);
    std::vector<OmListedDevice> devices;
    devices.reserve(records.size());
    for (const Record& record : records)
        devices.push_back({record.description, record.serial});
    return devices;
}

OmListedDevices ListDigilent() {
    OmDigilentAdept cable;
    if (!cable.Load())
        return std::nullopt;
    std::vector<OmListedDevice> devices;
    for (int index = 0; index < cable.GetDeviceCount(); ++index) {
        std::string name;
        if (cable.GetDeviceName(index, name))
            devices.push_back({"", name});
    }
    return devices;
}

constexpr const char* kD2xxLibrary[] = {"ftd2xx.dll"};
constexpr const char* kUsbBlasterLibraries[] = {"usbblstr32.dll", "ftd2xx.dll"};
constexpr const char* kJLinkLibrary[] = {"JLinkARM.dll"};
constexpr const char* kDigilentLibrary[] = {"dpcutil.dll"};

constexpr OmUsbId kJLinkUsbIds[] = {{0x1366, 0}}; // whatever Segger's product

constexpr OmCableRow kCables[] = {
    {Type::XilinxParallelCable3, ForTranslation("Xilinx Parallel Cable III / IV"),
     L"XILINX_PARALLEL_CABLE_3", "xilinx3", 5, 5, kParallelSettings,
     OpenParallel<OmXilinxParallelCable3>, nullptr},
    {Type::AlteraByteBlasterMV, ForTranslation("Altera ByteBlaster MV / II"),
     L"ALTERA_BYTEBLASTER_MV", "byteblaster", 6, 6, kParallelSettings,
     OpenParallel<OmAlteraByteBlasterMV>, nullptr},
    {Type::LatticeParallelIspDownload, ForTranslation("Lattice Parallel ispDownload"),
     L"LATTICE_PARALLEL_ISPDOWNLOAD", "ispdownload", 7, 7, kParallelSettings,
     OpenParallel<OmLatticeParallelIspDownload>, nullptr},
    {Type::Wiggler, ForTranslation("Wiggler"), L"WIGGLER", "wiggler", 8, 8, kParallelSettings,
     OpenParallel<OmWiggler>, nullptr},
    {Type::EmbestEasyIce, ForTranslation("Embest EasyICE"), L"WIGGLER", "easyice", 9, 9,
     kParallelSettings, OpenParallel<OmWiggler>, nullptr}, // a Wiggler's pinout
    {Type::Ftd2xx, ForTranslation("Generic FTDI FT2232"), L"FTD2XX", "ft2232", 1, 0,
     kFtd2xxSettings, OpenFtd2xx, ListD2xx<OmFtd2xx, OmFtd2xxRecord>, kD2xxLibrary, kFtd2xxUsbIds,
     true},
    {Type::DigilentAdept, ForTranslation("Digilent JTAG-USB"), L"DIGILENT_ADEPT", "digilent", 4, 4,
     kDigilentSettings, OpenDigilent, ListDigilent, kDigilentLibrary},
    {Type::JLinkUsb, ForTranslation("Segger J-Link"), L"JLINK_USB", "jlink", 2, 2,
     kJLinkUsbSettings, OpenJLinkUsb, nullptr, kJLinkLibrary, kJLinkUsbIds},
    {Type::JLinkIp, ForTranslation("Segger J-Link via TCP/IP server"), L"JLINK_IP", "jlink-ip", 3,
     3, kJLinkIpSettings, OpenJLinkIp, nullptr, kJLinkLibrary},
    {Type::AlteraUsbBlaster, ForTranslation("Altera USB-Blaster"), L"ALTERA_USB_BLASTER",
     "usb-blaster", 0, 1, kUsbBlasterSettings, OpenUsbBlaster,
     ListD2xx<OmUsbBlaster, OmUsbBlasterRecord>, kUsbBlasterLibraries, kUsbBlasterUsbIds, true},
};

static_assert(std::size(kCables) == kCableTypeCount);

} // namespace

const OmSetting* OmCableRow::Find(OmSettingRole role) const {
    const auto found = std::ranges::find(settings, role, &OmSetting::role);
    return found == settings.end() ? nullptr : &*found;
}

std::span<const OmCableRow> GetCableRows() {
    return kCables;
}

const OmCableRow* FindCableRow(OmCableType type) {
    const auto* found = std::ranges::find(kCables, type, &OmCableRow::type);
    return found == std::end(kCables) ? nullptr : found;
}

const OmSetting& GetSetting(OmCableType type, OmSettingRole role) {
    return *FindCableRow(type)->Find(role);
}

std::vector<const OmCableRow*> SortCableRows(unsigned OmCableRow::*place) {
    std::vector<const OmCableRow*> rows;
    for (const OmCableRow& row : kCables)
        rows.push_back(&row);
    std::ranges::sort(rows, {}, [place](const OmCableRow* row) { return row->*place; });
    return rows;
}
