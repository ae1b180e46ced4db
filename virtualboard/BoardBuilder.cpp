#include "virtualboard/BoardBuilder.h"

#include "virtualboard/BoardFile.h"
#include "virtualboard/CurrentBoard.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace vb {

namespace {

// Manufacturer bits 1111 0000000: no JEDEC bank holds a code of zero. Part number counts up.
constexpr uint32_t kFirstIdcode = 0x1A001F01;
constexpr uint32_t kPartStep = 0x1000;
constexpr unsigned kFirstInstructionLength = 4;

std::string PinName(const std::string& port, int index) {
    return index < 0 ? port : port + "(" + std::to_string(index) + ")";
}

} // namespace

BoardBuilder::BoardBuilder() : flash_(FlashByName("amd16-64m")) {}

BoardBuilder& BoardBuilder::Flash(const std::string& model) {
    flash_ = FlashByName(model);
    return *this;
}

BoardBuilder& BoardBuilder::Flash(const FlashParameters& parameters) {
    flash_ = parameters;
    return *this;
}

BoardBuilder& BoardBuilder::Set(const std::string& key, const std::string& value) {
    SetFlashParameter(flash_, key, value);
    return *this;
}

BoardBuilder& BoardBuilder::Chips(unsigned count) {
    chips_ = count;
    return *this;
}

BoardBuilder& BoardBuilder::SetChip(unsigned chip, const std::string& key,
                                    const std::string& value) {
    chipKeys_[chip] += " " + key + "=" + value;
    return *this;
}

BoardBuilder& BoardBuilder::Devices(unsigned count) {
    devices_ = count;
    return *this;
}

BoardBuilder& BoardBuilder::Cells(PinStyle style) {
    style_ = style;
    return *this;
}

BoardBuilder& BoardBuilder::DisableValue(bool value) {
    disableValue_ = value;
    return *this;
}

BoardBuilder& BoardBuilder::Padding(unsigned cellsPerDevice) {
    padding_ = cellsPerDevice;
    return *this;
}

BoardBuilder& BoardBuilder::UnusedBefore(unsigned count) {
    before_ = count;
    return *this;
}

BoardBuilder& BoardBuilder::UnusedAfter(unsigned count) {
    after_ = count;
    return *this;
}

BoardBuilder& BoardBuilder::InvertedChipEnable() {
    invertedChipEnable_ = true;
    return *this;
}

BoardBuilder& BoardBuilder::TiedChipEnable() {
    tiedChipEnable_ = true;
    return *this;
}

BoardBuilder& BoardBuilder::StaticReset() {
    staticReset_ = true;
    return *this;
}

BoardBuilder& BoardBuilder::Idcode(size_t device, uint32_t idcode) {
    idcodes_.emplace_back(device, idcode);
    return *this;
}

BoardBuilder& BoardBuilder::Line(const std::string& line) {
    lines_.push_back(line);
    return *this;
}

// Deals the flash's signals out to the devices, and then writes the devices that result.
class BoardBuilder::Layout {
  public:
    explicit Layout(const BoardBuilder& builder)
        : builder_(builder), plans_(builder.before_ + builder.devices_ + builder.after_) {
        built_.flash = builder.flash_;
        built_.chips = builder.chips_;
    }

    BuiltBoard Make() {
        DealControls();
        // Two ports, for pins that share a control cell are released together.
        DealBus("A", "PA", builder_.flash_.AddressPins());
        DealBus("D", "PD", builder_.flash_.widthBits * builder_.chips_);
        for (size_t i = 0; i < plans_.size(); ++i)
            FinishDevice(i);
        WriteBoardText();
        return std::move(built_);
    }

  private:
    // The used devices take turns.
    size_t NextDevice() { return builder_.before_ + turn_++ % builder_.devices_; }

    void DealControls() {
        if (!builder_.tiedChipEnable_)
            DealControl("CE", "CS_N", builder_.invertedChipEnable_);
        DealControl("OE", "RD_N", false);
        DealControl("WE", "WR_N", false);
        if (!builder_.staticReset_)
            return;
        const size_t device = NextDevice();
        plans_[device].ports.push_back({"RST_N", 0, PinStyle::OutputOnly});
        built_.statics.push_back({"RESET", device, "RST_N", -1, true});
    }

    void DealControl(const char* signal, const char* port, bool inverted) {
        const size_t device = NextDevice();
        plans_[device].ports.push_back({port, 0, PinStyle::OutputOnly});
        built_.connections.push_back({signal, device, port, -1, inverted});
    }

