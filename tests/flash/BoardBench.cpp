#include "tests/flash/BoardBench.h"

#include "bsdl/BsdlParser.h"
#include "data/DataImage.h"
#include "flash/InstructionTable.h"
#include "platform/Text.h"
#include "tests/road/BoardChecks.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

OmChainDevice MakeChainDevice(const vb::BuiltDevice& built, const TemporaryFolder& folder) {
    const std::string path = folder.Write(built.fileName, built.bsdl);
    auto data = std::make_unique<OmBsdlData>();
    OmBsdlParserCallbackImpl messages;
    EXPECT_TRUE(ParseBsdlFile(path.c_str(), *data, &messages)) << messages.text;
    OmChainDevice device;
    if (built.used)
        device.SetBsdl(std::move(data), path);
    else
        device.IRLen = static_cast<int32_t>(built.instructionLength); // needs no BSDL data
    return device;
}

// The pin of a bus whose signal is "A7" or "D0".
SignalPin& BusPin(std::vector<SignalPin>& bus, const std::string& signal) {
    const size_t index = std::stoul(signal.substr(1));
    bus.resize(std::max(bus.size(), index + 1));
    return bus[index];
}

SignalPin& PinOf(OmDesignSetup& setup, const std::string& signal) {
    if (signal == "CE")
        return setup.ce;
    if (signal == "OE")
        return setup.oe;
    if (signal == "WE")
        return setup.we;
    return BusPin(signal[0] == 'A' ? setup.addressPins : setup.dataPins, signal);
}

} // namespace

OmDesignSetup MakeBoardSetup(const vb::BuiltBoard& built) {
    OmDesignSetup setup;
    const TemporaryFolder folder;
    for (const vb::BuiltDevice& device : built.chain)
        setup.devices.push_back(MakeChainDevice(device, folder));
    for (const vb::Connection& connection : built.connections) {
        SignalPin& pin = PinOf(setup, connection.signal);
        pin.Device = static_cast<int32_t>(connection.device);
        pin.PortName = connection.port;
        pin.PortIndex = connection.portIndex;
        pin.Inverted = connection.inverted;
    }
    for (const vb::StaticConnection& connection : built.statics) {
        StaticPin& pin = setup.staticPins.emplace_back();
        pin.Device = static_cast<int32_t>(connection.device);
        pin.PortName = connection.port;
        pin.PortIndex = connection.portIndex;
        pin.Value = connection.level;
    }
    setup.ChipCount = static_cast<int32_t>(built.chips);
    setup.WordSize = static_cast<int32_t>(built.flash.WordBytes());
    setup.AddrCmdShift = static_cast<int32_t>(built.flash.commandShift);
    return setup;
}

BoardBench::BoardBench(const vb::BoardBuilder& builder, uint32_t frequency)
    : built(builder.Build()), board(built.Install()), setup(MakeBoardSetup(built)),
      analyzer(nullptr) {
    TolerateClearStatus(board, built);
    bool isHighSpeed = false;
    EXPECT_TRUE(cable.Load());
    std::vector<OmFtd2xxRecord> pods;
    cable.ListDevices(pods);
    if (pods.empty() ||
        !cable.Initialize(pods[0].description, "", frequency, false, 0x051B, 0x010A, isHighSpeed)) {
        ADD_FAILURE() << "the stand-in of the vendor's library is not there";
        return;
    }
    analyzer.SetCable(&cable);
    std::wstring errors;
    EXPECT_TRUE(bus.BuildFromSetup(setup, setup.devices, errors)) << ToLocal(errors);
    bus.analyzer = &analyzer;
    FillInstructionTable(setup.devices, analyzer);
    bus.EnterExtest();
    board.ClearStatistics();
}

BoardBench::~BoardBench() {
    EXPECT_EQ(Violations(), "");
}

std::vector<uint8_t> BoardBench::Contents(size_t start, size_t size) {
    const size_t lane = built.flash.WordBytes();
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i) {
        const size_t lanes = (start + i) / lane; // whole lanes ahead
        const size_t offset = lanes / built.chips * lane + (start + i) % lane;
        bytes[i] = Chip(lanes % built.chips).Bytes()[offset];
    }
    return bytes;
}

std::string BoardBench::Violations() const {
    return DescribeViolations(board);
}

OmDataImage RandomImage(uint32_t address, uint32_t size) {
    std::vector<uint8_t> bytes(size);
    uint32_t state = 0x12345678;
    for (uint8_t& byte : bytes) {
        state = state * 1664525 + 1013904223; // Numerical Recipes' generator
        byte = static_cast<uint8_t>(state >> 24);
    }
    OmDataImage image;
    image.SetBytes(address, bytes);
    return image;
}

std::vector<uint8_t> BytesOf(const OmDataImage& image) {
    return image.IsEmpty() ? std::vector<uint8_t>() : image.GetChunks().front().bytes;
}
