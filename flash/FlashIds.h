// What a flash array answers in its identifier mode.
#pragma once

#include <cstdint>

// Whole bus words: every chip's code in its own lane.
struct OmFlashIds {
    uint32_t manufacturer = 0;
    uint32_t device = 0;

    bool operator==(const OmFlashIds&) const = default;
};
