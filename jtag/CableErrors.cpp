#include "jtag/CableErrors.h"

#include "jtag/Exception.h"
#include "platform/Translation.h"

void ThrowConnectionError() {
    throw OmException(Translated("JTAG connection error"));
}

void ThrowScanTooLong() {
    throw OmException(Translated("The JTAG chain is too long for this cable."));
}
