// Everything that makes one flash chip differ from another, and the named chips a board may start
// from. Addresses count words of the mode in which the chip is wired.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vb {

enum class CommandSet { Amd, Intel };
enum class CfiKind {
    Full,
    None,        // no query mode at all
    Short,       // the primary table starts before the block regions
    NoRegions,   // no erase region: the whole chip is one sector
    Alternative, // the known command set stands in the alternative place
};
enum class LockScheme {
    None,    // lock commands do nothing but say "done"
    Single,  // each block is unlocked by itself; all are locked at power-up
    Together // one unlock command frees all blocks; locks last over power
};

// How the query mode of an AMD chip is entered.
enum class QueryEntry {
    At55,     // 98h where the low byte of the address is 55h
    At555,    // 98h where its low 11 bits are 555h
    Unlocked, // AAh, 55h, 98h at the unlock addresses, and in no other way
};
// Where an AMD chip of a later JEDEC bank answers 7Fh.
enum class Continuation {
    None,
    AtManufacturer, // in place of the manufacturer, unless A8 is high
    AtThree,        // at address 3
};

// What B0h interrupts on an AMD chip; only 30h goes on.
enum class Suspends {
    None,  // ignored
    Erase, // a sector erase, as on the older chips
    All,   // and programming, at any address
};
enum class BypassCommands {
    Program, // and the way out
    All,     // buffer load, sector and chip erase too
};

struct SectorGroup {
    uint32_t count = 0;
    uint32_t bytes = 0;
};

struct FlashTimes {
    uint32_t wordMicroseconds = 10;
    uint32_t bufferMicroseconds = 60;
    uint32_t sectorMicroseconds = 50'000;
    uint32_t chipMicroseconds = 1'000'000; // 0: the sectors' times together
    uint32_t eraseWindowMicroseconds = 50; // AMD: time for further sector erase commands
    uint32_t lockMicroseconds = 20;
    uint32_t pageLoadMicroseconds = 150; // a page is written when no byte came for so long
    uint32_t limitFactor = 4;            // DQ5 shows after this many times the usual time
    uint32_t programLimitFactor = 1;     // the same for a word or buffer that fails
    uint32_t suspendMicroseconds = 5;    // from B0h until the array can be read
    uint32_t leastPercent = 100; // each program and erase takes from so much of its time to all
};

struct FlashParameters {
    CommandSet commandSet = CommandSet::Amd;
    unsigned widthBits = 16;   // data pins in use: 8, 16 or 32
    unsigned commandShift = 0; // command addresses in a narrower mode: one bit up for each halving
    unsigned decodedBits = 11; // address bits that the command decoder looks at
    uint32_t manufacturer = 0x01;
    uint32_t device = 0x227E;
    uint32_t bufferBytes = 0; // 0 for none
    bool unlockBypass = true;
    BypassCommands bypassCommands = BypassCommands::Program;
    Suspends suspends = Suspends::None;
    bool raisedBitFails = true; // a 0 that should become 1: DQ5, or an end as if all were well
    bool abortShowsDq5 = false; // a write-buffer abort sets DQ5 beside DQ1
    uint32_t statusFill = 0;    // AMD: what the data pins above DQ7 show beside the status
    uint32_t seed = 1;          // of what varies
    LockScheme lockScheme = LockScheme::Single; // Intel only
    uint32_t partitions = 1;    // Intel: equal parts that are read while another is busy
    bool busyReadModes = false; // Intel: a busy partition takes FFh, 90h and 98h too
    CfiKind cfi = CfiKind::Full;
    uint16_t primaryCode = 0; // 0: what follows from the command set
    std::vector<SectorGroup> sectors;
    // Where the CFI table is not what the chip is; empty or 0: it is.
    std::vector<SectorGroup> cfiSectors;
    std::vector<uint32_t> cfiTimes; // the bytes from 1Fh on
    uint32_t cfiBufferBytes = 0;
    uint32_t primaryVersion = 13;       // "1.3"
    std::vector<uint32_t> primaryBytes; // offset and value in turn, in the primary table
    QueryEntry queryEntry = QueryEntry::At55;
    bool exactUnlock = false; // 555h and 2AAh, and zeros above them, as far as the decoder looks
    Continuation continuation = Continuation::None;
    uint32_t device2 = 0; // autoselect 0Eh and 0Fh
    uint32_t device3 = 0;
    // AMD: the commands that end an erase sequence, for one sector and for a block of sectors.
    uint32_t sectorErase = 0x30;
    uint32_t blockErase = 0;
    uint32_t blockBytes = 0; // 0: there is no such command
    uint32_t pageBytes = 0;  // a chip that erases and writes whole pages; 0 for all others
    FlashTimes times;

    uint32_t SizeBytes() const;

    uint32_t WordBytes() const { return widthBits / 8; }

    uint32_t SizeWords() const { return SizeBytes() / WordBytes(); }

    uint64_t ChipEraseMicroseconds() const;

    unsigned AddressPins() const; // as many as reach every word
    uint32_t SectorCount() const;
    uint32_t SectorOf(uint32_t byteOffset) const;
    uint32_t SectorStart(uint32_t sector) const;
    uint32_t SectorBytes(uint32_t sector) const;
};

// Starts from a named chip; throws std::runtime_error for an unknown name.
FlashParameters FlashByName(const std::string& name);
std::vector<std::string> FlashNames();

// One `key=value` of a board file, as documented in README.md; throws std::runtime_error.
void SetFlashParameter(FlashParameters& flash, const std::string& key, const std::string& value);

// "8x8K,127x64K" and back.
std::vector<SectorGroup> ParseSectors(const std::string& text);
std::string FormatSectors(const std::vector<SectorGroup>& sectors);
// The keys that turn the default chip into this one.
std::string FormatFlashParameters(const FlashParameters& flash);

} // namespace vb
