#include "virtualboard/Mpsse.h"

#include <algorithm>

namespace vb {

namespace {

// Bits of the data shifting commands (AN_108, section 3.2).
constexpr uint8_t kWriteOnFall = 0x01;
constexpr uint8_t kBitMode = 0x02;
constexpr uint8_t kLowBitFirst = 0x08;
constexpr uint8_t kWriteTdi = 0x10;
constexpr uint8_t kReadTdo = 0x20;
constexpr uint8_t kWriteTms = 0x40;

// Pins of the low port.
constexpr uint8_t kTckPin = 0x01;
constexpr uint8_t kTdiPin = 0x02;
constexpr uint8_t kTdoPin = 0x04;
constexpr uint8_t kTmsPin = 0x08;
constexpr uint8_t kGpioL1Pin = 0x20;

constexpr uint8_t kBadCommandEcho = 0xFA;

uint8_t Reversed(uint8_t byte) {
    uint8_t result = 0;
    for (int i = 0; i < 8; ++i)
        result = static_cast<uint8_t>(result << 1 | (byte >> i & 1));
    return result;
}

} // namespace

Mpsse::Mpsse(Board& board, const PodEntry& entry)
    : board_(board), highSpeed_(entry.type == PodType::Ft2232H), entry_(entry) {
    ApplyFrequency();
}

bool Mpsse::TdiPin() const {
    return Shows(kTdiPin);
}

bool Mpsse::TmsPin() const {
    return Shows(kTmsPin);
}

// TCK must be an output, and the pod's buffers open.
bool Mpsse::ReachesBoard() const {
    const auto value = static_cast<uint16_t>(port_[0].value | port_[1].value << 8);
    const auto driven = static_cast<uint16_t>(port_[0].direction | port_[1].direction << 8);
    const bool open = (value & driven & entry_.needsHigh) == entry_.needsHigh &&
                      (~value & driven & entry_.needsLow) == entry_.needsLow;
    return entry_.onThisBoard && open && port_[0].direction & kTckPin;
}

bool Mpsse::TdoPin() const {
    return !ReachesBoard() || board_.Chain().Tdo();
}

void Mpsse::Reset() {
    port_[0] = port_[1] = {};
    divisor_ = 0;
    divideByFive_ = true;
    loopback_ = adaptive_ = stalled_ = false;
    shiftIn_ = 0;
    pending_.clear();
    answers_.Clear();
    ApplyFrequency();
}

// TCK is 12 MHz, or 60 MHz on a high-speed part with the divider by five off, over twice the
// divisor plus one.
void Mpsse::ApplyFrequency() {
    const uint32_t base = highSpeed_ && !divideByFive_ ? 60'000'000 : 12'000'000;
    board_.Clock().SetFrequency(base / (2 * (uint32_t{divisor_} + 1)));
}

void Mpsse::Write(std::span<const uint8_t> bytes) {
    if (!pending_.empty() || stalled_) {
        pending_.insert(pending_.end(), bytes.begin(), bytes.end());
        bytes = pending_;
    }
    size_t done = 0;
    while (!stalled_ && done < bytes.size()) {
        const size_t used = Step(bytes.subspan(done));
        if (used == 0)
            break;
        done += used;
    }
    pending_ = std::vector<uint8_t>(bytes.begin() + static_cast<int64_t>(done), bytes.end());
}

size_t Mpsse::Step(std::span<const uint8_t> bytes) {
    const uint8_t command = bytes[0];
    const bool shifts = !(command & 0x80) && (command & (kWriteTdi | kReadTdo | kWriteTms));
    return shifts ? Shift(bytes) : Control(bytes);
}

size_t Mpsse::BadCommand(uint8_t command) {
    ++board_.PodTraffic().badCommands;
    answers_.Push(kBadCommandEcho);
    answers_.Push(command);
    return 1;
}

size_t Mpsse::Shift(std::span<const uint8_t> bytes) {
    const uint8_t command = bytes[0];
    if (adaptive_ && !entry_.returnClock) {
        stalled_ = true; // TCK waits for an RTCK edge that never comes
        return 0;
    }
    if (!(command & kWriteTms))
        return command & kBitMode ? ShiftBits(command, bytes) : ShiftBytes(command, bytes);
    constexpr uint8_t kTmsCommands[] = {0x4A, 0x4B, 0x6A, 0x6B, 0x6E, 0x6F};
    if (std::ranges::count(kTmsCommands, command) == 0)
        return BadCommand(command);
    return ShiftTms(command, bytes);
}

void Mpsse::SetTdiPin(bool level) {
    port_[0].value =
        static_cast<uint8_t>(level ? port_[0].value | kTdiPin : port_[0].value & ~kTdiPin);
}

void Mpsse::SetTmsPin(bool level) {
    port_[0].value =
        static_cast<uint8_t>(level ? port_[0].value | kTmsPin : port_[0].value & ~kTmsPin);
}

// One TCK pulse from low to high to low. Data written on the rising edge come too late for the
// target's sampling of that edge: it sees what was there before.
bool Mpsse::CycleBit(bool tms, bool tdi, uint8_t command) {
    const bool before[] = {TmsPin(), TdiPin()};
    SetTmsPin(tms);
    SetTdiPin(tdi);
    const bool inTime = command & kWriteOnFall;
    const bool tdo = !ReachesBoard() || board_.Chain().Clock(inTime ? TmsPin() : before[0],
                                                             inTime ? TdiPin() : before[1]);
    return loopback_ ? tdi : tdo;
}

size_t Mpsse::ShiftTms(uint8_t command, std::span<const uint8_t> bytes) {
    if (bytes.size() < 3)
        return 0;
    const unsigned count = (bytes[1] & 7u) + 1;
    const bool tdi = bytes[2] & 0x80;
    for (unsigned i = 0; i < count; ++i) {
        const bool tdo = CycleBit(bytes[2] >> std::min(i, 6u) & 1, tdi, command);
        shiftIn_ = static_cast<uint8_t>(shiftIn_ >> 1 | tdo << 7);
    }
    if (command & kReadTdo)
        answers_.Push(shiftIn_);
    return 3;
}

size_t Mpsse::ShiftBits(uint8_t command, std::span<const uint8_t> bytes) {
    const size_t size = command & kWriteTdi ? 3 : 2;
    if (bytes.size() < size)
        return 0;
    const unsigned count = (bytes[1] & 7u) + 1;
    const uint8_t data = size == 3 ? bytes[2] : 0;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned place = command & kLowBitFirst ? i : 7 - i;
        const bool tdi = size == 3 ? data >> place & 1 : TdiPin();
        const bool tdo = CycleBit(TmsPin(), tdi, command);
        shiftIn_ = static_cast<uint8_t>(command & kLowBitFirst ? shiftIn_ >> 1 | tdo << 7
                                                               : shiftIn_ << 1 | tdo);
    }
    if (command & kReadTdo)
        answers_.Push(shiftIn_);
    return size;
}

