// The AMD command set (CFI primary command set 2): resets, autoselect, erase, programming. All need
// the chain in EXTEST and leave the flash in read mode with the bus idle, unless they say
// otherwise.
#pragma once

#include "flash/BusCycleBatch.h"
#include "flash/CommandSets.h"

#include <cstdint>

class OmDataImage;
class OmProgressCallback;

// Command bytes; on the bus they stand on all lanes.
inline constexpr uint8_t kAmdReset = 0xF0;
inline constexpr uint8_t kAmdAutoselect = 0x90;
inline constexpr uint8_t kAmdEraseSetUp = 0x80;
inline constexpr uint8_t kAmdEraseChip = 0x10;
inline constexpr uint8_t kAmdEraseSector = 0x30;
inline constexpr uint8_t kAmdProgram = 0xA0;
inline constexpr uint8_t kAmdBypassEntry = 0x20;
inline constexpr uint8_t kAmdBypassReset = 0x90; // followed by 0
inline constexpr uint8_t kAmdWriteBuffer = 0x25;
inline constexpr uint8_t kAmdProgramBuffer = 0x29;

void AmdReset(OmBoundaryScanBus& bus); // the bus stays selected

// The write-to-buffer-abort reset, in the given batch.
void AmdAbortReset(OmBusCycleBatch& batch);

// The two unlock cycles, and a command at the first unlock address.
void AppendAmdUnlock(OmBusCycleBatch& batch);
void AppendAmdCommand(OmBusCycleBatch& batch, uint8_t command);

OmFlashIds AmdReadId(OmBoundaryScanBus& bus);

// `chipOffset` in bytes of one chip. Done, Stopped (the erase goes on inside the flash), FlashError
// or TimeOut. The caller has run AmdReset.
OmFlashResult AmdEraseSector(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                             uint32_t chipOffset);
OmFlashResult AmdEraseChip(OmBoundaryScanBus& bus, OmProgressCallback& callback);

// The two ways of programming, for the loops of flash/BulkProgramming.h.
std::unique_ptr<OmBulkCommands> MakeAmdWords(const OmProgramOptions& options);
std::unique_ptr<OmBulkCommands> MakeAmdBuffers(const OmProgramOptions& options);

// Programs `image`; Done or Stopped. `bypass` halves the scans of a word where the flash knows the
// unlock bypass mode. `wait` is tuned as it goes, `count` counts the words drawn. The caller has
// run AmdReset.
OmFlashResult AmdProgramWords(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                              const OmDataImage& image, bool bypass, int& wait, uint32_t& count);
OmFlashResult AmdProgramBuffers(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                const OmDataImage& image, unsigned wordsPerBlock, int& wait,
                                uint32_t& count);

// The same without reading status.
OmFlashResult AmdProgramWordsBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                   const OmDataImage& image, bool bypass, int wait,
                                   uint32_t& count);
OmFlashResult AmdProgramBuffersBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                     const OmDataImage& image, unsigned wordsPerBlock, int wait,
                                     uint32_t& count);
