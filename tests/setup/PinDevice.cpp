#include "tests/setup/PinDevice.h"

#include "setup/SignalRows.h"

#include <gtest/gtest.h>

namespace {

class Register {
  public:
    explicit Register(OmBsdlData& data) : data_(data) {}

    void Add(const std::string& port, const char* function) {
        EXPECT_TRUE(
            data_.AddCell(std::to_string(next_++), "BC_1", port, function, "X", "", "", ""));
    }

  private:
    OmBsdlData& data_;
    int next_ = 0;
};

std::string Bit(const char* port, int bit) {
    return std::string(port) + '(' + std::to_string(bit) + ')';
}

void AddPorts(OmBsdlData& data) {
    data.AddPort("DATA", "inout", 0, 15);
    data.AddPort("ADDR", "out", 23, 0);
    data.AddPort("SEL", "out", -1, -1);
    data.AddPort("IN", "in", -1, -1);
    data.AddPort("NC", "inout", -1, -1);
    data.AddPort("VCC", "linkage", 1, 2);
}

void AddCells(OmBsdlData& data) {
    Register cells(data);
    for (int bit = 0; bit < 16; ++bit) {
        cells.Add(Bit("DATA", bit), "INPUT");
        cells.Add(Bit("DATA", bit), "OUTPUT2");
    }
    for (int bit = 0; bit < 24; ++bit)
        cells.Add(Bit("ADDR", bit), "OUTPUT2");
    cells.Add("SEL", "OUTPUT2");
    cells.Add("IN", "INPUT");
}

void AddPinMaps(OmBsdlData& data) {
    for (int bit = 0; bit < 16; ++bit)
        data.AddPinMapEntry("BGA", "DATA", bit, "D" + std::to_string(bit));
    for (int bit = 0; bit < 24; ++bit)
        data.AddPinMapEntry("BGA", "ADDR", bit, "A" + std::to_string(bit));
    data.AddPinMapEntry("BGA", "SEL", -1, "B1");
    data.AddPinMapEntry("BGA", "IN", -1, "B2");
    data.AddPinMapEntry("BGA", "VCC", 1, "C1");
    data.AddPinMapEntry("QFP", "SEL", -1, "100");
}

} // namespace

OmChainDevice MakePinDevice() {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "chip";
    data->AddAttribute("INSTRUCTION_LENGTH", "chip", "entity", "4");
    data->AddAttribute("BOUNDARY_LENGTH", "chip", "entity", "60");
    AddPorts(*data);
    AddCells(*data);
    AddPinMaps(*data);
    OmChainDevice device;
    device.SetBsdl(std::move(data), "/boards/chip.bsd");
    device.PinMapping = "BGA";
    return device;
}

OmDesignSetup MakePinSetup() {
    OmDesignSetup setup;
    setup.devices.push_back(MakePinDevice());
    PadBusPins(setup);
    return setup;
}
