#include "virtualboard/FlashSocket.h"

#include <bit>
#include <stdexcept>
#include <utility>

namespace vb {

FlashSocket::FlashSocket(std::string name, std::unique_ptr<FlashModel> model, Wiring& wiring,
                         Checker& checker, const uint64_t& scans)
    : name_(std::move(name)), model_(std::move(model)), wiring_(wiring), checker_(checker),
      scans_(scans) {}

void FlashSocket::Connect(FlashPin pin, unsigned bit, NetId net, bool inverted) {
    const bool isData = pin == FlashPin::Data;
    const bool isAddress = pin == FlashPin::Address;
    if ((isData && (bit >= model_->Parameters().widthBits || inverted)) ||
        (isAddress && bit >= model_->Parameters().AddressPins()))
        throw std::runtime_error(name_ + " has no such pin for net " + wiring_.Describe(net));
    wiring_.AddListener(
        net, {.socket = this, .pin = pin, .bit = static_cast<uint8_t>(bit), .inverted = inverted});
    if (isAddress)
        addressNets_[bit] = net;
    if (!isData)
        return;
    dataNets_[bit] = net;
    wiredData_ |= uint32_t{1} << bit;
    drivers_[bit] = wiring_.AddDriver(net, name_ + ".D" + std::to_string(bit));
}

void FlashSocket::SetPin(FlashPin pin, unsigned bit, NetLevel level) {
    const uint32_t mask = uint32_t{1} << bit;
    const bool floating = level.state == NetState::Floating;
    const auto set = [mask](uint32_t& word, bool on) { word = on ? word | mask : word & ~mask; };
    const bool counts = !floating && level.state != NetState::Core;
    const Control control{counts && !level.high, floating};
    touched_ = true;
    switch (pin) {
    case FlashPin::Address:
        set(pins_.address, level.high);
        return set(pins_.floatingAddress, floating);
    case FlashPin::Data:
        set(pins_.data, level.high);
        return set(pins_.floatingData, floating);
    case FlashPin::ChipEnable:
        pins_.ce = control;
        return;
    case FlashPin::OutputEnable:
        pins_.oe = control;
        return;
    case FlashPin::WriteEnable:
        pins_.we = control;
        return;
    case FlashPin::Reset:
        pins_.reset = control;
        return;
    case FlashPin::Wp:
        return model_->SetWriteProtect(control.low);
    }
}

void FlashSocket::Evaluate() {
    const bool wasWriting = Writing(before_);
    const bool isWriting = Writing(pins_);
    CheckControls();
    CheckWrite();
    if (pins_.reset.low && !before_.reset.low)
        model_->HardwareReset();
    if (isWriting && !wasWriting)
        writeAddress_ = pins_.address; // the falling edge latches the address
    if (wasWriting && !isWriting && !pins_.reset.low) {
        ++cycles_.writes;
        model_->Write(writeAddress_, before_.data); // the rising edge latches the data
    }
    const bool isReading = Reading(pins_);
    const bool newRead = isReading && !Reading(before_);
    if (newRead)
        model_->BeginRead();
    if (newRead || (isReading && pins_.address != before_.address)) {
        ++cycles_.reads;
        CheckRead();
    }
    DriveData(isReading);
}

void FlashSocket::Commit() {
    before_ = pins_;
    touched_ = false;
}

void FlashSocket::Refresh() {
    if (driving_)
        DriveData(Reading(pins_));
}

void FlashSocket::DriveData(bool enabled) {
    enabled = enabled && model_->Drives();
    if (!enabled && !driving_)
        return;
    const uint32_t output = enabled ? model_->Read(pins_.address) : 0;
    uint32_t changed = (enabled == driving_ ? output ^ output_ : ~uint32_t{0}) & wiredData_;
    for (; changed != 0; changed &= changed - 1) {
        const auto bit = static_cast<unsigned>(std::countr_zero(changed));
        const bool contact = enabled && !(openData_ >> bit & 1);
        const Drive level = output >> bit & 1 ? Drive::High : Drive::Low;
        wiring_.SetDrive(drivers_[bit], contact ? level : Drive::Released);
    }
    driving_ = enabled;
    output_ = output;
}

void FlashSocket::ReportPins(ViolationKind kind, FlashPin pin, uint32_t bits,
                             const std::string& what) {
    const bool isAddress = pin == FlashPin::Address;
    for (; bits != 0; bits &= bits - 1) {
        const auto bit = static_cast<unsigned>(std::countr_zero(bits));
        const NetId net = isAddress ? addressNets_[bit] : dataNets_[bit];
        checker_.Report({kind, scans_,
                         name_ + "." + (isAddress ? "A" : "D") + std::to_string(bit) + " on " +
                             wiring_.Describe(net) + " " + what,
                         pins_.data});
    }
}

// The chip latches the address when the write begins and the data when it ends, so the address may
// move with the end of a write, and the data with its beginning, but not the other way round.
void FlashSocket::CheckWrite() {
    const bool before = Writing(before_);
    const bool now = Writing(pins_);
    const uint32_t address = pins_.address ^ before_.address;
    const uint32_t data = (pins_.data ^ before_.data) | (pins_.floatingData ^ before_.floatingData);
    if (now)
        ReportPins(ViolationKind::AddressChange, FlashPin::Address, address,
                   before ? "changes while WE is low" : "changes in the update that lowers WE");
    if (before)
        ReportPins(ViolationKind::DataChange, FlashPin::Data, data,
                   now ? "changes while WE is low" : "changes in the update that raises WE");
    if (now && !before)
        ReportPins(ViolationKind::FloatingInput, FlashPin::Address, pins_.floatingAddress,
                   "floats while WE falls");
    if (before && !now)
        ReportPins(ViolationKind::FloatingInput, FlashPin::Data, before_.floatingData,
                   "floats while WE rises");
}

bool FlashSocket::ControlsFloat(const Pins& pins) {
    return (pins.ce.low && (pins.oe.floating || pins.we.floating)) ||
           (pins.ce.floating && (pins.oe.low || pins.we.low));
}

void FlashSocket::CheckControls() {
    if (ControlsFloat(pins_) && !ControlsFloat(before_))
        checker_.Report({ViolationKind::FloatingInput, scans_,
                         name_ + ": CE, OE or WE floats while another of them is low", pins_.data});
}

void FlashSocket::CheckRead() {
    ReportPins(ViolationKind::FloatingInput, FlashPin::Address, pins_.floatingAddress,
               "floats during a read");
}

void FlashSocket::CheckCapture() {
    if (Reading(pins_))
        ReportPins(ViolationKind::FloatingRead, FlashPin::Data, pins_.floatingData,
                   "floats while it is read");
}

void FlashSocket::CheckCoreRelease(const std::string& device) {
    if (Writing(before_) || Reading(before_))
        checker_.Report({ViolationKind::CoreReleased, scans_,
                         name_ + ": the core logic of " + device +
                             " gets its pins in the middle of a " +
                             (Writing(before_) ? "write" : "read") + " cycle",
                         pins_.data});
}

} // namespace vb
