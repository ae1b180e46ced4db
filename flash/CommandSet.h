// The flash command sets that the program can speak, as detection finds them (CFI primary command
// set 1 and 2, JESD68).
#pragma once

#include <string>

enum class OmCommandSet {
    Unknown = 0,
    IntelStandard = 1,
    IntelExtended = 2, // buffered
    AmdWord = 3,
    AmdBuffered = 4,
};

inline bool IsIntel(OmCommandSet set) {
    return set == OmCommandSet::IntelStandard || set == OmCommandSet::IntelExtended;
}

inline bool IsAmd(OmCommandSet set) {
    return set == OmCommandSet::AmdWord || set == OmCommandSet::AmdBuffered;
}

// As shown to the user, in the user's language.
std::wstring GetCommandSetName(OmCommandSet set);

// How a flash primitive ended.
enum class OmFlashResult { Done = 0, Stopped = 1, FlashError = 2, TimeOut = 3, BlockLocked = 4 };
