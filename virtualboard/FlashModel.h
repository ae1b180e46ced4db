// A flash chip behind its bus interface: memory, commands, busy times. What the pins do, and what
// would be wrong on them, is FlashSocket's business.
#pragma once

#include "virtualboard/Clock.h"
#include "virtualboard/FlashParameters.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vb {

// What can be wrong with a chip; all off at first.
struct FlashFaults {
    std::map<uint32_t, uint32_t> stuckHigh; // word address to the bits that will not program
    std::set<uint32_t> eraseFails;          // sectors (AMD: DQ5, Intel: SR5)
    std::set<uint32_t> programFails;        // sectors (AMD: DQ5, Intel: SR4)
    std::set<uint32_t> lockFails;           // sectors (Intel: SR4 on lock, SR5 on unlock)
    std::map<uint32_t, uint8_t> queryBytes; // query addresses to what stands there instead
    unsigned bufferAborts = 0;              // so many next write-buffer loads abort
    bool earlyDq5 = false;                  // AMD: DQ5 shows once just before the operation ends
    bool neverReady = false;                // an operation that is started does not end
    bool dead = false;                      // ignores all commands and drives nothing
    uint32_t slowFactor = 1;                // all times are this many times longer
};

class FlashModel {
  public:
    FlashModel(const FlashParameters& parameters, const BoardClock& clock);
    virtual ~FlashModel() = default;

    // Bus side. Addresses are masked to the chip's size, data to its width.
    virtual void Write(uint32_t address, uint32_t data) = 0;
    virtual uint32_t Read(uint32_t address) = 0;
    // OE or CE has just fallen: what toggles on successive reads toggles here.
    virtual void BeginRead() = 0;
    virtual void HardwareReset() = 0;
    // True if what Read() answers may change with no bus cycle, because an operation ends.
    virtual bool Busy() const = 0;
    // Ends an operation whose time is over. Bus cycles do so by themselves.
    virtual void Settle() = 0;

    const FlashParameters& Parameters() const { return parameters_; }

    FlashFaults& Faults() { return faults_; }

    bool Drives() const { return !faults_.dead; }

    void SetWriteProtect(bool active) { writeProtect_ = active; }

    // Test side: the array itself, by words and as bytes, low byte first.
    uint32_t Word(uint32_t address) const;
    void SetWord(uint32_t address, uint32_t value);

    std::vector<uint8_t>& Bytes() { return bytes_; }

    const std::vector<uint8_t>& Bytes() const { return bytes_; }

    // Sectors that refuse to be programmed or erased.
    std::set<uint32_t>& ProtectedSectors() { return protectedSectors_; }

    // What the chip keeps as long as it has power, beside the array: a line of text.
    virtual std::string State() const = 0;
    virtual void Restore(const std::string& state) = 0;

  protected:
    uint32_t WordMask() const;
    uint32_t SectorOfWord(uint32_t address) const;

    bool HasQueryMode() const { return !cfi_.empty(); }

    uint32_t QueryByte(uint32_t address) const;
    bool IsProtected(uint32_t sector) const;

    bool WriteProtected() const { return writeProtect_; }

    // Clears bits as programming does.
    void ProgramWord(uint32_t address, uint32_t value);
    // False if a bit should be 1 and is 0, where the chip minds, or will not become 0.
    bool CanProgram(uint32_t address, uint32_t value) const;
    void EraseSector(uint32_t sector);

    bool Expired(uint64_t deadline) const { return clock_.Now() >= deadline; }

    uint64_t After(uint64_t microseconds) const;
    // The same for what takes now more and now less time, and `microseconds` at most.
    uint64_t AfterAtMost(uint64_t microseconds);

    const FlashParameters parameters_;
    const BoardClock& clock_;
    FlashFaults faults_;

  private:
    uint32_t StuckBits(uint32_t address) const;
    uint64_t Random();

    const std::vector<uint8_t> cfi_;
    std::vector<uint8_t> bytes_;
    std::set<uint32_t> protectedSectors_;
    bool writeProtect_ = false;
    uint64_t random_;
};

} // namespace vb
