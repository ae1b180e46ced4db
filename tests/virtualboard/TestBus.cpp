#include "tests/virtualboard/TestBus.h"

namespace vb_test {

TestBus::TestBus(const vb::BuiltBoard& built, TestPod& pod)
    : pod_(pod), addressBits_(built.flash.AddressPins()),
      dataBits_(built.flash.widthBits * built.chips), shift_(built.flash.commandShift) {
    std::vector<size_t> offsets(built.chain.size());
    size_t position = 0;
    for (size_t i = built.chain.size(); i-- > 0;) {
        devices_.insert(devices_.begin(), vb::ReadBsdl(built.chain[i].bsdl));
        offsets[i] = position;
        position += built.chain[i].used ? devices_.front().cells.size() : 1;
    }
    for (const vb::BuiltDevice& device : built.chain)
        used_.push_back(device.used);
    image_.assign(position, true);
    for (const vb::Connection& connection : built.connections)
        Resolve(connection, devices_[connection.device], offsets[connection.device]);
    for (const vb::StaticConnection& pin : built.statics) {
        Resolve({pin.signal, pin.device, pin.port, pin.portIndex, false}, devices_[pin.device],
                offsets[pin.device]);
        Set(pin.signal, pin.level);
    }
}

void TestBus::Resolve(const vb::Connection& connection, const vb::DeviceDescription& device,
                      size_t base) {
    Cells& cells = cells_[connection.signal];
    cells.inverted = connection.inverted;
    for (size_t cell = 0; cell < device.cells.size(); ++cell) {
        for (const vb::CellEntry& entry : device.cells[cell]) {
            if (entry.port != connection.port || entry.index != connection.portIndex)
                continue;
            const bool bidirectional = entry.function == vb::CellFunction::Bidirectional;
            if (bidirectional || entry.function == vb::CellFunction::Output) {
                cells.output = base + cell;
                cells.hasOutput = true;
            }
            if (bidirectional || entry.function == vb::CellFunction::Input) {
                cells.input = base + cell;
                cells.hasInput = true;
            }
            if (entry.controlCell >= 0) {
                cells.control = base + static_cast<size_t>(entry.controlCell);
                cells.hasControl = true;
                cells.disableValue = entry.disableValue;
            }
        }
    }
}

void TestBus::LoadInstruction(const std::string& name) {
    Bits bits;
    for (size_t i = devices_.size(); i-- > 0;) {
        const std::string instruction = used_[i] ? name : "BYPASS";
        const uint64_t code = devices_[i].opcodes.at(instruction).front();
        for (unsigned bit = 0; bit < devices_[i].instructionLength; ++bit)
            bits.push_back(code >> bit & 1);
    }
    pod_.ScanIr(bits);
}

void TestBus::EnterExtest() {
    pod_.ResetTap();
    LoadInstruction("PRELOAD");
    for (const char* control : {"CE", "OE", "WE"})
        Set(control, true);
    SetAddress(0);
    ReleaseData();
    Scan();
    LoadInstruction("EXTEST");
}

void TestBus::Set(const std::string& signal, bool level) {
    const auto found = cells_.find(signal);
    if (found == cells_.end() || !found->second.hasOutput)
        return; // not on a device pin
    const Cells& cells = found->second;
    image_[cells.output] = level != cells.inverted;
    if (cells.hasControl)
        image_[cells.control] = !cells.disableValue;
}

void TestBus::Release(const std::string& signal) {
    const Cells& cells = cells_.at(signal);
    image_[cells.control] = cells.disableValue;
}

void TestBus::SetAddress(uint32_t address) {
    for (unsigned i = 0; i < addressBits_; ++i)
        Set("A" + std::to_string(i), address >> i & 1);
}

void TestBus::SetData(uint32_t data) {
    for (unsigned i = 0; i < dataBits_; ++i)
        Set("D" + std::to_string(i), data >> i & 1);
}

void TestBus::ReleaseData() {
    for (unsigned i = 0; i < dataBits_; ++i)
        Release("D" + std::to_string(i));
}

uint32_t TestBus::Scan() {
    const Bits captured = pod_.ScanDr(image_);
    uint32_t data = 0;
    for (unsigned i = 0; i < dataBits_; ++i)
        data |= uint32_t{captured[cells_.at("D" + std::to_string(i)).input]} << i;
    return data;
}

void TestBus::Write(uint32_t address, uint32_t data) {
    Set("CE", false);
    Set("OE", true);
    Set("WE", true);
    SetAddress(address);
    Scan();
    SetData(data);
    Set("WE", false);
    Scan();
    Set("WE", true);
    Scan();
    ReleaseData();
    Scan();
}

uint32_t TestBus::Read(uint32_t address) {
    Set("CE", false);
    Set("WE", true);
    Set("OE", false);
    SetAddress(address);
    Scan();
    Set("OE", true);
    return Scan();
}

uint32_t TestBus::AmdAddress(bool first) const {
    return (first ? 0x555u : 0x2AAu) << shift_;
}

void TestBus::AmdUnlock() {
    Write(AmdAddress(true), 0xAAAAAAAA);
    Write(AmdAddress(false), 0x55555555);
}

void TestBus::AmdCommand(uint32_t command) {
    AmdUnlock();
    Write(AmdAddress(true), command * 0x01010101u);
}

} // namespace vb_test
