#include "platform/Host.h"
#include "platform/PortDriver.h"
#include "platform/posix/Parport.h"

namespace {

class HostOpener : public OmPortDriverOpener {
  public:
    std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
        return name == "ompio2" ? OpenParport("/proc/sys/dev/parport", "/dev") : nullptr;
    }
};

} // namespace

OmPortDriverOpener& GetHostPortDriverOpener() {
    static HostOpener opener;
    return opener;
}
