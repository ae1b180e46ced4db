// A whole board: the JTAG chain, the nets, the flash chips, the checker, and the pod that hangs on
// it. Built from a board file (BoardFile.h) or by a program (BoardBuilder.h).
#pragma once

#include "virtualboard/Checker.h"
#include "virtualboard/Clock.h"
#include "virtualboard/FlashSocket.h"
#include "virtualboard/JtagChain.h"
#include "virtualboard/PodDescription.h"
#include "virtualboard/Wiring.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vb {

// Traffic between the vendor library and the pod, counted by the stand-in libraries.
struct Traffic {
    uint64_t writeCalls = 0;
    uint64_t readCalls = 0;
    uint64_t bytesWritten = 0;
    uint64_t bytesRead = 0;
    uint64_t endlessReads =
        0; // that would have waited for ever: bytes missing, and no time-out set
    uint64_t latencyWaits = 0; // reads that had to wait for the latency timer: nothing was flushed
    uint64_t badCommands = 0;
};

class Board : private ChainObserver {
  public:
    Board();
    ~Board() override;
    Board(const Board&) = delete;
    Board& operator=(const Board&) = delete;

    // Building. All throw std::runtime_error with what is wrong.
    ChainDevice& AddDevice(const std::string& name, const std::string& bsdlText);
    FlashSocket& AddFlash(const std::string& name, const FlashParameters& parameters);
    // A pin is "U2.PD(3)", "U1.WE_N", "F1.A7", "F1.CE"; "!F1.CE" has an inverter in front.
    void Connect(const std::string& net, const std::string& pin);
    void Pull(const std::string& net, bool high);
    void Tie(const std::string& net, bool high);
    void PowerUp(); // once all is connected

    JtagChain& Chain() { return chain_; }

    BoardClock& Clock() { return clock_; }

    Checker& Violations() { return checker_; }

    const Checker& Violations() const { return checker_; }

    Traffic& PodTraffic() { return traffic_; }

    PodDescription& Pods() { return pods_; }

    const PodDescription& Pods() const { return pods_; }

    Wiring& Nets() { return wiring_; }

    size_t FlashCount() const { return sockets_.size(); }

    FlashSocket& Flash(size_t index) { return *sockets_[index]; }

    FlashSocket* FindFlash(const std::string& name);
    ChainDevice* FindDevice(const std::string& name);
    // The contents of all chips as a processor would see them: lane by lane, low chip first.
    std::vector<uint8_t> FlashContents();

    // The level on a net, by name, for tests; throws if there is no such net.
    NetLevel LevelOf(const std::string& net) const;

    uint64_t DataScans() const { return scans_; }

    BusCycles TotalBusCycles() const;
    std::string StatisticsJson() const;
    void ClearStatistics();

    // Host time with no TCK, such as a sleep between two calls.
    void AddIdleMicroseconds(uint64_t microseconds) { clock_.AddMicroseconds(microseconds); }

    // What happens at the end of the process: flash contents kept in files, by chip name.
    void KeepContents(const std::string& flash, const std::string& path);
    // The same for what a chip keeps only as long as it has power.
    void KeepState(const std::string& flash, const std::string& path);
    void SaveContents();

  private:
    // One output of a device: the cells that decide what it does.
    struct PinDriver {
        uint32_t device;
        int64_t dataCell; // -1: the pin has no output cell of its own
        int64_t controlCell;
        bool disableValue;
        Drive whenDisabled;
        DriverId driver;
    };

    void BeforeCapture() override;
    void AfterDataUpdate(const std::vector<std::vector<uint32_t>>& changedCells) override;
    void AfterInstructionChange() override;

    FlashModel& ModelNamed(const std::string& flash);
    NetId NetNamed(const std::string& net);
    void ConnectFlash(NetId net, FlashSocket& socket, const std::string& pin, bool inverted);
    void ConnectDevice(NetId net, size_t device, const std::string& pin);
    void ConnectCell(NetId net, size_t device, uint32_t cell, const CellEntry& entry,
                     const std::string& label);
    void DriveCell(size_t device, uint32_t cell);
    Drive DriveOf(const PinDriver& pin) const;
    void DriveDevice(size_t device);
    void Propagate();

    BoardClock clock_;
    JtagChain chain_;
    Wiring wiring_;
    Checker checker_;
    Traffic traffic_;
    PodDescription pods_;
    uint64_t scans_ = 0;
    std::vector<std::unique_ptr<FlashSocket>> sockets_;
    std::vector<PinDriver> pinDrivers_;
    // For each device and cell, the drivers that depend on it.
    std::vector<std::vector<std::vector<uint32_t>>> driversOfCell_;
    std::vector<PinOwner> owners_;
    std::set<std::string> wiredPins_; // of devices: each is on one net
    std::map<std::string, std::string> keptContents_;
    std::map<std::string, std::string> keptStates_;
};

} // namespace vb
