// A flash chip that does a command at once and fails where the test says: just enough to see what
// an operation sends and how it takes a refusal.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

enum class FakeFlashFamily { Amd, Intel };

class FakeFlashChip {
  public:
    struct BusWrite {
        uint32_t address;
        uint32_t data;
    };

    void Write(uint32_t address, uint32_t data);
    uint32_t Read(uint32_t address);

    // Whether any cycle had this low byte.
    bool Saw(uint8_t command) const;

    FakeFlashFamily family = FakeFlashFamily::Amd;
    uint32_t mask = 0xFF;               // the bits of one word
    uint32_t addressMask = 0;           // the address pins that exist
    uint32_t sectorWords = 16;          // every sector has this size
    std::map<uint32_t, uint32_t> cells; // by word address; erased where absent
    std::set<uint32_t> failing;         // first words of sectors that refuse with an error
    std::set<uint32_t> locked;          // likewise, with the block-locked status (Intel)
    std::set<uint32_t> neverReady;      // likewise, with no end
    std::vector<BusWrite> writes;
    std::vector<uint32_t> erased;      // first words of sectors, in order
    std::vector<uint32_t> lockChanges; // likewise, of lock and unlock

  private:
    void WriteAmd(uint32_t address, uint32_t data);
    void WriteIntel(uint32_t address, uint32_t data);
    bool TakeBufferWrite(uint32_t address, uint32_t data, uint8_t confirm);
    void EraseSector(uint32_t address);
    void EraseAll();
    void Program(uint32_t address, uint32_t data);
    void SetIntelStatus(uint32_t sector, uint8_t errorBits);

    uint32_t SectorOf(uint32_t address) const { return address - address % sectorWords; }

    uint8_t command_ = 0; // the one that waits for its next cycle
    bool statusMode_ = false;
    uint32_t status_ = 0;
    unsigned bufferState_ = 0; // 0 none, 1 wants the count, 2 takes words, 3 wants the confirmation
    uint32_t bufferLeft_ = 0;
    std::vector<BusWrite> buffer_;
};
