// Every kind of pod drives the same board: the chain is found, a flash is identified, erased,
// programmed and verified.
#include "platform/PortDriver.h"
#include "tests/road/RoadFixture.h"
#include "virtualboard/ParallelPort.h"

#include <algorithm>
#include <functional>

namespace {

// A machine whose LPT1 leads to the board.
class BoardPorts : public OmPortDriverOpener {
  public:
    BoardPorts(vb::Board& board, const char* pod)
        : port_(board, vb::FindParallelPod(pod)), previous_(SetPortDriverOpener(this)) {}

    ~BoardPorts() override { SetPortDriverOpener(previous_); }

    BoardPorts(const BoardPorts&) = delete;
    BoardPorts& operator=(const BoardPorts&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
        return name == "ompio2" ? std::make_unique<Driver>(port_) : nullptr;
    }

  private:
    class Driver : public OmPortDriver {
      public:
        explicit Driver(vb::ParallelPort& port) : port_(port) {}

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

    vb::ParallelPort port_;
    OmPortDriverOpener* previous_;
};

struct Pod {
    const char* name;
    OmCableType type;
    const char* boardLine; // null for a parallel port
    const char* parallelPod;
    std::function<void(OmConnectionSettings&)> set;
};

void NothingToSet(OmConnectionSettings&) {}

const Pod kPods[] = {
    {"XilinxParallelCable3", OmCableType::XilinxParallelCable3, nullptr, "xilinx", NothingToSet},
    {"ByteBlaster", OmCableType::AlteraByteBlasterMV, nullptr, "byteblaster", NothingToSet},
    {"IspDownload", OmCableType::LatticeParallelIspDownload, nullptr, "isp", NothingToSet},
    {"Wiggler", OmCableType::Wiggler, nullptr, "wiggler", NothingToSet},
    {"EasyIce", OmCableType::EmbestEasyIce, nullptr, "wiggler", NothingToSet},
    {"Digilent", OmCableType::DigilentAdept, "pod Digilent description=Adapter", nullptr,
     [](OmConnectionSettings& settings) { settings.digilentId = "Adapter"; }},
    {"Ft2232H", OmCableType::Ftd2xx, "pod FT2232H description=\"High A\"", nullptr, NothingToSet},
    {"Ft2232C", OmCableType::Ftd2xx, "pod FT2232C description=\"Plain A\"", nullptr, NothingToSet},
    {"JLinkUsb", OmCableType::JLinkUsb, "pod J-Link serial=0", nullptr, NothingToSet},
    {"JLinkIp", OmCableType::JLinkIp, "pod J-Link serial=0 description=localhost", nullptr,
     NothingToSet},
    {"UsbBlaster", OmCableType::AlteraUsbBlaster, "pod USB-Blaster description=USB-Blaster",
     nullptr, NothingToSet},
};

class EveryPod : public ::testing::TestWithParam<Pod> {};

} // namespace

TEST_P(EveryPod, ProgramsTheBoard) {
    const Pod& pod = GetParam();
    const RecordingUserInterface user;
    vb::BoardBuilder builder;
    builder.Devices(1).UnusedAfter(1).Set("sectors", "4x4K").Set("sector-us", "1000");
    if (pod.boardLine)
        builder.Line(pod.boardLine);
    Road road(builder);
    std::unique_ptr<BoardPorts> ports;
    if (pod.parallelPod)
        ports = std::make_unique<BoardPorts>(*road.board, pod.parallelPod);
    road.programmer.settings.cableType = pod.type;
    pod.set(road.programmer.settings);
    road.FillFlash(0x00);
    const std::vector<uint8_t> bytes = Firmware(100, 13);
    OmDataImage image;
    image.SetBytes(0, bytes);
    ASSERT_TRUE(road.PrepareToProgram());
    ASSERT_TRUE(road.programmer.EraseSectors(road.progress, {0}));
    ASSERT_TRUE(road.programmer.ProgramFlash(road.progress, image));
    EXPECT_TRUE(road.programmer.VerifyFlash(road.united, image));
    road.ExpectContent(bytes);
    road.ExpectNoViolation();
    road.programmer.CloseCable(); // before the ports go
}

INSTANTIATE_TEST_SUITE_P(Pods, EveryPod, ::testing::ValuesIn(kPods),
                         [](const auto& pod) { return std::string(pod.param.name); });
