#include "tests/road/RoadFixture.h"

#include "bsdl/BsdlParser.h"
#include "tests/road/BoardChecks.h"
#include "tests/support/TemporaryFolder.h"
#include "virtualboard/CurrentBoard.h"

#include <algorithm>

namespace {

constexpr uint64_t kPicosecondsPerMicrosecond = 1000000;
constexpr int32_t kFastTck = 30000000;

OmBitVector IdcodeBits(uint32_t idcode) {
    OmBitVector bits;
    for (unsigned i = 0; i < 32; ++i)
        bits.push_back((idcode >> i) & 1);
    return bits;
}

OmChainDevice MakeDevice(const vb::BuiltDevice& built, const TemporaryFolder& folder) {
    auto bsdl = std::make_unique<OmBsdlData>();
    const std::string path = folder.Path(built.fileName);
    OmBsdlParserCallbackImpl messages;
    EXPECT_TRUE(ParseBsdlFile(path.c_str(), *bsdl, &messages)) << messages.text;
    OmChainDevice device;
    device.SetBsdl(std::move(bsdl), path);
    if (built.idcode != 0)
        device.Idcode = IdcodeBits(built.idcode);
    return device;
}

SignalPin MakePin(const vb::Connection& connection) {
    SignalPin pin;
    pin.Device = static_cast<int32_t>(connection.device);
    pin.PortName = connection.port;
    pin.PortIndex = connection.portIndex;
    pin.Inverted = connection.inverted;
    return pin;
}

// "A7" and "D0" are elements of a bus, "CE", "OE" and "WE" stand alone.
SignalPin& PinOf(OmDesignSetup& setup, const std::string& signal) {
    if (signal == "CE")
        return setup.ce;
    if (signal == "OE")
        return setup.oe;
    if (signal == "WE")
        return setup.we;
    std::vector<SignalPin>& bus = signal[0] == 'A' ? setup.addressPins : setup.dataPins;
    const size_t index = std::stoul(signal.substr(1));
    bus.resize(std::max(bus.size(), index + 1));
    return bus[index];
}

StaticPin MakeStatic(const vb::StaticConnection& connection) {
    StaticPin pin;
    pin.Device = static_cast<int32_t>(connection.device);
    pin.PortName = connection.port;
    pin.PortIndex = connection.portIndex;
    pin.Value = connection.level ? 1 : 0;
    return pin;
}

} // namespace

uint64_t BoardTime::Microseconds() {
    const vb::Board* board = vb::CurrentBoard();
    return board ? const_cast<vb::Board*>(board)->Clock().Now() / kPicosecondsPerMicrosecond : 0;
}

void BoardTime::SleepMilliseconds(unsigned milliseconds) {
    if (vb::Board* board = vb::CurrentBoard())
        board->AddIdleMicroseconds(uint64_t{milliseconds} * 1000);
}

OmDesignSetup MakeSetup(const vb::BuiltBoard& built) {
    const TemporaryFolder folder;
    built.WriteTo(folder.path.string());
    OmDesignSetup setup;
    for (const vb::BuiltDevice& device : built.chain)
        setup.devices.push_back(MakeDevice(device, folder));
    for (const vb::Connection& connection : built.connections)
        PinOf(setup, connection.signal) = MakePin(connection);
    for (const vb::StaticConnection& connection : built.statics)
        setup.staticPins.push_back(MakeStatic(connection));
    setup.ChipCount = static_cast<int32_t>(built.chips);
    setup.WordSize = static_cast<int32_t>(built.flash.WordBytes());
    setup.AddrCmdShift = static_cast<int32_t>(built.flash.commandShift);
    return setup;
}

Road::Road(const vb::BoardBuilder& builder) : built(builder.Build()), board(&built.Install()) {
    programmer.SetDesignSetup(MakeSetup(built));
    programmer.settings.cableType = OmCableType::Ftd2xx;
    programmer.settings.ftd2xxFrequency = kFastTck;
    TolerateClearStatus(*board, built);
}

Road::~Road() {
    programmer.CloseCable();
    if (vb::CurrentBoard() == board) // another road may have taken its place
        ExpectNoViolation();
    vb::InstallBoard(nullptr);
}

void Road::Replug() {
    ExpectNoViolation();
    board = &built.Install();
    TolerateClearStatus(*board, built);
}

bool Road::PrepareToProgram() {
    return programmer.Prepare(kPrepareFlashCommands | kPrepareIdentify | kPrepareIdentifyOrFail |
                              kPrepareSectors);
}

OmSectorRange Road::SectorsOf(const OmDataImage& image) const {
    OmSectorRange indexes;
    for (const OmDataChunk& chunk : image.GetChunks()) {
        uint32_t first = 0;
        uint32_t count = 0;
        programmer.sectors.GetSectorRange(built.chips, chunk.address, chunk.LastAddress(), first,
                                          count);
        for (uint32_t i = 0; i < count; ++i)
            indexes.insert(first + i);
    }
    OmSectorRange offsets;
    programmer.sectors.ToOffsets(indexes, offsets);
    return offsets;
}

void Road::FillFlash(uint8_t value) {
    for (size_t i = 0; i < board->FlashCount(); ++i) {
        std::vector<uint8_t>& bytes = board->Flash(i).Model().Bytes();
        std::fill(bytes.begin(), bytes.end(), value);
    }
}

std::vector<uint8_t> Road::Content(size_t count) const {
    std::vector<uint8_t> bytes = board->FlashContents();
    bytes.resize(count);
    return bytes;
}

void Road::ExpectContent(const std::vector<uint8_t>& expected) const {
    const std::vector<uint8_t> content = Content(expected.size());
    const auto differs = std::mismatch(expected.begin(), expected.end(), content.begin());
    if (differs.first != expected.end())
        ADD_FAILURE() << "byte " << differs.first - expected.begin() << " is "
                      << int{*differs.second} << " and should be " << int{*differs.first};
}

void Road::ExpectNoViolation() const {
    EXPECT_EQ(DescribeViolations(*board), "");
    EXPECT_EQ(board->PodTraffic().badCommands, 0u);
}

std::vector<uint8_t> Firmware(size_t count, uint32_t seed) {
    std::vector<uint8_t> bytes;
    uint32_t state = seed;
    for (size_t i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223; // Numerical Recipes' generator
        bytes.push_back(static_cast<uint8_t>(state >> 24));
    }
    return bytes;
}