size_t Mpsse::ShiftBytes(uint8_t command, std::span<const uint8_t> bytes) {
    if (bytes.size() < 3)
        return 0;
    const size_t count = size_t{bytes[1]} + (size_t{bytes[2]} << 8) + 1;
    const bool writes = command & kWriteTdi;
    if (writes && bytes.size() < 3 + count)
        return 0;
    RunBytes(command, writes ? bytes.data() + 3 : nullptr, count);
    return writes ? 3 + count : 3;
}

// The road of all bulk data. Low bit first and written on the falling edge is how the chain takes
// its bits; the other forms are turned into it.
void Mpsse::RunBytes(uint8_t command, const uint8_t* data, size_t count) {
    const bool drivesTdi = port_[0].direction & kTdiPin;
    const bool direct =
        ReachesBoard() && !loopback_ && (command & kWriteOnFall || !data) && drivesTdi;
    if (!direct) {
        const auto bits = static_cast<uint8_t>((command | kBitMode));
        for (size_t i = 0; i < count; ++i) {
            const uint8_t one[] = {bits, 7, data ? data[i] : uint8_t{0}};
            ShiftBits(bits, one);
        }
        return;
    }
    const bool reversed = !(command & kLowBitFirst);
    if (reversed && data) {
        scratch_.resize(count);
        std::transform(data, data + count, scratch_.begin(), Reversed);
        data = scratch_.data();
    }
    uint8_t* answer = nullptr;
    if (command & kReadTdo)
        answer = answers_.Extend(count);
    board_.Chain().Run(TmsPin(), data, TdiPin(), answer, count * 8);
    if (data)
        SetTdiPin(data[count - 1] & 0x80);
    if (answer && reversed)
        std::transform(answer, answer + count, answer, Reversed);
    if (answer)
        shiftIn_ = answer[count - 1];
}

// Writing the port moves TCK too: a rise by hand clocks the TAP like any other.
void Mpsse::SetLowPort(uint8_t value, uint8_t direction) {
    const bool wasHigh = port_[0].value & port_[0].direction & kTckPin;
    port_[0] = {value, direction};
    const bool isHigh = value & direction & kTckPin;
    if (ReachesBoard() && !wasHigh && isHigh)
        board_.Chain().Clock(TmsPin(), TdiPin());
}

// Undriven pins are pulled up inside the chip.
uint8_t Mpsse::LowPins() const {
    auto pins = static_cast<uint8_t>((port_[0].value & port_[0].direction) | ~port_[0].direction);
    if (!(port_[0].direction & kTdoPin) && !TdoPin())
        pins = static_cast<uint8_t>(pins & ~kTdoPin);
    return pins;
}

