// What cables throw.
#pragma once

// The device or its library failed: the connection is lost.
[[noreturn]] void ThrowConnectionError();

// The chain's register is longer than one transfer of the cable can be.
[[noreturn]] void ThrowScanTooLong();
