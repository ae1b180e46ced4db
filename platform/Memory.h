// What the system is told about large pieces of memory.
#pragma once

#include <cstddef>

// The memory is about to be filled: as few large pages serve it better than thousands of small
// ones, each of which the system has to clear and map by itself. Only a wish; nothing depends on
// it.
void PreferLargePages(void* memory, size_t sizeBytes);
