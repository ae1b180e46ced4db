// The Intel command set (CFI primary command sets 1 and 3): read array, status register, erase,
// lock and unlock, programming. All need the chain in EXTEST and leave the flash in read array mode
// with its status register clear and the bus idle, unless they say otherwise.
#pragma once

#include "flash/BusCycleBatch.h"
#include "flash/CommandSets.h"

#include <cstdint>

class OmDataImage;
class OmProgressCallback;

// Command bytes; on the bus they stand on all lanes.
inline constexpr uint8_t kIntelReadArray = 0xFF;
inline constexpr uint8_t kIntelClearStatus = 0x50;
inline constexpr uint8_t kIntelReadId = 0x90;
inline constexpr uint8_t kIntelProgram = 0x40;
inline constexpr uint8_t kIntelWriteBuffer = 0xE8;
inline constexpr uint8_t kIntelConfirm = 0xD0; // and unlock
inline constexpr uint8_t kIntelEraseSetUp = 0x20;
inline constexpr uint8_t kIntelLockSetUp = 0x60;
inline constexpr uint8_t kIntelLock = 0x01;

// Bits of the status register of one chip.
inline constexpr uint8_t kIntelReady = 0x80;        // SR7
inline constexpr uint8_t kIntelEraseError = 0x20;   // SR5: erase or unlock failed
inline constexpr uint8_t kIntelProgramError = 0x10; // SR4: program or lock failed
inline constexpr uint8_t kIntelBlockLocked = 0x02;  // SR1

void IntelReadArray(OmBoundaryScanBus& bus);   // the bus stays selected
void IntelClearStatus(OmBoundaryScanBus& bus); // likewise

OmFlashIds IntelReadId(OmBoundaryScanBus& bus);

// `chipOffset` in bytes of one chip. Done, Stopped, FlashError, TimeOut, and for the erase
// BlockLocked.
OmFlashResult IntelEraseBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                              uint32_t chipOffset);
OmFlashResult IntelLockBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                             uint32_t chipOffset);
OmFlashResult IntelUnlockBlock(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                               uint32_t chipOffset);
OmFlashResult IntelSetBlockLock(OmBoundaryScanBus& bus, OmProgressCallback& callback, bool lock,
                                uint32_t chipOffset);

// The two ways of programming, for the loops of flash/BulkProgramming.h.
std::unique_ptr<OmBulkCommands> MakeIntelWords(const OmProgramOptions& options);
std::unique_ptr<OmBulkCommands> MakeIntelBuffers(const OmProgramOptions& options);

// Programs `image`: Done, Stopped, or FlashError, which here always means a locked block. `wait` is
// tuned as it goes, `count` counts the words drawn.
OmFlashResult IntelProgramWords(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                const OmDataImage& image, int& wait, uint32_t& count);
OmFlashResult IntelProgramBuffers(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                  const OmDataImage& image, unsigned wordsPerBlock, int& wait,
                                  uint32_t& count);

// The same without reading status: Done or Stopped.
OmFlashResult IntelProgramWordsBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                     const OmDataImage& image, int wait, uint32_t& count);
OmFlashResult IntelProgramBuffersBlind(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                       const OmDataImage& image, unsigned wordsPerBlock, int wait,
                                       uint32_t& count);
