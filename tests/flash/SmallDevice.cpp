#include "tests/flash/SmallDevice.h"

#include <gtest/gtest.h>

OmChainDevice MakeDevice(const std::string& entity, int boundaryLength,
                         const std::vector<CellRow>& cells) {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = entity;
    data->AddAttribute("INSTRUCTION_LENGTH", entity, "entity", "4");
    data->AddAttribute("BOUNDARY_LENGTH", entity, "entity", std::to_string(boundaryLength));
    data->AddInstructionCode("EXTEST", "0000");
    data->AddInstructionCode("SAMPLE", "0001");
    data->AddInstructionCode("PRELOAD", "0010");
    for (const CellRow& row : cells)
        EXPECT_TRUE(data->AddCell(std::to_string(row.number), "BC_1", row.port, row.function,
                                  row.safe, row.control, row.disable, "Z"));
    OmChainDevice device;
    device.SetBsdl(std::move(data), entity + ".bsd");
    return device;
}

SignalPin MakePin(int device, const std::string& port, int index, bool inverted) {
    SignalPin pin;
    pin.Device = device;
    pin.PortName = port;
    pin.PortIndex = index;
    pin.Inverted = inverted;
    return pin;
}

StaticPin MakeStaticPin(int device, const std::string& port, uint8_t value) {
    StaticPin pin;
    pin.Device = device;
    pin.PortName = port;
    pin.Value = value;
    return pin;
}
