// What the program remembers of a flash's command set, and how a command to the flash ended. What a
// set can do stands in its row (flash/CommandSets.h).
#pragma once

#include <string>

// One value for each way of programming of each set. Kept by the programmer from action to action.
enum class OmCommandSet {
    Unknown = 0,
    IntelStandard = 1,
    IntelExtended = 2, // buffered
    AmdWord = 3,
    AmdBuffered = 4,
};

// As shown to the user, in the user's language.
std::wstring GetCommandSetName(OmCommandSet set);

// How a flash primitive ended.
enum class OmFlashResult {
    Done = 0,
    Stopped = 1,
    FlashError = 2,
    TimeOut = 3,
    BlockLocked = 4,
    Told = 5, // a failure of which the user has been told
};
