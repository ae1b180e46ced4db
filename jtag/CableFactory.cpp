#include "jtag/CableFactory.h"

#include "jtag/DigilentAdept.h"
#include "jtag/Ftd2xx.h"
#include "jtag/JLink.h"
#include "jtag/Log.h"
#include "jtag/ParallelPods.h"
#include "jtag/UsbBlaster.h"
#include "platform/Translation.h"

#include <utility>

namespace {

using Creator = std::unique_ptr<OmCable> (*)(OmConnectionSettings&);

struct CableRow {
    const char* label;
    const wchar_t* logName;
    Creator create;
};

// A new cable of that class, initialized; null, with the cable deleted, if that fails.
template <typename Cable, typename... Arguments>
std::unique_ptr<OmCable> Open(Arguments&&... arguments) {
    auto cable = std::make_unique<Cable>();
    if (!cable->Initialize(std::forward<Arguments>(arguments)...))
        return nullptr;
    return cable;
}

template <typename Pod>
std::unique_ptr<OmCable> OpenParallel(OmConnectionSettings& settings) {
    return Open<Pod>(static_cast<uint32_t>(settings.lptPort),
                     static_cast<uint32_t>(settings.lptFrequency));
}

std::unique_ptr<OmCable> OpenDigilent(OmConnectionSettings& settings) {
    return Open<OmDigilentAdept>(settings.digilentId);
}

std::unique_ptr<OmCable> OpenFtd2xx(OmConnectionSettings& settings) {
    return Open<OmFtd2xx>(settings.ftd2xxDescription, settings.ftd2xxSerial,
                          static_cast<uint32_t>(settings.ftd2xxFrequency),
                          settings.ftd2xxAdaptiveClocking, settings.ftd2xxGpioDir,
                          settings.ftd2xxGpioValue, settings.ftd2xxIsHighSpeed);
}

std::unique_ptr<OmCable> OpenJLinkUsb(OmConnectionSettings& settings) {
    return Open<OmJLink>(settings.jlinkUsbNumber, std::string(), 0,
                         static_cast<uint32_t>(settings.jlinkUsbFrequency));
}

std::unique_ptr<OmCable> OpenJLinkIp(OmConnectionSettings& settings) {
    return Open<OmJLink>(OmJLink::kOverIp, settings.jlinkIpHost, settings.jlinkIpPort,
                         static_cast<uint32_t>(settings.jlinkIpFrequency));
}

std::unique_ptr<OmCable> OpenUsbBlaster(OmConnectionSettings& settings) {
    return Open<OmUsbBlaster>(settings.usbBlasterDescription, settings.usbBlasterSerial);
}

// Indexed by OmCableType.
constexpr CableRow kCables[kCableTypeCount] = {
    {ForTranslation("Xilinx Parallel Cable III / IV"), L"XILINX_PARALLEL_CABLE_3",
     OpenParallel<OmXilinxParallelCable3>},
    {ForTranslation("Altera ByteBlaster MV / II"), L"ALTERA_BYTEBLASTER_MV",
     OpenParallel<OmAlteraByteBlasterMV>},
    {ForTranslation("Lattice Parallel ispDownload"), L"LATTICE_PARALLEL_ISPDOWNLOAD",
     OpenParallel<OmLatticeParallelIspDownload>},
    {ForTranslation("Wiggler"), L"WIGGLER", OpenParallel<OmWiggler>},
    {ForTranslation("Embest EasyICE"), L"WIGGLER", OpenParallel<OmWiggler>}, // a Wiggler's pinout
    {ForTranslation("Digilent JTAG-USB"), L"DIGILENT_ADEPT", OpenDigilent},
    {ForTranslation("Generic FTDI FT2232"), L"FTD2XX", OpenFtd2xx},
    {ForTranslation("Segger J-Link"), L"JLINK_USB", OpenJLinkUsb},
    {ForTranslation("Segger J-Link via TCP/IP server"), L"JLINK_IP", OpenJLinkIp},
    {ForTranslation("Altera USB-Blaster"), L"ALTERA_USB_BLASTER", OpenUsbBlaster},
};

const CableRow* FindCable(OmCableType type) {
    const auto index = static_cast<int32_t>(type);
    return index >= 0 && index < kCableTypeCount ? &kCables[index] : nullptr;
}

std::unique_ptr<OmCable> Create(const CableRow& row, OmConnectionSettings& settings) {
    OmLog(L"Creating cable object  %ls\n", row.logName);
    return row.create(settings);
}

} // namespace

std::unique_ptr<OmCable> CreateCable(OmConnectionSettings& settings) {
    const CableRow* row = FindCable(settings.cableType);
    std::unique_ptr<OmCable> cable = row ? Create(*row, settings) : nullptr;
    if (!cable)
        OmLog(L"*** FAILED *** (CreateCable failed)\n");
    return cable;
}

const char* GetCableLabel(OmCableType type) {
    const CableRow* row = FindCable(type);
    return row ? row->label : nullptr;
}
