#include "tests/monkey/Board.h"

#include "jtag/ConnectionSettings.h"
#include "virtualboard/BoardFaults.h"
#include "virtualboard/CurrentBoard.h"

#include <stdexcept>

namespace {

const char* const kFlashes[][2] = {
    {"set", "amd"},  {"set", "intel"}, {"buffer", "0"},     {"buffer", "32"}, {"cfi", "none"},
    {"cfi", "full"}, {"cfi", "short"}, {"locks", "single"}, {"bypass", "no"}, {"primary", "0"},
};

const char* const kChipFaults[] = {
    "stuck-bit F1 16 3",
    "erase-fails F1 1",
    "program-fails F1 0",
    "protect F1 2",
    "never-ready F1",
    "query-byte F1 44 255",
    "dead F1",
    "buffer-aborts F1 2",
    "tdo-stuck 0",
    "tdo-stuck 1",
    "no-power",
    "idcode-masks-tdi U1",
    "short-reads 3",
    "reads-never-complete",
};

vb::BoardBuilder SomeBoard(Dice& dice, const PodKind& pod) {
    vb::BoardBuilder builder;
    builder.Devices(1 + dice.Below(2)).UnusedAfter(dice.Below(2)).Chips(1 + dice.Below(2));
    builder.Set("sectors", "4x4K").Set("sector-us", "1000").Set("window-us", "5");
    for (int i = 0; i < 3; ++i) {
        const auto& [key, value] = dice.Pick(kFlashes);
        builder.Set(key, value);
    }
    if (pod.boardLine)
        builder.Line(pod.boardLine);
    return builder;
}

// Most sessions go through the first: the others' pods are slow.
const PodKind& SomePod(Dice& dice) {
    static const PodKind usual{"usual", OmCableType::Ftd2xx, nullptr, nullptr};
    return dice.OneIn(3) ? dice.Pick(AllPods()) : usual;
}

// Not every flash can have every property.
vb::BuiltBoard BuildSome(Dice& dice, const PodKind& pod) {
    for (int attempt = 0; attempt < 20; ++attempt)
        try {
            vb::BuiltBoard built = SomeBoard(dice, pod).Build();
            built.MakeBoard();
            return built;
        } catch (const std::runtime_error&) {
            continue;
        }
    return vb::BoardBuilder().Build();
}

} // namespace

MonkeyBoard::MonkeyBoard(Dice& dice) : dice_(dice) {
    Replace();
}

MonkeyBoard::~MonkeyBoard() {
    OmFlashProgrammer::GetInstance().CloseCable();
    ports_.reset();
    vb::InstallBoard(nullptr);
}

// A parallel port goes away with its board; a pod of another kind is pulled out.
void MonkeyBoard::Replace() {
    if (ports_)
        OmFlashProgrammer::GetInstance().CloseCable();
    ports_.reset();
    pod_ = &SomePod(dice_);
    built_ = BuildSome(dice_, *pod_);
    board_ = &built_.Install();
    if (pod_->parallelPod)
        ports_ = std::make_unique<BoardPorts>(*board_, pod_->parallelPod);
}

void MonkeyBoard::DescribeToProgram() {
    OmFlashProgrammer& programmer = OmFlashProgrammer::GetInstance();
    programmer.SetDesignSetup(MakeSetup(built_));
    programmer.settings = OmConnectionSettings();
    programmer.settings.cableType = pod_->type;
    programmer.settings.ftd2xxFrequency = 30000000;
    programmer.settings.digilentId = "Adapter";
}

void MonkeyBoard::DescribeWrongly() {
    OmDesignSetup setup = MakeSetup(built_);
    switch (dice_.Below(6)) {
    case 0:
        setup.sectors.groups = {{1000000000, 4096}};
        break;
    case 1:
        setup.sectors.groups = {{4294967295, 4294967295}, {1, 1}};
        break;
    case 2:
        setup.dataPins.pop_back();
        break;
    case 3:
        setup.addressPins.front().PortName = "NOWHERE";
        break;
    case 4:
        setup.devices.pop_back();
        break;
    default:
        setup.ChipCount = dice_.Between(1, 8);
        setup.AddrCmdShift = dice_.Between(-2, 4);
    }
    OmFlashProgrammer::GetInstance().SetDesignSetup(setup);
}

void MonkeyBoard::Break() {
    if (ports_ && dice_.OneIn(2))
        return ports_->port.FailCallAfter(dice_.Below(3000));
    if (dice_.OneIn(2)) {
        board_->Pods().faults.unplugAfterCalls = 1 + dice_.Below(3000);
        return;
    }
    try {
        std::vector<std::string> words;
        for (const std::string fault = dice_.Pick(kChipFaults); const char c : fault + ' ') {
            if (words.empty() || c == ' ')
                words.emplace_back();
            if (c != ' ')
                words.back() += c;
        }
        words.pop_back();
        vb::AddFault(*board_, words);
    } catch (const std::runtime_error&) {
        return; // not every chip can have every fault
    }
}
