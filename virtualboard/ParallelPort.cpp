#include "virtualboard/ParallelPort.h"

#include <stdexcept>

namespace vb {

namespace {

constexpr uint8_t kDirectionInput = 0x20; // control register: the data pins are inputs

constexpr uint32_t kReadPort = 0x9C402004;
constexpr uint32_t kWritePort = 0x9C402008;
constexpr uint32_t kListPorts = 0x9C40200C;

// Xilinx: D3 low enables the buffers, D4 is PROG. ByteBlaster: AUTOFD enables the buffers.
// ispDownload: D3 to D5 supply and enable. Wiggler: D4 is nTRST, D7 the supply.
constexpr ParallelPod kPods[] = {
    {"xilinx", 0x02, 0x04, 0x01, 0x10, 0x08, 0x00, 0x10, false},
    {"byteblaster", 0x01, 0x02, 0x40, 0x00, 0x00, 0x02, 0x80, true},
    {"isp", 0x02, 0x04, 0x01, 0x38, 0x00, 0x00, 0x40, false},
    {"wiggler", 0x04, 0x02, 0x08, 0x90, 0x00, 0x00, 0x80, true},
};

} // namespace

const ParallelPod& FindParallelPod(const std::string& name) {
    for (const ParallelPod& pod : kPods)
        if (name == pod.name)
            return pod;
    throw std::runtime_error("no parallel pod is called '" + name + "'");
}

ParallelPort::ParallelPort(Board& board, const ParallelPod& pod, uint32_t hertz)
    : pod_(pod), pins_(board) {
    board.Clock().SetFrequency(hertz);
}

bool ParallelPort::PodWorks() const {
    return (data_ & pod_.dataHigh) == pod_.dataHigh && (data_ & pod_.dataLow) == 0 &&
           (control_ & pod_.controlHigh) == pod_.controlHigh && !(control_ & kDirectionInput);
}

void ParallelPort::Write(unsigned offset, uint8_t value) {
    ++writes_;
    if (offset == 0)
        data_ = value;
    else if (offset == 2)
        control_ = value;
    if (PodWorks())
        pins_.Set(data_ & pod_.tck, data_ & pod_.tms, data_ & pod_.tdi);
}

uint8_t ParallelPort::Read(unsigned offset) const {
    ++reads_;
    if (offset == 0)
        return data_;
    if (offset == 2)
        return control_;
    const bool tdo = !PodWorks() || pins_.Tdo();
    constexpr uint8_t kOtherLines = 0x78;
    const auto others = static_cast<uint8_t>(kOtherLines & ~pod_.tdo);
    return static_cast<uint8_t>(others | (tdo != pod_.tdoInverted ? pod_.tdo : 0));
}

bool ParallelPort::Control(uint32_t code, std::span<const uint8_t> in, std::vector<uint8_t>& out) {
    out.clear();
    if (++calls_ == failAfter_ + 1 && failAfter_ != 0)
        return false;
    if (code == kListPorts) {
        out = {kBaseAddress & 0xFF, kBaseAddress >> 8, 0, 0, 0, 0};
        return true;
    }
    if (in.size() < (code == kWritePort ? 3u : 2u))
        return false;
    const unsigned offset = (in[0] | in[1] << 8) - kBaseAddress;
    if (offset > 2 || (code != kReadPort && code != kWritePort))
        return false;
    if (code == kWritePort)
        Write(offset, in[2]);
    else
        out = {Read(offset)};
    return true;
}

} // namespace vb
