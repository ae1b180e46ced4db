// Readers answer with a text and never throw, also when a file needs more memory than there is.
#pragma once

#include "platform/Translation.h"

#include <new>
#include <string>

template <typename Read>
bool GuardMemory(std::string& error, Read read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
        error = ForTranslation("Not enough memory.");
        return false;
    }
}
