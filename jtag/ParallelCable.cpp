#include "jtag/ParallelCable.h"

#include "jtag/Exception.h"
#include "jtag/Log.h"
#include "jtag/ScanLists.h"

#include <array>

namespace {

constexpr uint32_t kPortCount = 3;

// From here on a port access is slow enough to set the pace by itself.
constexpr uint32_t kUntimedFrequency = 200000;
constexpr double kUntimedHalfPeriod = 0.75;

constexpr uint8_t kBidirectionalData = 0x20; // control register: the data lines are inputs

double HalfPeriodOf(uint32_t frequency) {
    return frequency >= kUntimedFrequency ? kUntimedHalfPeriod : 1000000.0 / frequency / 2;
}

// 0 if the machine has no such port.
uint16_t FindPort(uint32_t port) {
    std::array<uint16_t, kPortCount> addresses{};
    GetLptAddresses(&addresses[0], &addresses[1], &addresses[2]); // leaves zeros on failure
    return addresses[port];
}

} // namespace

OmParallelCable::OmParallelCable() {
    OmLog(L"Creating OmParallelCable\n");
}

OmParallelCable::~OmParallelCable() {
    OmLog(L"Destroying OmParallelCable\n");
}

bool OmParallelCable::Initialize(uint32_t port, uint32_t wantedFrequency) {
    OmLog(L"Initializing OmParallelCable (%u LPT, %u Hz)\n", port, wantedFrequency);
    if (port >= kPortCount)
        return false;
    const uint16_t address = FindPort(port);
    if (address == 0 || wantedFrequency == 0)
        return false;
    if (!OpenDriver()) {
        OmLog(L"*** FAILED *** (OpenDriver failed)\n");
        return false;
    }
    portIndex = port;
    baseAddress = address;
    frequency = wantedFrequency;
    halfPeriod = HalfPeriodOf(frequency);
    if (!InitParallelPort()) {
        LogRefusal();
        OmLog(L"InitParallelPort() failed\n");
        return false;
    }
    if (!EnableJTAG()) {
        OmLog(L"EnableJTAG() failed\n");
        return false;
    }
    OmLog(L"Initializing succeeded, LPT base addr: 0x%x\n", static_cast<unsigned>(baseAddress));
    return true;
}

bool OmParallelCable::OpenDriver() {
    driver.reset(); // it is opened without sharing
    driver = GetPortDriverOpener().Open(GetDriverName());
    return driver != nullptr;
}

// The data register must drive its pins.
bool OmParallelCable::InitParallelPort() {
    uint8_t control = 0;
    return ReadPort(kControl, control) &&
           WritePort(kControl, static_cast<uint8_t>(control & ~kBidirectionalData));
}

// The first access to the port is where the system may refuse it to the user.
void OmParallelCable::LogRefusal() {
    const std::wstring reason = driver->RefusalReason();
    if (!reason.empty())
        OmLog(L"*** FAILED *** (%ls)\n", reason.c_str());
}

bool OmParallelCable::ReadPort(uint16_t offset, uint8_t& value) {
    const auto address = static_cast<uint16_t>(baseAddress + offset);
    const std::array<uint8_t, 2> record{static_cast<uint8_t>(address),
                                        static_cast<uint8_t>(address >> 8)};
    size_t returned = 0;
    return driver->Control(kPortRead, record, {&value, 1}, returned) && returned >= 1;
}

bool OmParallelCable::WritePort(uint16_t offset, uint8_t value) {
    const auto address = static_cast<uint16_t>(baseAddress + offset);
    const std::array<uint8_t, 3> record{static_cast<uint8_t>(address),
                                        static_cast<uint8_t>(address >> 8), value};
    size_t returned = 0;
    return driver->Control(kPortWrite, record, {}, returned);
}

void OmParallelCable::Drive(bool tck, bool tms, bool tdi) {
    SetPins(tck, tms, tdi);
    timing.Wait(halfPeriod);
}

// TDO is sampled just before the edge.
bool OmParallelCable::DriveAndRead(bool tck, bool tms, bool tdi) {
    const bool tdo = GetTdo() != 0;
    Drive(tck, tms, tdi);
    return tdo;
}

void OmParallelCable::Cycle(bool tms, bool tdi) {
    Drive(false, tms, tdi);
    Drive(true, tms, tdi);
}

void OmParallelCable::ResetTap() {
    for (unsigned clock = 0; clock < kTapResetPath.clocks; ++clock)
        Cycle(kTapResetPath.Tms(clock), true);
    Drive(false, true, true);
}

void OmParallelCable::ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(OmScanRegister::Data, in, out, from, to);
}

void OmParallelCable::ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) {
    Scan(OmScanRegister::Instruction, in, out, from, to);
}

// TDI is high on the way, but for the clock from Exit2-DR to Shift-DR. Wanted so: cables in the
// field have always been driven like that.
void OmParallelCable::WalkToShift(OmScanRegister which, int from) {
    const bool fromPauseDr =
        which == OmScanRegister::Data && from != kScanFromReset && from != kScanFromIdle;
    const OmTapPath path = GetPathToShift(which, from);
    for (unsigned clock = 0; clock < path.clocks; ++clock)
        Cycle(path.Tms(clock), !(fromPauseDr && clock + 1 == path.clocks));
}

void OmParallelCable::ShiftBit(bool tms, uint8_t bit, OmBitVector* out) {
    const bool tdi = bit == 1;
    Drive(false, tms, tdi);
    if (out)
        out->push_back(DriveAndRead(true, tms, tdi) ? 1 : 0);
    else
        Drive(true, tms, tdi);
}

void OmParallelCable::Scan(OmScanRegister which, const OmBitVector& in, OmBitVector* out, int from,
                           int to) {
    RequireBits(in);
    if (out) {
        out->clear();
        out->reserve(in.size());
    }
    WalkToShift(which, from);
    for (size_t i = 0; i + 1 < in.size(); ++i)
        ShiftBit(false, in[i], out);
    ShiftBit(true, in.back(), out);
    const OmTapPath path = GetPathFromExit1(to);
    for (unsigned clock = 0; clock < path.clocks; ++clock)
        Cycle(path.Tms(clock), true);
    Drive(false, false, true);
}

void OmParallelCable::ScanVectors(const OmScanList& vectors, OmCapturedList* captured) {
    ScanOneByOne(*this, vectors, captured);
}
