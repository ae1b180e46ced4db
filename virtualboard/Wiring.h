// The nets of the board: who drives them, who listens, what level results. Only nets whose drivers
// changed are looked at again, so that an Update-DR costs no more than what it moves.
#pragma once

#include "virtualboard/Checker.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vb {

class ChainDevice;

enum class Drive : uint8_t {
    Low,
    High,
    Released,
    WeakLow,
    WeakHigh,
    Core, // the device's own logic has the pin, and does whatever it does
};

enum class NetState : uint8_t { Driven, Weak, Core, Floating };

struct NetLevel {
    bool high = true; // a net that floats keeps its last level
    NetState state = NetState::Floating;

    bool operator==(const NetLevel&) const = default;
};

enum class FlashPin : uint8_t { Address, Data, ChipEnable, OutputEnable, WriteEnable, Reset, Wp };

// A part of the board whose pins follow the nets.
class NetListener {
  public:
    virtual ~NetListener() = default;
    virtual void SetPin(FlashPin pin, unsigned bit, NetLevel level) = 0;
};

// Who sees a net: a cell of a device, or a pin of a flash.
struct Listener {
    ChainDevice* device = nullptr;
    uint32_t cell = 0;
    NetListener* socket = nullptr;
    FlashPin pin = FlashPin::Address;
    uint8_t bit = 0;
    bool inverted = false; // the board has an inverter before this pin
};

using NetId = uint32_t;
using DriverId = uint32_t;

class Wiring {
  public:
    NetId AddNet(const std::string& name);
    // -1 if there is no such net.
    int64_t FindNet(const std::string& name) const;
    DriverId AddDriver(NetId net, const std::string& label);
    void AddListener(NetId net, const Listener& listener);
    void SetPull(NetId net, bool high);

    void SetDrive(DriverId driver, Drive drive);
    // Works out the nets whose drivers changed and tells their listeners.
    void Resolve();
    // Reports nets that came into contention since the last call.
    void ReportContention(Checker& checker, uint64_t scan);

    NetLevel Level(NetId net) const { return nets_[net].level; }

    bool Contended(NetId net) const { return nets_[net].contended; }

    size_t NetCount() const { return nets_.size(); }

    // "net D3 (U2.PD(3), F1.D3)": the net and those who drive it now.
    std::string Describe(NetId net) const;

  private:
    struct Net {
        std::string name;
        std::vector<DriverId> drivers;
        std::vector<Listener> listeners;
        NetLevel level;
        bool pulled = false;
        bool pullHigh = false;
        bool dirty = false;
        bool contended = false;
        bool reported = false; // the present contention has been reported
    };

    struct Driver {
        NetId net;
        Drive drive;
        std::string label;
    };

    void MarkDirty(NetId net);
    void ResolveNet(Net& net) const;
    static void Tell(const Net& net);

    std::vector<Net> nets_;
    std::vector<Driver> drivers_;
    std::vector<NetId> dirty_;
    std::vector<NetId> contended_; // nets to look at for a report
};

} // namespace vb
