#include "jtag/CableErrors.h"

#include "jtag/Exception.h"

void ThrowConnectionError() {
    throw OmException(L"JTAG connection error");
}

void ThrowScanTooLong() {
    throw OmException(L"The JTAG chain is too long for this cable.");
}
