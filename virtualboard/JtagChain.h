// The board's JTAG chain as a pod sees it: TCK, TMS, TDI and TDO. All devices share TCK and TMS, so
// one TAP state stands for all of them. Device 0 is the one nearest TDI.
#pragma once

#include "virtualboard/BitQueue.h"
#include "virtualboard/ChainDevice.h"
#include "virtualboard/Clock.h"
#include "virtualboard/TapState.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vb {

// What the rest of the board does at the moments when the chain and the pins meet.
class ChainObserver {
  public:
    virtual ~ChainObserver() = default;
    virtual void BeforeCapture() = 0;
    // `changedCells` holds, for each device, the watched cells whose latch changed.
    virtual void AfterDataUpdate(const std::vector<std::vector<uint32_t>>& changedCells) = 0;
    virtual void AfterInstructionChange() = 0;
};

enum class TdoFault { None, StuckLow, StuckHigh };

// One TCK cycle: where the TAP was at its rising edge, and the levels that came with it.
struct TckCycle {
    TapState state;
    bool tms;
    bool tdi;
};

class JtagChain {
  public:
    explicit JtagChain(BoardClock& clock);

    ChainDevice& AddDevice(std::unique_ptr<ChainDevice> device);

    size_t DeviceCount() const { return devices_.size(); }

    ChainDevice& Device(size_t index) { return *devices_[index]; }

    const ChainDevice& Device(size_t index) const { return *devices_[index]; }

    void SetObserver(ChainObserver* observer) { observer_ = observer; } // not owned, may be null

    void SetTdoFault(TdoFault fault) { tdoFault_ = fault; }

    void SetPower(bool on) { powered_ = on; }

    // Keeps every cycle in `trace` (not owned; null ends it). For tests: a long run fills it fast.
    void SetTrace(std::vector<TckCycle>* trace) { trace_ = trace; }

    // One TCK cycle. The result is TDO as sampled at the rising edge.
    bool Clock(bool tms, bool tdi);
    // `bits` cycles with TMS at one level. TDI and TDO are packed low bit first; a null `tdi` means
    // TDI held at `idleTdi`, a null `tdo` that nobody looks.
    void Run(bool tms, const uint8_t* tdi, bool idleTdi, uint8_t* tdo, size_t bits);

    TapState State() const { return state_; }

    bool Tdo() const;

    uint64_t DataScans() const { return dataScans_; }

    uint64_t InstructionScans() const { return instructionScans_; }

    void ClearCounts() { dataScans_ = instructionScans_ = 0; }

  private:
    // A run of devices between two that block TDI; one queue when none does, which is the rule.
    struct Segment {
        BitQueue path;
        size_t firstDevice = 0; // nearest TDI
        size_t lastDevice = 0;
        bool blocked = false; // ones come in, whatever the neighbour sends
    };

    bool Shifting() const { return state_ == TapState::ShiftDr || state_ == TapState::ShiftIr; }

    void TraceRun(const uint8_t* tdi, bool idleTdi, bool tms, size_t bits);
    void ShiftWord(uint64_t tdi, uint64_t& tdo, unsigned count);
    void ShiftRun(const uint8_t* tdi, bool idleTdi, uint8_t* tdo, size_t bits);
    void Move(bool tms);
    void Enter();
    void Leave();
    void BuildSegments();
    void Capture(bool instruction);
    void UpdateData();
    void UpdateInstruction();
    void Reset();

    BoardClock& clock_;
    std::vector<std::unique_ptr<ChainDevice>> devices_;
    std::vector<Segment> segments_; // the last one feeds TDO
    std::vector<std::vector<uint32_t>> changedCells_;
    ChainObserver* observer_ = nullptr;
    std::vector<TckCycle>* trace_ = nullptr;
    TapState state_ = TapState::TestLogicReset;
    TdoFault tdoFault_ = TdoFault::None;
    bool powered_ = true;
    uint64_t dataScans_ = 0;
    uint64_t instructionScans_ = 0;
};

} // namespace vb
