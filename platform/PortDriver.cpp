#include "platform/PortDriver.h"

#include "platform/Host.h"

namespace {

OmPortDriverOpener* installed = nullptr;

} // namespace

OmPortDriverOpener& GetPortDriverOpener() {
    return installed ? *installed : GetHostPortDriverOpener();
}

OmPortDriverOpener* SetPortDriverOpener(OmPortDriverOpener* opener) {
    OmPortDriverOpener* previous = installed;
    installed = opener;
    return previous;
}
