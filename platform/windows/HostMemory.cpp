#include "platform/Memory.h"

// Large pages take a right there that users do not have.
void PreferLargePages(void*, size_t) {}
