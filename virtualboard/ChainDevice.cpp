#include "virtualboard/ChainDevice.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <utility>

namespace vb {

namespace {

void SetBit(std::vector<uint64_t>& words, uint32_t bit, bool level) {
    const uint64_t mask = uint64_t{1} << (bit % kWordBits);
    uint64_t& word = words[bit / kWordBits];
    word = level ? word | mask : word & ~mask;
}

struct Opcode {
    const char* name;
    Instruction instruction;
};

constexpr Opcode kOpcodes[] = {
    {"EXTEST", Instruction::Extest},     {"PRELOAD", Instruction::Sample},
    {"SAMPLE", Instruction::Sample},     {"IDCODE", Instruction::Idcode},
    {"USERCODE", Instruction::Usercode}, {"HIGHZ", Instruction::HighZ},
    {"CLAMP", Instruction::Clamp},
};

// An opcode that means nothing selects BYPASS (IEEE 1149.1).
Instruction Decode(const DeviceDescription& device, uint64_t code) {
    for (const Opcode& opcode : kOpcodes) {
        const auto found = device.opcodes.find(opcode.name);
        if (found != device.opcodes.end() && std::ranges::count(found->second, code) > 0)
            return opcode.instruction;
    }
    return Instruction::Bypass;
}

} // namespace

ChainDevice::ChainDevice(std::string name, DeviceDescription description)
    : name_(std::move(name)), description_(std::move(description)) {
    const size_t words = WordsFor(description_.cells.size());
    for (auto* bits : {&latch_, &pins_, &senseMask_, &holdMask_, &core_, &watched_})
        bits->assign(words, 0);
    BuildMasks();
    EnterTestLogicReset();
}

void ChainDevice::SetFaults(const DeviceFaults& faults) {
    faults_ = faults;
    BuildMasks();
}

bool ChainDevice::BlocksTdi() const {
    return faults_.idcodeMasksTdi && instruction_ == Instruction::Idcode;
}

void ChainDevice::BuildMasks() {
    for (auto* bits : {&senseMask_, &holdMask_, &core_})
        std::ranges::fill(*bits, 0);
    for (uint32_t cell = 0; cell < description_.cells.size(); ++cell)
        ClassifyCell(cell);
}

// Which stage a cell captures follows from its type: BC_1 captures what the core drives, the others
// of an output or control function the latch that drives the pin. An unconnected input reads 1.
void ChainDevice::ClassifyCell(uint32_t cell) {
    for (const CellEntry& entry : description_.cells[cell]) {
        const bool senses =
            entry.function == CellFunction::Input || entry.function == CellFunction::Bidirectional;
        const bool drives =
            entry.function == CellFunction::Output || entry.function == CellFunction::Control;
        if (senses) {
            SetBit(senseMask_, cell, true);
            SetBit(pins_, cell, true);
        } else if (drives && entry.type != "BC_1" && !faults_.controlCapturesEnabled) {
            SetBit(holdMask_, cell, true);
        }
        if (entry.controlCell >= 0) // the core leaves its pins released
            SetBit(core_, static_cast<uint32_t>(entry.controlCell),
                   entry.disableValue != faults_.controlCapturesEnabled);
    }
}

void ChainDevice::EnterTestLogicReset() {
    instruction_ = description_.idcode ? Instruction::Idcode : Instruction::Bypass;
}

void ChainDevice::CaptureInstruction(BitQueue& path) const {
    path.Append(description_.instructionCapture, InstructionLength());
}

void ChainDevice::UpdateInstruction(BitQueue& path) {
    instruction_ = Decode(description_, path.Take(InstructionLength()));
}

PinOwner ChainDevice::Owner() const {
    if (instruction_ == Instruction::Extest || instruction_ == Instruction::Clamp)
        return PinOwner::BoundaryRegister;
    return instruction_ == Instruction::HighZ ? PinOwner::Nobody : PinOwner::Core;
}

bool ChainDevice::UsesBoundary() const {
    return instruction_ == Instruction::Extest || instruction_ == Instruction::Sample;
}

size_t ChainDevice::DataLength() const {
    if (UsesBoundary())
        return description_.cells.size();
    const bool identifies =
        instruction_ == Instruction::Idcode || instruction_ == Instruction::Usercode;
    return identifies ? 32 : 1;
}

uint64_t ChainDevice::CapturedWord(size_t word) const {
    const uint64_t sense = senseMask_[word];
    const uint64_t hold = instruction_ == Instruction::Extest ? holdMask_[word] : 0;
    return (pins_[word] & sense) | (latch_[word] & hold) | (core_[word] & ~(sense | hold));
}

void ChainDevice::CaptureData(BitQueue& path) const {
    if (!UsesBoundary()) {
        const bool identifies = instruction_ == Instruction::Idcode;
        path.Append(identifies ? description_.idcode.value_or(0) : 0,
                    static_cast<unsigned>(DataLength()));
        return;
    }
    size_t left = description_.cells.size();
    for (size_t word = 0; left > 0; ++word) {
        const auto count = static_cast<unsigned>(std::min<size_t>(left, kWordBits));
        path.Append(CapturedWord(word), count);
        left -= count;
    }
}

void ChainDevice::UpdateData(BitQueue& path, std::vector<uint32_t>& changedCells) {
    size_t left = DataLength();
    for (size_t word = 0; left > 0; ++word) {
        const auto count = static_cast<unsigned>(std::min<size_t>(left, kWordBits));
        const uint64_t bits = path.Take(count);
        left -= count;
        if (!UsesBoundary())
            continue; // nothing hangs on the other registers
        uint64_t changed = (bits ^ latch_[word]) & watched_[word];
        latch_[word] = bits;
        for (; changed != 0; changed &= changed - 1)
            changedCells.push_back(static_cast<uint32_t>(word * kWordBits) +
                                   static_cast<uint32_t>(std::countr_zero(changed)));
    }
}

void ChainDevice::WatchCell(uint32_t cell) {
    SetBit(watched_, cell, true);
}

void ChainDevice::SetPinLevel(uint32_t cell, bool level) {
    SetBit(pins_, cell, level);
}

} // namespace vb
