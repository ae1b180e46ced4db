// The ten connection types, and how each is offered by a virtual board.
#pragma once

#include "jtag/ConnectionSettings.h"
#include "virtualboard/BoardBuilder.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

enum class CableFamily { Parallel, Ftd2xx, UsbBlaster, JLink, Digilent };

struct CableCase {
    const char* name;
    OmCableType type;
    CableFamily family;
    const char* parallelPod; // how the virtual board calls it, null for a cable on USB
};

inline constexpr std::array<CableCase, kCableTypeCount> kCableCases = {{
    {"Xilinx", OmCableType::XilinxParallelCable3, CableFamily::Parallel, "xilinx"},
    {"ByteBlaster", OmCableType::AlteraByteBlasterMV, CableFamily::Parallel, "byteblaster"},
    {"IspDownload", OmCableType::LatticeParallelIspDownload, CableFamily::Parallel, "isp"},
    {"Wiggler", OmCableType::Wiggler, CableFamily::Parallel, "wiggler"},
    {"EasyIce", OmCableType::EmbestEasyIce, CableFamily::Parallel, "wiggler"},
    {"Digilent", OmCableType::DigilentAdept, CableFamily::Digilent, nullptr},
    {"Ftd2xx", OmCableType::Ftd2xx, CableFamily::Ftd2xx, nullptr},
    {"JLinkUsb", OmCableType::JLinkUsb, CableFamily::JLink, nullptr},
    {"JLinkIp", OmCableType::JLinkIp, CableFamily::JLink, nullptr},
    {"UsbBlaster", OmCableType::AlteraUsbBlaster, CableFamily::UsbBlaster, nullptr},
}};

template <typename Predicate>
std::vector<CableCase> CablesThat(Predicate predicate) {
    std::vector<CableCase> cables;
    std::copy_if(kCableCases.begin(), kCableCases.end(), std::back_inserter(cables), predicate);
    return cables;
}

inline std::ostream& operator<<(std::ostream& stream, const CableCase& cable) {
    return stream << cable.name;
}

inline std::string NameOfCable(const ::testing::TestParamInfo<CableCase>& info) {
    return info.param.name;
}

// One pod of each kind hangs on the board, the USB ones side by side.
inline vb::BoardBuilder WithEveryPod(vb::BoardBuilder builder) {
    return builder.Line("pod USB-Blaster description=USB-Blaster serial=UB1")
        .Line("pod FT2232H description=\"Bench FT2232 A\" serial=FT1A")
        .Line("pod Digilent description=Onboard serial=DG1")
        .Line("pod J-Link description=localhost serial=0");
}

// What leads to the pod of that kind. The empty names of the FTDI-based ones take the first one
// that suits.
inline OmConnectionSettings SettingsFor(const CableCase& cable) {
    OmConnectionSettings settings;
    settings.cableType = cable.type;
    settings.digilentId = "Onboard";
    return settings;
}
