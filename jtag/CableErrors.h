// What cables throw, and the checks that keep a scan inside a cable's buffers.
#pragma once

#include "jtag/Cable.h"

#include <cstddef>

// The device or its library failed: the connection is lost.
[[noreturn]] void ThrowConnectionError();

// The chain's register is longer than one transfer of the cable can be.
[[noreturn]] void ThrowScanTooLong();

// A scan needs at least one bit; throws for an empty one.
void RequireBits(const OmBitVector& in);

// The length that all vectors of a batch have; throws if they differ or are empty. `vectors` holds
// at least one.
size_t RequireEqualLengths(const OmScanList& vectors);