uint8_t Mpsse::HighPins() const {
    return static_cast<uint8_t>((port_[1].value & port_[1].direction) | ~port_[1].direction);
}

bool Mpsse::GpioL1() const {
    return LowPins() & kGpioL1Pin;
}

void Mpsse::ClockOnly(size_t cycles) {
    if (ReachesBoard())
        board_.Chain().Run(TmsPin(), nullptr, TdiPin(), nullptr, cycles);
}

// All commands that shift no data, with their lengths (AN_108, sections 3.6 and on). The later ones
// exist in the high-speed parts only.
const Mpsse::Command* Mpsse::FindCommand(uint8_t code) const {
    static constexpr Command kCommands[] = {
        {0x80, 3, false, &Mpsse::WriteLowPort},  {0x81, 1, false, &Mpsse::ReadLowPort},
        {0x82, 3, false, &Mpsse::WriteHighPort}, {0x83, 1, false, &Mpsse::ReadHighPort},
        {0x84, 1, false, &Mpsse::Loopback},      {0x85, 1, false, &Mpsse::Loopback},
        {0x86, 3, false, &Mpsse::Divisor},       {0x87, 1, false, &Mpsse::Flush},
        {0x88, 1, false, &Mpsse::WaitForPin},    {0x89, 1, false, &Mpsse::WaitForPin},
        {0x8A, 1, true, &Mpsse::DivideByFive},   {0x8B, 1, true, &Mpsse::DivideByFive},
        {0x8C, 1, true, &Mpsse::ThreePhase},     {0x8D, 1, true, &Mpsse::ThreePhase},
        {0x8E, 2, true, &Mpsse::ClockBits},      {0x8F, 3, true, &Mpsse::ClockBytes},
        {0x94, 1, true, &Mpsse::WaitForPin},     {0x95, 1, true, &Mpsse::WaitForPin},
        {0x96, 1, true, &Mpsse::Adaptive},       {0x97, 1, true, &Mpsse::Adaptive},
        {0x9C, 3, true, &Mpsse::ClockUntilPin},  {0x9D, 3, true, &Mpsse::ClockUntilPin},
    };
    for (const Command& command : kCommands)
        if (command.code == code && (highSpeed_ || !command.highSpeedOnly))
            return &command;
    return nullptr;
}

size_t Mpsse::Control(std::span<const uint8_t> bytes) {
    const Command* command = FindCommand(bytes[0]);
    if (!command)
        return BadCommand(bytes[0]);
    if (bytes.size() < command->size)
        return 0;
    (this->*command->run)(bytes.data());
    return command->size;
}

void Mpsse::WriteLowPort(const uint8_t* bytes) {
    SetLowPort(bytes[1], bytes[2]);
}

void Mpsse::ReadLowPort(const uint8_t*) {
    answers_.Push(LowPins());
}

void Mpsse::WriteHighPort(const uint8_t* bytes) {
    port_[1] = {bytes[1], bytes[2]};
}

void Mpsse::ReadHighPort(const uint8_t*) {
    answers_.Push(HighPins());
}

void Mpsse::Loopback(const uint8_t* bytes) {
    loopback_ = bytes[0] == 0x84;
}

void Mpsse::Divisor(const uint8_t* bytes) {
    divisor_ = static_cast<uint16_t>(bytes[1] | bytes[2] << 8);
    ApplyFrequency();
}

void Mpsse::Flush(const uint8_t*) {
    answers_.Flush();
}

// Even codes wait for a high level, odd ones for a low one: it is there at once or never, for
// nothing moves the pin meanwhile.
void Mpsse::WaitForPin(const uint8_t* bytes) {
    stalled_ = GpioL1() == ((bytes[0] & 1) != 0);
}

void Mpsse::DivideByFive(const uint8_t* bytes) {
    divideByFive_ = bytes[0] == 0x8B;
    ApplyFrequency();
}

// Three-phase clocking makes data valid on both edges, which changes nothing for a TAP.
void Mpsse::ThreePhase(const uint8_t*) {}

void Mpsse::ClockBits(const uint8_t* bytes) {
    ClockOnly((bytes[1] & 7u) + 1);
}

void Mpsse::ClockBytes(const uint8_t* bytes) {
    ClockOnly(8 * (size_t{bytes[1]} + (size_t{bytes[2]} << 8) + 1));
}

void Mpsse::Adaptive(const uint8_t* bytes) {
    adaptive_ = bytes[0] == 0x96;
}

void Mpsse::ClockUntilPin(const uint8_t* bytes) {
    if (GpioL1() == ((bytes[0] & 1) != 0))
        ClockBytes(bytes);
}

} // namespace vb
