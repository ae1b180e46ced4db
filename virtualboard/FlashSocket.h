// The pins of one flash chip: turns their levels into bus cycles of the model behind, drives the
// data nets while the chip is read, and reports timing that a real chip would not forgive.
#pragma once

#include "virtualboard/FlashModel.h"
#include "virtualboard/Wiring.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace vb {

struct BusCycles {
    uint64_t reads = 0;
    uint64_t writes = 0;
};

class FlashSocket : public NetListener {
  public:
    FlashSocket(std::string name, std::unique_ptr<FlashModel> model, Wiring& wiring,
                Checker& checker, const uint64_t& scans);

    const std::string& Name() const { return name_; }

    FlashModel& Model() { return *model_; }

    const FlashModel& Model() const { return *model_; }

    const BusCycles& Cycles() const { return cycles_; }

    void ClearCycles() { cycles_ = {}; }

    // Wires a pin; throws std::runtime_error if the chip has no such pin.
    void Connect(FlashPin pin, unsigned bit, NetId net, bool inverted);

    // A data pin that has lost its contact: it drives no more.
    void OpenDataPin(unsigned bit) { openData_ |= uint32_t{1} << bit; }

    void SetPin(FlashPin pin, unsigned bit, NetLevel level) override;

    bool Touched() const { return touched_; }

    // The pins have settled after an update: do what they say.
    void Evaluate();
    // The outputs have settled too: what the pins show now is what the next update is judged by.
    void Commit();
    // Capture-DR is near: an operation may have ended since the last update.
    void Refresh();
    void CheckCapture();
    // The device `device` takes its pins away from the boundary register.
    void CheckCoreRelease(const std::string& device);

  private:
    struct Control {
        bool low = false;      // a level that counts, driven low
        bool floating = false; // neither driven nor held, nor in the hands of the core
    };

    struct Pins {
        uint32_t address = 0;
        uint32_t data = 0;
        uint32_t floatingAddress = 0;
        uint32_t floatingData = 0;
        Control ce, oe, we, reset;
    };

    static bool Writing(const Pins& pins) { return pins.ce.low && pins.we.low && !pins.reset.low; }

    static bool Reading(const Pins& pins) {
        return pins.ce.low && pins.oe.low && !pins.we.low && !pins.reset.low;
    }

    void CheckWrite();
    void CheckControls();
    void CheckRead();
    void ReportPins(ViolationKind kind, FlashPin pin, uint32_t bits, const std::string& what);
    void DriveData(bool enabled);
    static bool ControlsFloat(const Pins& pins);

    std::string name_;
    std::unique_ptr<FlashModel> model_;
    Wiring& wiring_;
    Checker& checker_;
    const uint64_t& scans_;
    BusCycles cycles_;
    Pins pins_;
    Pins before_; // as of the end of the last update
    bool touched_ = false;
    uint32_t writeAddress_ = 0; // latched when WE or CE fell
    uint32_t openData_ = 0;
    uint32_t wiredData_ = 0;
    bool driving_ = false;
    uint32_t output_ = 0;
    std::array<DriverId, 32> drivers_{};
    std::array<NetId, 32> addressNets_{};
    std::array<NetId, 32> dataNets_{};
};

} // namespace vb
