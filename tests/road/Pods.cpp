#include "tests/road/Pods.h"

#include <algorithm>

namespace {

class BoardPortDriver : public OmPortDriver {
  public:
    explicit BoardPortDriver(vb::ParallelPort& port) : port_(port) {}

    bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                 size_t& returned) override {
        std::vector<uint8_t> answer;
        if (!port_.Control(code, in, answer))
            return false;
        returned = std::min(answer.size(), out.size());
        std::copy_n(answer.begin(), returned, out.begin());
        return true;
    }

  private:
    vb::ParallelPort& port_;
};

vb::BoardBuilder BoardFor(const PodKind& pod) {
    vb::BoardBuilder builder;
    builder.Devices(1).UnusedAfter(1).Set("sectors", "4x4K").Set("sector-us", "1000");
    if (pod.boardLine)
        builder.Line(pod.boardLine);
    return builder;
}

} // namespace

const std::vector<PodKind>& AllPods() {
    static const std::vector<PodKind> pods = {
        {"XilinxParallelCable3", OmCableType::XilinxParallelCable3, nullptr, "xilinx"},
        {"ByteBlaster", OmCableType::AlteraByteBlasterMV, nullptr, "byteblaster"},
        {"IspDownload", OmCableType::LatticeParallelIspDownload, nullptr, "isp"},
        {"Wiggler", OmCableType::Wiggler, nullptr, "wiggler"},
        {"EasyIce", OmCableType::EmbestEasyIce, nullptr, "wiggler"},
        {"Digilent", OmCableType::DigilentAdept, "pod Digilent description=Adapter", nullptr},
        {"Ft2232H", OmCableType::Ftd2xx, "pod FT2232H description=\"High A\"", nullptr},
        {"Ft2232C", OmCableType::Ftd2xx, "pod FT2232C description=\"Plain A\"", nullptr},
        {"JLinkUsb", OmCableType::JLinkUsb, "pod J-Link serial=0", nullptr},
        {"JLinkIp", OmCableType::JLinkIp, "pod J-Link serial=0 description=localhost", nullptr},
        {"UsbBlaster", OmCableType::AlteraUsbBlaster, "pod USB-Blaster description=USB-Blaster",
         nullptr},
    };
    return pods;
}

std::unique_ptr<OmPortDriver> BoardPorts::Open(const std::string& name) {
    return name == "ompio2" ? std::make_unique<BoardPortDriver>(port) : nullptr;
}

PodRoad::PodRoad(const PodKind& pod) : road(BoardFor(pod)) {
    if (pod.parallelPod)
        ports = std::make_unique<BoardPorts>(*road.board, pod.parallelPod);
    road.programmer.settings.cableType = pod.type;
    road.programmer.settings.digilentId = "Adapter";
}

// The cable goes ahead of the ports that it uses.
PodRoad::~PodRoad() {
    road.programmer.CloseCable();
}

void PodRoad::BreakAfter(uint64_t calls) {
    if (ports)
        ports->port.FailCallAfter(calls);
    else
        road.board->Pods().faults.unplugAfterCalls = calls;
}
