// Readers answer with a text and never throw, also when a file needs more memory than there is.
#pragma once

#include <new>
#include <string>

template <typename Read>
bool GuardMemory(std::string& error, Read read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
        error = "Not enough memory.";
        return false;
    }
}
