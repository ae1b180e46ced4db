#include "virtualboard/Wiring.h"

#include "virtualboard/ChainDevice.h"

#include <algorithm>

namespace vb {

NetId Wiring::AddNet(const std::string& name) {
    nets_.push_back({});
    nets_.back().name = name;
    return static_cast<NetId>(nets_.size() - 1);
}

int64_t Wiring::FindNet(const std::string& name) const {
    const auto found = std::ranges::find(nets_, name, &Net::name);
    return found == nets_.end() ? -1 : found - nets_.begin();
}

DriverId Wiring::AddDriver(NetId net, const std::string& label) {
    const auto id = static_cast<DriverId>(drivers_.size());
    drivers_.push_back({net, Drive::Released, label});
    nets_[net].drivers.push_back(id);
    MarkDirty(net);
    return id;
}

void Wiring::AddListener(NetId net, const Listener& listener) {
    nets_[net].listeners.push_back(listener);
    MarkDirty(net);
}

void Wiring::SetPull(NetId net, bool high) {
    nets_[net].pulled = true;
    nets_[net].pullHigh = high;
    MarkDirty(net);
}

void Wiring::SetDrive(DriverId driver, Drive drive) {
    Driver& entry = drivers_[driver];
    if (entry.drive == drive)
        return;
    entry.drive = drive;
    MarkDirty(entry.net);
}

void Wiring::MarkDirty(NetId net) {
    if (!nets_[net].dirty)
        dirty_.push_back(net);
    nets_[net].dirty = true;
}

void Wiring::Resolve() {
    for (size_t i = 0; i < dirty_.size(); ++i) {
        Net& net = nets_[dirty_[i]];
        net.dirty = false;
        const NetLevel before = net.level;
        ResolveNet(net);
        if (net.contended || net.reported)
            contended_.push_back(dirty_[i]);
        if (net.level != before)
            Tell(net);
    }
    dirty_.clear();
}

void Wiring::ResolveNet(Net& net) const {
    bool seen[6] = {};
    for (DriverId driver : net.drivers)
        seen[static_cast<size_t>(drivers_[driver].drive)] = true;
    const auto has = [&seen](Drive drive) { return seen[static_cast<size_t>(drive)]; };
    net.contended = has(Drive::Low) && has(Drive::High);
    if (has(Drive::Low) || has(Drive::High)) // in a fight the lower transistor wins
        net.level = {!has(Drive::Low), NetState::Driven};
    else if (has(Drive::Core))
        net.level.state = NetState::Core;
    else if (has(Drive::WeakLow) || has(Drive::WeakHigh))
        net.level = {has(Drive::WeakHigh), NetState::Weak};
    else if (net.pulled)
        net.level = {net.pullHigh, NetState::Weak};
    else
        net.level.state = NetState::Floating;
}

void Wiring::Tell(const Net& net) {
    for (const Listener& listener : net.listeners) {
        NetLevel level = net.level;
        level.high = level.high != listener.inverted;
        if (listener.device)
            listener.device->SetPinLevel(listener.cell, level.high);
        else
            listener.socket->SetPin(listener.pin, listener.bit, level);
    }
}

void Wiring::ReportContention(Checker& checker, uint64_t scan) {
    for (NetId id : contended_) {
        Net& net = nets_[id];
        if (net.contended && !net.reported)
            checker.Report(
                {ViolationKind::Contention, scan, Describe(id) + " is driven to both levels"});
        net.reported = net.contended;
    }
    contended_.clear();
}

std::string Wiring::Describe(NetId net) const {
    std::string drivers;
    for (DriverId id : nets_[net].drivers) {
        const Driver& driver = drivers_[id];
        if (driver.drive == Drive::Low || driver.drive == Drive::High)
            drivers += (drivers.empty() ? "" : ", ") + driver.label +
                       (driver.drive == Drive::High ? "=1" : "=0");
    }
    return "net " + nets_[net].name + (drivers.empty() ? "" : " (" + drivers + ")");
}

} // namespace vb
