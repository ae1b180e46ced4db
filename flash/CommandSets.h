// The flash command sets that the program can speak, one row each: identification, reports and all
// operations ask the row, nobody asks for a set by name. How to add one: docs/add-a-command-set.md.
#pragma once

#include "flash/CommandSet.h"
#include "flash/FlashIds.h"

#include <cstdint>
#include <memory>
#include <span>

class OmBoundaryScanBus;
class OmBulkCommands;
class OmProgressCallback;

// How the user wants to program, and what the flash allows.
struct OmProgramOptions {
    bool bypass = false;        // only for a set that has it
    unsigned wordsPerBlock = 1; // for the buffered form
};

// One way of programming.
struct OmProgramForm {
    OmCommandSet set = OmCommandSet::Unknown;
    const char* name = nullptr;         // for translation
    std::span<const uint16_t> cfiCodes; // of the CFI tables (JESD68) that promise this form
    std::unique_ptr<OmBulkCommands> (*make)(const OmProgramOptions& options) = nullptr;
};

inline constexpr int kNoSetupChoice = -1;

// The functions need the chain in EXTEST and leave the bus idle, but for `reset`, which leaves it
// selected.
struct OmCommandSetRow {
    OmProgramForm words;
    OmProgramForm buffers;            // `make` is null: word by word only
    int setupChoice = kNoSetupChoice; // the setup's value that fixes this set, without its buffer
    bool hasBypass = false;           // takes words without unlock cycles when asked to

    // Back to reading the array, from whatever an interrupted operation has left.
    void (*reset)(OmBoundaryScanBus& bus) = nullptr;
    OmFlashIds (*readIds)(OmBoundaryScanBus& bus) = nullptr;

    // `chipOffset` in bytes of one chip.
    OmFlashResult (*eraseSector)(OmBoundaryScanBus& bus, OmProgressCallback& callback,
                                 uint32_t chipOffset) = nullptr;
    // Null: no such command, and the sectors are erased one by one.
    OmFlashResult (*eraseChip)(OmBoundaryScanBus& bus, OmProgressCallback& callback) = nullptr;
    // Null: no such command.
    OmFlashResult (*setLock)(OmBoundaryScanBus& bus, OmProgressCallback& callback, bool lock,
                             uint32_t chipOffset) = nullptr;
};

using OmCommandSetRows = std::span<const OmCommandSetRow* const>;

// In the order in which a flash of which nothing is known is asked; the first answer counts.
OmCommandSetRows GetCommandSets();

// Tests put in their own rows, which must outlive their use. An empty list brings the program's
// own back.
void SetCommandSets(OmCommandSetRows rows);

// The row that `set` is a form of; null for an unknown one.
const OmCommandSetRow* FindCommandSet(OmCommandSet set);

// Null for an unknown one.
const OmProgramForm* FindProgramForm(OmCommandSet set);

// The row that a setup's choice fixes, null if it fixes none.
const OmCommandSetRow* FindCommandSetOfSetup(int setupChoice);

// The row whose locks are set where the set of the flash is unknown or has none: the user has been
// warned. Null if no row has locks.
const OmCommandSetRow* FindLockingCommandSet(OmCommandSet set);

// The set without its write buffer.
OmCommandSet WordByWord(OmCommandSet set);

// False also for an unknown set.
bool CanEraseChip(OmCommandSet set);
bool CanLockSectors(OmCommandSet set);

// The resets of all sets: a neutral command in every language, for a flash of which nothing is
// known.
void ResetInEverySet(OmBoundaryScanBus& bus);
