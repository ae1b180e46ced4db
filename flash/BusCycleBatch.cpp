#include "flash/BusCycleBatch.h"

#include "jtag/ChainAnalyzer.h"
#include "jtag/Exception.h"

#include <algorithm>

namespace {

// Bit i of `value` to element i; elements without a bit become 0.
void SetBits(OmBitVector& bits, uint32_t value) {
    for (uint8_t& bit : bits) {
        bit = value & 1;
        value >>= 1;
    }
}

} // namespace

OmBusCycleBatch::OmBusCycleBatch(OmBoundaryScanBus& owner)
    : bus(&owner), image(owner.layout.defaultImage) {
    pins.addressBits.assign(owner.address.size(), 0);
    pins.dataBits.assign(owner.data.size(), 0);
    bus->ApplyPinState(pins, image, PinStateStatic);
}

void OmBusCycleBatch::SetAddress(uint32_t busWord) {
    SetBits(pins.addressBits, busWord);
    dirty |= PinStateAddress;
}

void OmBusCycleBatch::SetData(uint32_t value) {
    SetBits(pins.dataBits, value);
    dirty |= PinStateData;
}

void OmBusCycleBatch::ReleaseData() {
    std::fill(pins.dataBits.begin(), pins.dataBits.end(), kBitReleased);
    dirty |= PinStateData;
}

void OmBusCycleBatch::SetCE(uint8_t level) {
    pins.ceLevel = level;
    dirty |= PinStateCE;
}

void OmBusCycleBatch::SetOE(uint8_t level) {
    pins.oeLevel = level;
    dirty |= PinStateOE;
}

void OmBusCycleBatch::SetWE(uint8_t level) {
    pins.weLevel = level;
    dirty |= PinStateWE;
}

void OmBusCycleBatch::AppendScan(bool wanted) {
    if (dirty != 0) {
        bus->ApplyPinState(pins, image, dirty);
        dirty = 0;
    }
    capture = wanted;
    OmScanVector& scan = scans.emplace_back();
    if (!spare_.empty()) {
        scan.bits = std::move(spare_.back());
        spare_.pop_back();
    }
    scan.bits = image;
    scan.capture = capture;
    captures_ += capture;
}

void OmBusCycleBatch::AppendIdle(int count) {
    for (int i = 0; i < count; ++i)
        AppendScan(false);
}

void OmBusCycleBatch::AppendWrite(uint32_t busWord, uint32_t value) {
    SetWE(1);
    SetAddress(busWord);
    AppendScan(false);
    AppendWriteData(value);
}

void OmBusCycleBatch::AppendWriteData(uint32_t value) {
    SetWE(0);
    SetData(value);
    AppendScan(false);
}

void OmBusCycleBatch::AppendRise(bool wanted) {
    SetWE(1);
    AppendScan(wanted);
}

void OmBusCycleBatch::AppendRelease() {
    ReleaseData();
    AppendScan(false);
}

void OmBusCycleBatch::AppendReadPulse() {
    SetOE(0);
    AppendScan(false);
    SetOE(1);
    AppendScan(true);
}

void OmBusCycleBatch::SelectForWriting() {
    SetCE(0);
    SetOE(1);
    ReleaseData();
}

void OmBusCycleBatch::Run() {
    bus->analyzer->ScanVectors(scans, nullptr);
}

void OmBusCycleBatch::RunForCapture(OmCapturedList& captured) {
    bus->analyzer->ScanVectors(scans, &captured);
    if (captured.size() != captures_)
        throw OmException(Translated(kInvalidBitSequence));
}

void OmBusCycleBatch::RunToCompletion() {
    OmCapturedList thrownAway;
    RunForCapture(thrownAway);
}

void OmBusCycleBatch::Clear() {
    for (OmScanVector& scan : scans)
        spare_.push_back(std::move(scan.bits));
    scans.clear();
    captures_ = 0;
}