    void DealBus(const char* prefix, const char* port, unsigned count) {
        std::vector<unsigned> width(plans_.size());
        for (unsigned i = 0; i < count; ++i) {
            const size_t device = NextDevice();
            built_.connections.push_back({prefix + std::to_string(i), device, port,
                                          static_cast<int>(width[device]++), false});
        }
        for (size_t i = 0; i < plans_.size(); ++i)
            if (width[i] > 0)
                plans_[i].ports.push_back({port, width[i], builder_.style_});
    }

    void FinishDevice(size_t index) {
        DevicePlan& plan = plans_[index];
        const bool used = index >= builder_.before_ && index < builder_.before_ + builder_.devices_;
        const std::string number = std::to_string(index + 1);
        plan.entity = "VELTEST_" + std::string(used ? "IO" : "AUX") + number;
        plan.instructionLength = kFirstInstructionLength + static_cast<unsigned>(index % 5);
        plan.idcode = kFirstIdcode + kPartStep * static_cast<uint32_t>(index);
        for (const auto& [device, idcode] : builder_.idcodes_)
            if (device == index)
                plan.idcode = idcode;
        plan.disableValue = builder_.disableValue_;
        plan.paddingCells = used ? builder_.padding_ : 0;
        built_.chain.push_back({"U" + number, plan.entity, "u" + number + ".bsd", WriteBsdl(plan),
                                plan.instructionLength, plan.idcode, used});
    }

    void WriteBoardText() {
        std::string& text = built_.boardText;
        for (const BuiltDevice& device : built_.chain)
            text += "device " + device.name + " " + device.fileName + "\n";
        for (unsigned i = 0; i < builder_.chips_; ++i)
            text += "flash F" + std::to_string(i + 1) + " " +
                    FormatFlashParameters(builder_.flash_) + KeysOf(i) + "\n";
        for (const Connection& connection : built_.connections)
            WriteNet(connection);
        for (const StaticConnection& pin : built_.statics)
            WriteNet({pin.signal, pin.device, pin.port, pin.portIndex, false});
        if (builder_.tiedChipEnable_)
            WriteTiedNet();
        for (const std::string& line : builder_.lines_)
            text += line + "\n";
    }

    std::string KeysOf(unsigned chip) const {
        const auto found = builder_.chipKeys_.find(chip);
        return found == builder_.chipKeys_.end() ? "" : found->second;
    }

    void WriteNet(const Connection& connection) {
        built_.boardText +=
            "net " + connection.signal + " " + built_.chain[connection.device].name + "." +
            PinName(connection.port, connection.portIndex) + FlashPins(connection) + "\n";
    }

    void WriteTiedNet() {
        built_.boardText += "net CE" + FlashPins({"CE", 0, "", -1, false}) + "\ntie CE 0\n";
    }

    // Data lines belong to one chip, all others to each.
    std::string FlashPins(const Connection& connection) const {
        const std::string& signal = connection.signal;
        if (signal[0] == 'D') {
            const unsigned line = static_cast<unsigned>(std::stoul(signal.substr(1)));
            const unsigned width = builder_.flash_.widthBits;
            return " F" + std::to_string(line / width + 1) + ".D" + std::to_string(line % width);
        }
        std::string pins;
        for (unsigned i = 1; i <= builder_.chips_; ++i)
            pins +=
                std::string(connection.inverted ? " !F" : " F") + std::to_string(i) + "." + signal;
        return pins;
    }

    const BoardBuilder& builder_;
    BuiltBoard built_;
    std::vector<DevicePlan> plans_;
    unsigned turn_ = 0;
};

BuiltBoard BoardBuilder::Build() const {
    return Layout(*this).Make();
}

std::unique_ptr<Board> BuiltBoard::MakeBoard() const {
    return ReadBoard(boardText, [this](const std::string& name) {
        for (const BuiltDevice& device : chain)
            if (device.fileName == name)
                return device.bsdl;
        throw std::runtime_error("no file is called '" + name + "'");
    });
}

Board& BuiltBoard::Install() const {
    InstallBoard(MakeBoard());
    return *CurrentBoard();
}

void BuiltBoard::WriteTo(const std::string& folder) const {
    for (const BuiltDevice& device : chain)
        std::ofstream(folder + "/" + device.fileName, std::ios::binary) << device.bsdl;
    std::ofstream(folder + "/board.txt", std::ios::binary) << boardText;
}

size_t BuiltBoard::ExtestBits() const {
    size_t bits = 0;
    for (const BuiltDevice& device : chain)
        bits += device.used ? ReadBsdl(device.bsdl).cells.size() : 1;
    return bits;
}

} // namespace vb
