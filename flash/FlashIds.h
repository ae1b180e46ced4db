// What a flash array answers in its identifier mode.
#pragma once

#include <cstdint>

class OmBusCycleBatch;

// Whole bus words: every chip's code in its own lane.
struct OmFlashIds {
    uint32_t manufacturer = 0;
    uint32_t device = 0;

    bool operator==(const OmFlashIds&) const = default;
};

// Runs the scans of `batch`, which must put the flash into its identifier mode, gives it time, and
// reads both identifiers. OE stays low.
OmFlashIds EnterAndReadIds(OmBusCycleBatch& batch);
