// The demo board's files: they load, agree with each other, and a program can talk to the flash.

#include "tests/virtualboard/TestBus.h"
#include "virtualboard/BoardFile.h"
#include "virtualboard/CurrentBoard.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

using vb_test::TestBus;
using vb_test::TestPod;

namespace {

const std::string kDemo = OM_DEMO_DIRECTORY;

std::string ReadText(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

vb::BuiltDevice DemoDevice(const std::string& fileName, bool used) {
    vb::BuiltDevice device;
    device.bsdl = ReadText(kDemo + "/bsdl/" + fileName);
    device.used = used;
    return device;
}

std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields(1);
    for (char c : line)
        if (c == ',')
            fields.emplace_back();
        else
            fields.back() += c;
    return fields;
}

// The board as demo-pins.csv tells it, which is what the demo's setup file is made from.
vb::BuiltBoard FromPinTable() {
    vb::BuiltBoard built;
    built.chain = {DemoDevice("veldemo_cpu144.bsd", true), DemoDevice("veldemo_pmu20.bsd", false),
                   DemoDevice("veldemo_pld128.bsd", true)};
    built.flash = vb::FlashByName("amd16-64m-bottom");
    std::istringstream table(ReadText(kDemo + "/demo-pins.csv"));
    for (std::string line; std::getline(table, line);) {
        const std::vector<std::string> fields = Fields(line);
        if (line.starts_with('#') || fields[0] == "signal")
            continue;
        const size_t device = std::stoul(fields[1]) - 1;
        const int index = fields[3].empty() ? -1 : std::stoi(fields[3]);
        if (fields[0] == "STATIC")
            built.statics.push_back({fields[2], device, fields[2], index, fields[5] == "1"});
        else
            built.connections.push_back({fields[0], device, fields[2], index, fields[4] == "yes"});
    }
    return built;
}

} // namespace

TEST(DemoBoard, PinTableAndBoardFileAgree) {
    vb::InstallBoard(vb::LoadBoard(kDemo + "/boards/demo.board"));
    vb::Board& board = *vb::CurrentBoard();
    vb::FlashModel& chip = board.Flash(0).Model();
    TestPod pod;
    TestBus bus(FromPinTable(), pod);
    bus.EnterExtest();
    EXPECT_EQ(bus.Image().size(), 601u);
    for (uint32_t bit = 0; bit < 22; ++bit)
        chip.SetWord(uint32_t{1} << bit, 0x0100 + bit);
    for (uint32_t bit = 0; bit < 22; ++bit)
        EXPECT_EQ(bus.Read(uint32_t{1} << bit), 0x0100 + bit) << bit;
    for (uint32_t bit = 0; bit < 16; ++bit) {
        bus.AmdCommand(0xA0);
        bus.Write(0x3000 + bit, 0xFFFFu ^ (1u << bit));
    }
    for (uint32_t bit = 0; bit < 16; ++bit)
        EXPECT_EQ(bus.Read(0x3000 + bit), 0xFFFFu ^ (1u << bit)) << bit;
    EXPECT_EQ(board.Violations().Count(), 0u);
}

TEST(DemoBoard, IdcodesAreThoseOfTheThreeDevices) {
    vb::InstallBoard(vb::LoadBoard(kDemo + "/boards/demo.board"));
    TestPod pod;
    pod.ResetTap();
    const vb_test::Bits out = pod.ScanDr(vb_test::Bits(96, true));
    EXPECT_EQ(vb_test::ToNumber(out, 0, 32), 0x4A033F01u);
    EXPECT_EQ(vb_test::ToNumber(out, 32, 32), 0x1A022F01u);
    EXPECT_EQ(vb_test::ToNumber(out, 64, 32), 0x2A011F01u);
}

TEST(DemoBoard, BottomSectorIsGuardedByTheWriteProtectPin) {
    vb::InstallBoard(vb::LoadBoard(kDemo + "/boards/demo.board"));
    vb::FlashModel& chip = vb::CurrentBoard()->Flash(0).Model();
    TestPod pod;
    TestBus bus(FromPinTable(), pod);
    bus.EnterExtest();
    bus.Set("PA", false);
    bus.AmdCommand(0xA0);
    bus.Write(0, 0x1234);
    EXPECT_EQ(chip.Word(0), 0xFFFFu);
    bus.Set("PA", true);
    bus.AmdCommand(0xA0);
    bus.Write(0, 0x1234);
    bus.Read(0);
    EXPECT_EQ(bus.Read(0), 0x1234u);
}
