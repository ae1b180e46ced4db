// A flash bus made of boundary scans, for a board of BoardBuilder: sets signals, scans, reads back.
// Deliberately plain: one scan at a time, so that a test can do each wrong thing that it wants.
#pragma once

#include "tests/virtualboard/TestPod.h"
#include "virtualboard/BoardBuilder.h"

#include <map>
#include <string>

namespace vb_test {

class TestBus {
  public:
    TestBus(const vb::BuiltBoard& built, TestPod& pod);

    // All used devices to EXTEST through PRELOAD, with the bus idle.
    void EnterExtest();
    // Levels at the flash's pins, shown by the next scan.
    void Set(const std::string& signal, bool level);
    void Release(const std::string& signal);
    void SetAddress(uint32_t address);
    void SetData(uint32_t data);
    void ReleaseData();
    // One Update-DR; what the data pins showed at its Capture-DR.
    uint32_t Scan();

    const Bits& Image() const { return image_; }

    // Whole cycles, with all steps a careful program takes.
    void Write(uint32_t address, uint32_t data);
    uint32_t Read(uint32_t address);

    void AmdUnlock(); // the two unlock cycles, at the addresses for the board's command shift
    void AmdCommand(uint32_t command);
    uint32_t AmdAddress(bool first) const;

  private:
    struct Cells {
        size_t output = 0;
        size_t control = 0;
        size_t input = 0;
        bool hasOutput = false;
        bool hasControl = false;
        bool hasInput = false;
        bool disableValue = false;
        bool inverted = false;
    };

    void Resolve(const vb::Connection& connection, const vb::DeviceDescription& device,
                 size_t base);
    void LoadInstruction(const std::string& name);

    TestPod& pod_;
    std::vector<vb::DeviceDescription> devices_;
    std::vector<bool> used_;
    std::map<std::string, Cells> cells_;
    Bits image_;
    unsigned addressBits_ = 0;
    unsigned dataBits_ = 0;
    unsigned shift_ = 0;
};

} // namespace vb_test
